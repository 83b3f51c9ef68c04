#include "der.h"

namespace samples {

QByteArray Der(char type, const QByteArray& content)
{
    QByteArray length;
    for (int rest = content.size(); rest > 0 || length.isEmpty(); rest >>= 8)
        length.prepend(char(rest & 0xFF));
    if (content.size() >= 128)
        length.prepend(char(0x80 | length.size()));
    return type + length + content;
}

QByteArray DerSequence(const QByteArray& content)
{
    return Der(0x30, content);
}

QByteArray DerWord(const QByteArray& text)
{
    return Der(0x16, text);
}

QByteArray DerInteger(int value)
{
    QByteArray bytes;
    do {
        bytes.prepend(char(value & 0xFF));
        value >>= 8;
    } while (value > 0);
    return Der(0x02, quint8(bytes[0]) & 0x80 ? '\0' + bytes : bytes);
}

QByteArray SealData(const QByteArray& pictureType, const QByteArray& picture, SealLayout layout)
{
    const bool isFormer = layout == SealLayout::Former;
    const QByteArray time = Der(isFormer ? 0x17 : 0x18, isFormer ? "240520083000Z" : "20240520083000Z");
    const QByteArray bits = Der(0x03, QByteArray(9, '\0')), certificate = Der(0x04, "no certificate");
    const QByteArray header = DerSequence(DerWord("ES") + DerInteger(isFormer ? 1 : 4) + DerWord("tetobaisfla"));
    QByteArray property = DerInteger(1) + Der(0x0C, "Sample seal");
    property += (isFormer ? QByteArray() : DerInteger(1)) + DerSequence(certificate) + time + time + time;
    const QByteArray image = DerSequence(DerWord(pictureType) + Der(0x04, picture) + DerInteger(30) + DerInteger(30));
    const QByteArray info = DerSequence(header + DerWord("12345678901234") + DerSequence(property) + image);
    const QByteArray method = Der(0x06, QByteArray::fromHex("2a811ccf55018375"));
    // The former layout puts certificate, method and signature into a sequence of their own.
    return isFormer ? DerSequence(info + DerSequence(certificate + method + bits))
                    : DerSequence(info + certificate + method + bits);
}

QByteArray SignedValueData(const QByteArray& seal, const QByteArray& digest)
{
    const QByteArray content = DerInteger(4) + seal + Der(0x18, "20240520083000Z") + Der(0x03, '\0' + digest) +
                               DerWord("/Doc_0/Signs/Sign_0/Signature.xml");
    return DerSequence(DerSequence(content) + Der(0x04, "no certificate") +
                       Der(0x06, QByteArray::fromHex("2a811ccf5501837501")) + Der(0x03, QByteArray(9, '\0')));
}

} // namespace samples
