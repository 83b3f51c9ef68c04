#pragma once

#include <QPluginLoader>
#include <QString>

namespace ExtensionSystem {
class IPlugin;
}

// Loads the navigation add-on at run time and unloads it again. Unload only once all panes, stacks, tools, views and
// documents are gone: their code lies in the module. Main thread only.
class PluginHost
{
public:
    PluginHost() = default;
    ~PluginHost();
    // Looks below lib/tetobaisfla/ beside the program, or in $TETO_PLUGIN. False, and Error() says why, when there is
    // no usable module; the reader then works without panes.
    bool Load();
    void Unload();
    QString Error() const { return error; }
    ExtensionSystem::IPlugin* Plugin() const { return plugin; }
    static QString ModulePath();

private:
    Q_DISABLE_COPY(PluginHost)
    QPluginLoader loader;
    ExtensionSystem::IPlugin* plugin = nullptr; // owned by the loader
    QString error;
};
