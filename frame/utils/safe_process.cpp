#include "safe_process.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QSet>

namespace Utils {
namespace Safe {

namespace {

std::function<bool(const QUrl&)>& Opener()
{
    static std::function<bool(const QUrl&)> opener;
    return opener;
}

bool Open(const QUrl& url)
{
    return Opener() ? Opener()(url) : QDesktopServices::openUrl(url);
}

// Kinds of files that a desktop may run instead of show, whatever their mode bits say.
bool IsRunnableKind(const QString& suffix)
{
    static const QSet<QString> suffixes = {
        QStringLiteral("desktop"),  QStringLiteral("sh"),  QStringLiteral("bash"), QStringLiteral("run"),
        QStringLiteral("appimage"), QStringLiteral("exe"), QStringLiteral("com"),  QStringLiteral("bat"),
        QStringLiteral("cmd"),      QStringLiteral("msi"), QStringLiteral("jar"),  QStringLiteral("lnk"),
        QStringLiteral("scr"),      QStringLiteral("ps1"), QStringLiteral("vbs"),  QStringLiteral("pif"),
    };
    return suffixes.contains(suffix.toLower());
}

} // namespace

bool OV_SafeProcess::OpenLocalFile(const QString& path)
{
    const QFileInfo file(path);
    if (!file.isFile() || file.isExecutable() || IsRunnableKind(file.suffix()))
        return false;
    // A link is judged by what it leads to.
    if (IsRunnableKind(QFileInfo(file.canonicalFilePath()).suffix()))
        return false;
    return Open(QUrl::fromLocalFile(file.absoluteFilePath()));
}

bool OV_SafeProcess::OpenUrl(const QString& address)
{
    static const QSet<QString> schemes = {QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto")};
    const QUrl url(address.trimmed(), QUrl::StrictMode);
    if (!url.isValid() || !schemes.contains(url.scheme().toLower()))
        return false;
    return Open(url);
}

void OV_SafeProcess::SetOpener(std::function<bool(const QUrl&)> opener)
{
    Opener() = std::move(opener);
}

} // namespace Safe
} // namespace Utils
