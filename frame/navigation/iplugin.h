#pragma once

#include <frame/base/export.h>

#include <QObject>
#include <QtPlugin>

namespace ExtensionSystem {

// What a module's instance is. The host calls Initialize, then ExtensionsReady of all plugins, then DelayedInitialize
// once the first window stands; AboutToShutdown before the plugin is deleted. Main thread only.
class FRAME_EXPORT IPlugin : public QObject
{
    Q_OBJECT
public:
    IPlugin();
    ~IPlugin() override;
    virtual bool Initialize() = 0; // false: the module is not used and is unloaded
    virtual void ExtensionsReady() = 0;
    // The base does nothing in these three; the last one is for hosts that start further instances of themselves.
    virtual void DelayedInitialize();
    virtual void AboutToShutdown();
    virtual void MainInstanceInitialized();
};

} // namespace ExtensionSystem

Q_DECLARE_INTERFACE(ExtensionSystem::IPlugin, "com.orvane.OFD.PcApp")
