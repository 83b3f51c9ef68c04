#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

// One entry of a hand-made archive. What is not set is made right; each optional value replaces the right one.
struct RawEntry
{
    RawEntry(const QByteArray& name = {}, const QByteArray& data = {})
        : name(name)
        , data(data)
    {
    }

    QByteArray name;
    QByteArray data;
    bool isStored = false;
    quint16 flags = 0;                 // in both headers
    std::optional<quint16> localFlags; // in the local header only
    std::optional<quint16> method;
    bool hasDescriptor = false; // sizes and checksum behind the data, zeros in the local header
    bool hasDescriptorSignature = true;
    bool hasLocalZip64 = false;   // local sizes full and in an extra block, central ones plain
    bool hasCentralZip64 = false; // central sizes and offset full and in an extra block
    QByteArray localExtra;
    QByteArray centralExtra;
    QByteArray comment;
    quint32 externalAttributes = 0;
    std::optional<quint32> checksum;
    std::optional<quint32> size;
    std::optional<quint32> compressedSize;
    std::optional<quint32> headerOffset;
    std::optional<QByteArray> localName;
};

// Writes zip archives without any care for whether they make sense.
class RawZip
{
public:
    std::vector<RawEntry> entries;
    QByteArray prefix;         // foreign bytes in front
    bool countsPrefix = false; // whether stored offsets include it
    QByteArray trailing;       // foreign bytes behind the end record
    QByteArray comment;
    bool hasZip64End = false;
    std::optional<quint16> entryCount;

    RawEntry& Add(const QByteArray& name, const QByteArray& data);
    QByteArray Build() const;

    // A raw deflate stream.
    static QByteArray Deflate(const QByteArray& data);
};

// A little archive with an OFD.xml that passes as a package.
RawZip SmallRawZip();
