#pragma once

#include <frame/base/export.h>

#include <QString>

namespace Utils {

// Folders, each with a trailing separator.
class FRAME_EXPORT OV_Path
{
public:
    static QString AppPath();  // of the program
    static QString TempPath(); // private to this process's user; made when missing
};

} // namespace Utils
