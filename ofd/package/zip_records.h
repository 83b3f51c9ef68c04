#pragma once

#include <QByteArray>

namespace ofd::zip {

constexpr quint32 LocalSignature = 0x04034b50;
constexpr quint32 CentralSignature = 0x02014b50;
constexpr quint32 EndSignature = 0x06054b50;
constexpr quint32 Zip64EndSignature = 0x06064b50;
constexpr quint32 Zip64LocatorSignature = 0x07064b50;

// Sizes of the records' fixed parts.
constexpr int LocalSize = 30;
constexpr int CentralSize = 46;
constexpr int EndSize = 22;
constexpr int Zip64EndSize = 56;
constexpr int Zip64LocatorSize = 20;

// Places inside a central record.
constexpr int CentralNameLength = 28;
constexpr int CentralExtraLength = 30;
constexpr int CentralCommentLength = 32;
constexpr int CentralHeaderOffset = 42;

constexpr quint16 FlagEncrypted = 1 << 0;
constexpr quint16 FlagDescriptor = 1 << 3;
constexpr quint16 FlagUtf8 = 1 << 11;

constexpr quint16 MethodStored = 0;
constexpr quint16 MethodDeflated = 8;

constexpr quint16 Zip64ExtraId = 1;
constexpr quint16 AlignmentExtraId = 0xd935; // takes room, so that data lies where it is wanted
constexpr quint32 Saturated32 = 0xffffffff;  // the value stands in the zip64 extra block
constexpr quint16 Saturated16 = 0xffff;

quint16 Get16(const char* at);
quint32 Get32(const char* at);
quint64 Get64(const char* at);
void Put16(char* at, quint16 value);
void Put32(char* at, quint32 value);
void Put64(char* at, quint64 value);
void Append16(QByteArray& to, quint16 value);
void Append32(QByteArray& to, quint32 value);
void Append64(QByteArray& to, quint64 value);

// Finds an extra block; returns the offset of its data from `extra` and its length, or -1.
int FindExtra(const char* extra, int extraLength, quint16 id, int* dataLength);

} // namespace ofd::zip
