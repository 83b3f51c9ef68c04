#pragma once

#include <frame/base/export.h>

#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

class QSettings;

// The reader's settings, kept in the user's configuration folder. One a process; main thread only.
class FRAME_EXPORT G_SettingMgr
{
public:
    static G_SettingMgr* Instance(); // never null
    // What was set for the key, else the default.
    QVariant ConfigValue(const QString& key, const QVariant& defaultValue = QVariant());
    void SetConfigValue(const QString& key, const QVariant& value);
    // Keeps values in this file from now on; an empty path keeps them in memory only (tests).
    void UseFile(const QString& path);

private:
    G_SettingMgr();
    ~G_SettingMgr();
    struct Private;
    std::unique_ptr<Private> d;
};
