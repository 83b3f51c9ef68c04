#pragma once

#include <frame/base/export.h>

#include <QString>
#include <QUrl>

#include <functional>

namespace Utils {
namespace Safe {

// Opens things with the programs the desktop has for them, under the reader's safety rules: nothing executable is
// started, no shell is involved, and only http, https and mailto addresses are opened.
class FRAME_EXPORT OV_SafeProcess
{
public:
    // False when the file does not exist, is executable or a desktop entry, or no program took it.
    static bool OpenLocalFile(const QString& path);
    // False when the address has another scheme or no program took it.
    static bool OpenUrl(const QString& address);
    // Replaces what finally opens a URL (tests); an empty function brings the desktop's back.
    static void SetOpener(std::function<bool(const QUrl&)> opener);
};

} // namespace Safe
} // namespace Utils
