#pragma once

#include <QByteArray>

namespace ofd {

// The bytes of an XML part in UTF-8 when they are wide characters (UTF-16, with a byte-order mark or without), else as
// they are. Whoever searches the bytes of a part for names searches these.
QByteArray NarrowXml(const QByteArray& bytes);

} // namespace ofd
