#include "paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace Utils {

QString OV_Path::AppPath()
{
    return QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator();
}

QString OV_Path::TempPath()
{
    // A folder of this process's own, with rights for its user alone, removed at the end: what is put there came from a
    // document and is nobody else's to read or to swap.
    static const QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/tetobaisfla-XXXXXX"));
    if (!QFileInfo::exists(folder.path()) && QDir().mkpath(folder.path())) // somebody tidied up
        QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QDir::toNativeSeparators(folder.path()) + QDir::separator();
}

} // namespace Utils
