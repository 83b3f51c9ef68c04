#include "recent_files.h"

#include <frame/view/settings.h>

namespace {

constexpr int MostPaths = 10;

QString Key()
{
    return QStringLiteral("recent.files");
}

} // namespace

QStringList RecentFiles::Paths() const
{
    return G_SettingMgr::Instance()->ConfigValue(Key()).toStringList();
}

void RecentFiles::Add(const QString& path)
{
    QStringList paths = Paths();
    paths.removeAll(path);
    paths.prepend(path);
    while (paths.size() > MostPaths)
        paths.removeLast();
    G_SettingMgr::Instance()->SetConfigValue(Key(), paths);
}

void RecentFiles::Remove(const QString& path)
{
    QStringList paths = Paths();
    paths.removeAll(path);
    G_SettingMgr::Instance()->SetConfigValue(Key(), paths);
}
