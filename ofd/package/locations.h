#pragma once

#include <QString>

#include <optional>

namespace ofd {

class Package;

// Where a reference stands, which decides what it is relative to.
struct LocationContext
{
    QString holderPart;     // the part that holds the reference
    QString documentFolder; // the folder of the document's root part, "Doc_0/"
    QString baseLoc;        // BaseLoc of the resource part that holds it; empty elsewhere
    bool isMedia = false;   // a font or a media file: found by its bare file name as the last resort
};

// Which step of the search found the part.
// Unescaped: in any of the other ways, once "%20" and the like are read as characters.
enum class LocationStep { NotFound, Exact, IgnoringCase, FromRoot, FromDocumentFolder, ByFileName, Unescaped };

struct ResolvedLocation
{
    QString part;      // empty when not found
    QString exactName; // the name the reference means by the book, whether or not it exists; empty when invalid
    LocationStep step = LocationStep::NotFound;

    explicit operator bool() const { return step != LocationStep::NotFound; }
};

// The part name that a reference means when it stands in `folder` ("" or ending in '/'). Nothing when it is empty or
// climbs above the root; such a reference must never reach the disk.
std::optional<QString> NormaliseLocation(const QString& reference, const QString& folder);
// Finds the part a reference means, with some patience for files that spell it wrong. The reference itself is never
// rewritten, so the file keeps its spelling.
ResolvedLocation ResolveLocation(const Package& package, const QString& reference, const LocationContext& context);
// The reference to write for `part` in `holderPart`: relative, or absolute when the neighbours are.
QString MakeReference(const QString& part, const QString& holderPart, bool isAbsolute);

} // namespace ofd
