#include "inventoryplugin.h"

#include "inventorywindow.h"

InventoryPlugin::InventoryPlugin() = default;

InventoryPlugin::~InventoryPlugin() = default;

QString InventoryPlugin::start(const QStringList &)
{
    m_window = std::make_unique<InventoryWindow>();
    m_window->show();
    return {};
}

void InventoryPlugin::stop()
{
    m_window.reset();
}
