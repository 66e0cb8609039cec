#include "awkwardwindow.h"

#include <QApplication>

#include <unistd.h>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains("sleep"))
        ::sleep(60);
    AwkwardWindow window;
    window.show();
    return QApplication::exec();
}
