#pragma once

#include <QByteArray>
#include <QStringList>

#include <mutex>

namespace ofd {

class Package;
struct DocumentStructure;

// Gives out identifiers that nothing in the document has. What the document states as its highest one cannot be
// trusted: it is missing or too low in some files, so the parts are looked through when an identifier is first needed.
// Lives as long as the document; any thread.
class UnitIds
{
public:
    // The structure must outlive it.
    explicit UnitIds(const DocumentStructure& structure);

    // The next identifier, above all that are in use, above `above`, and never the same twice. The first call reads
    // every part of the document that holds identifiers, up to a limit on their size.
    int Take(const Package& package, int above = 0);

private:
    const DocumentStructure& structure;
    std::mutex mutex;
    bool isScanned = false;
    int highest = 0;
};

// The highest value of an attribute called ID in the bytes of a part, 0 when there is none. Values so high that little
// room is left above them do not count.
int HighestIdIn(const QByteArray& xml);

} // namespace ofd
