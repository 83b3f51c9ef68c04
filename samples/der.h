#pragma once

#include <QByteArray>

namespace samples {

// Elements in the distinguished encoding of ASN.1: type, length, content.
QByteArray Der(char type, const QByteArray& content);
QByteArray DerSequence(const QByteArray& content);
QByteArray DerWord(const QByteArray& text); // IA5String
QByteArray DerInteger(int value);

// The layouts of electronic seals that are in use.
enum class SealLayout { Present, Former };

// An electronic seal around a picture of 30 x 30 mm. Who made it and whether it is genuine is nobody's concern here:
// certificate and signature are place holders.
QByteArray SealData(const QByteArray& pictureType, const QByteArray& picture, SealLayout layout = SealLayout::Present);
// A signed value that holds the seal and a digest of what was signed.
QByteArray SignedValueData(const QByteArray& seal, const QByteArray& digest);

} // namespace samples
