#pragma once

#include <QGenericPlugin>

/// The way of the agent into an application: the toolkit makes it while the application object is
/// made, because the environment says so.
class AgentPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "agentplugin.json")

public:
    /// The agent, which the toolkit owns; null where it is not wanted.
    QObject *create(const QString &name, const QString &argument) override;
};
