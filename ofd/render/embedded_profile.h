#pragma once

#include <QByteArray>

namespace ofd {

// The colour profile that a PNG, JPEG, TIFF or WebP file carries, told by its bytes; empty when it carries none, when
// parts of it are missing, or when it is larger than the limit. Any thread.
QByteArray EmbeddedProfile(const QByteArray& picture);

} // namespace ofd
