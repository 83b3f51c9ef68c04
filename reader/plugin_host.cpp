#include "plugin_host.h"

#include <frame/navigation/iplugin.h>

#include <QCoreApplication>
#include <QDir>

namespace {

QString Translated(const char* text)
{
    return QCoreApplication::translate("PluginHost", text);
}

} // namespace

PluginHost::~PluginHost()
{
    Unload();
}

QString PluginHost::ModulePath()
{
    const QString named = qEnvironmentVariable("TETO_PLUGIN");
    if (!named.isEmpty())
        return named;
    const QDir programs(QCoreApplication::applicationDirPath());
    return QDir::cleanPath(programs.filePath(QStringLiteral("../lib/tetobaisfla/libtetobaisfla.so")));
}

bool PluginHost::Load()
{
    loader.setFileName(ModulePath());
    const QString iid = loader.metaData().value(QStringLiteral("IID")).toString();
    if (!iid.isEmpty() && iid != QLatin1String("com.orvane.OFD.PcApp")) {
        error = Translated(QT_TRANSLATE_NOOP("PluginHost", "The module %1 is a plugin for another program."))
                    .arg(loader.fileName());
        return false;
    }
    QObject* instance = loader.instance();
    if (!instance) {
        error = loader.errorString();
        return false;
    }
    plugin = qobject_cast<ExtensionSystem::IPlugin*>(instance);
    if (!plugin || !plugin->Initialize()) {
        error = Translated(QT_TRANSLATE_NOOP("PluginHost", "The module %1 does not start.")).arg(loader.fileName());
        plugin = nullptr;
        loader.unload();
        return false;
    }
    plugin->ExtensionsReady();
    return true;
}

void PluginHost::Unload()
{
    if (!plugin)
        return;
    plugin->AboutToShutdown();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    plugin = nullptr;
    loader.unload(); // deletes the instance
}
