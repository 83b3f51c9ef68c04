#pragma once

#include <frame/navigation/iplugin.h>

#include <memory>
#include <vector>

// The add-on's entry object: the frame loads the module, asks it for its instance and calls the slots of IPlugin. It
// owns every page, operation and tool it registers and deletes them itself, in an order of its own; the frame's
// registries hold them by reference. Main thread only. (The odd spelling is the name that frames know it by.)
class NavigatiosPlugin : public ExtensionSystem::IPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.orvane.OFD.PcApp" FILE "navigatios_plugin.json")
    Q_INTERFACES(ExtensionSystem::IPlugin)
public:
    NavigatiosPlugin();
    ~NavigatiosPlugin() override;

    // Does nothing; true.
    bool Initialize() override;
    // Makes and registers every row of the table. A second call makes nothing.
    void ExtensionsReady() override;

private:
    using Owned = std::unique_ptr<void, void (*)(void*)>;
    std::vector<Owned> objects; // one for each row of the table, in its order; empty until ExtensionsReady
    QObject* spare = nullptr;   // owned; on purpose never set: the order of teardown keeps its place
};
