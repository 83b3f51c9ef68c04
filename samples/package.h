#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace samples {

// One entry of a package: its name, its bytes before compression, and whether it is kept uncompressed.
struct Part
{
    QString name;
    QByteArray data;
    bool isStored = false;
};

// The parts of a sample document in the order in which they are written. A mistake in the use of this class (a part or
// a text that is not there) ends the program: a sample that is not what its name says is worse than none.
class Package
{
public:
    void Add(const QString& name, const QByteArray& data, bool isStored = false);
    void Remove(const QString& name);
    void Rename(const QString& from, const QString& to);
    void MoveToEnd(const QString& name);
    bool Has(const QString& name) const;
    QByteArray& Data(const QString& name);
    const std::vector<Part>& Parts() const { return parts; }
    std::vector<Part>& Parts() { return parts; }

    // Replaces the first occurrence of `from` in the part.
    void Replace(const QString& name, const QByteArray& from, const QByteArray& to);
    // Replaces every occurrence in the part; there must be at least one.
    void ReplaceAll(const QString& name, const QByteArray& from, const QByteArray& to);

    // Writes an ordinary zip. Equal parts give equal bytes: the entries carry a fixed time. False on an I/O error.
    bool Save(const QString& path) const;

private:
    size_t IndexOf(const QString& name) const;

    std::vector<Part> parts;
};

// The package as zip bytes, the same as Save() puts into the file but for the compressor's choices.
QByteArray PackedBytes(const Package& package);

// Writes the bytes to a file whose folder is made if need be; false on an I/O error.
bool WriteFile(const QString& path, const QByteArray& bytes);

} // namespace samples
