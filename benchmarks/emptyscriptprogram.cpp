#include <QCoreApplication>
#include <QJSEngine>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QJSEngine engine;
    return 0;
}
