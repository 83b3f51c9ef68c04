#include "iplugin.h"

namespace ExtensionSystem {

IPlugin::IPlugin() = default;
IPlugin::~IPlugin() = default;
void IPlugin::DelayedInitialize() {}
void IPlugin::AboutToShutdown() {}
void IPlugin::MainInstanceInitialized() {}

} // namespace ExtensionSystem
