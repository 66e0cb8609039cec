#pragma once

#include "qtbackend/applicationplugin.h"

#include <QObject>

#include <memory>

class InventoryWindow;

/// Starts the application in the process of a test case.
class InventoryPlugin : public QObject, public Morvex::ApplicationPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "morvex.ApplicationPlugin/1.0")
    Q_INTERFACES(Morvex::ApplicationPlugin)

public:
    InventoryPlugin();
    ~InventoryPlugin() override;

    QString start(const QStringList &arguments) override;
    void stop() override;

private:
    std::unique_ptr<InventoryWindow> m_window;
};
