#pragma once

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QVector>

#include <optional>

namespace ofd {

class Package;

// The picture of an electronic seal as its data hold it.
struct SealPicture
{
    QString type; // a word as "png" or "ofd"; what the bytes are is told by themselves
    QByteArray bytes;
    int widthMm = 0; // as its maker meant it; a stamp's boundary decides how large it is painted
    int heightMm = 0;
};

// Finds the picture in a seal, or in a signed value that holds the seal: the block of a type word, the bytes, width and
// height, wherever it stands, so that both layouts of seals in use are read. Nothing when there is none. Certificates,
// digests and signatures are not looked at.
std::optional<SealPicture> FindSealPicture(const QByteArray& bytes);

// Where a signature puts its seal.
struct Stamp
{
    QString part; // of the signature
    int pageId = 0;
    QRectF boundary;  // mm on the page; never empty
    QRectF clip;      // from the boundary's corner; empty when all of the picture shows
    QString sealPart; // empty when the signature names none
    QString signedValuePart;
};

// The stamps of all signatures, in the order of the signatures. Those that cannot be read are left out.
QVector<Stamp> ReadStamps(const Package& package, const QString& documentFolder);

} // namespace ofd
