#include "inventorywindow.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    InventoryWindow window;
    window.show();
    return QApplication::exec();
}
