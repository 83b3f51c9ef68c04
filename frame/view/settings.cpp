#include "settings.h"

#include <QHash>
#include <QSettings>
#include <QStandardPaths>

struct G_SettingMgr::Private
{
    std::unique_ptr<QSettings> file;   // null: in memory
    QHash<QString, QVariant> inMemory; // while there is no file
};

G_SettingMgr::G_SettingMgr()
    : d(new Private)
{
    UseFile(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + QStringLiteral("/settings.ini"));
}

G_SettingMgr::~G_SettingMgr() = default;

G_SettingMgr* G_SettingMgr::Instance()
{
    static G_SettingMgr instance;
    return &instance;
}

QVariant G_SettingMgr::ConfigValue(const QString& key, const QVariant& defaultValue)
{
    return d->file ? d->file->value(key, defaultValue) : d->inMemory.value(key, defaultValue);
}

void G_SettingMgr::SetConfigValue(const QString& key, const QVariant& value)
{
    if (d->file)
        d->file->setValue(key, value);
    else
        d->inMemory.insert(key, value);
}

void G_SettingMgr::UseFile(const QString& path)
{
    d->file.reset(path.isEmpty() ? nullptr : new QSettings(path, QSettings::IniFormat));
    d->inMemory.clear();
}
