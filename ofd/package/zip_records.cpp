#include "zip_records.h"

#include <QtEndian>

namespace ofd::zip {

quint16 Get16(const char* at)
{
    return qFromLittleEndian<quint16>(at);
}
quint32 Get32(const char* at)
{
    return qFromLittleEndian<quint32>(at);
}
quint64 Get64(const char* at)
{
    return qFromLittleEndian<quint64>(at);
}
void Put16(char* at, quint16 value)
{
    qToLittleEndian(value, at);
}
void Put32(char* at, quint32 value)
{
    qToLittleEndian(value, at);
}
void Put64(char* at, quint64 value)
{
    qToLittleEndian(value, at);
}

void Append16(QByteArray& to, quint16 value)
{
    char bytes[2];
    Put16(bytes, value);
    to.append(bytes, sizeof bytes);
}

void Append32(QByteArray& to, quint32 value)
{
    char bytes[4];
    Put32(bytes, value);
    to.append(bytes, sizeof bytes);
}

void Append64(QByteArray& to, quint64 value)
{
    char bytes[8];
    Put64(bytes, value);
    to.append(bytes, sizeof bytes);
}

int FindExtra(const char* extra, int extraLength, quint16 id, int* dataLength)
{
    int at = 0;
    while (at + 4 <= extraLength) {
        const int length = Get16(extra + at + 2);
        if (at + 4 + length > extraLength)
            return -1;
        if (Get16(extra + at) == id) {
            *dataLength = length;
            return at + 4;
        }
        at += 4 + length;
    }
    return -1;
}

} // namespace ofd::zip
