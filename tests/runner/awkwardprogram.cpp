#include "awkwardwindow.h"

#include <QApplication>
#include <QLibraryInfo>

#include <unistd.h>

int main(int argc, char **argv)
{
    // The plugin of the agent is not found then.
    if (argc > 1 && qstrcmp(argv[1], "paths") == 0)
        QCoreApplication::setLibraryPaths({QLibraryInfo::location(QLibraryInfo::PluginsPath)});
    QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains("sleep"))
        ::sleep(60);
    if (QCoreApplication::arguments().contains("return"))
        return 5;
    AwkwardWindow window;
    window.show();
    return QApplication::exec();
}
