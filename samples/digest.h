#pragma once

#include <QByteArray>

namespace samples {

// The SM3 digest of the bytes: what signatures of documents state for each part they cover.
QByteArray Sm3(const QByteArray& bytes);

} // namespace samples
