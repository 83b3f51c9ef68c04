#pragma once

#include <QByteArray>
#include <QSet>
#include <QStringList>
#include <QVector>

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
    // Those of a page's annotations, given those in the file (0 for none): each keeps its own unless there is none or
    // an annotation asked for earlier, on whichever page, has the same; such a one gets a new one. Ask once a page.
    QVector<int> ForAnnotations(const Package& package, const QVector<int>& inFile);

private:
    int Next(const Package& package, int above); // with the mutex held

    const DocumentStructure& structure;
    std::mutex mutex;
    bool isScanned = false;
    int highest = 0;
    QSet<int> annotations; // what annotations have
};

// The highest value of an attribute called ID in the bytes of a part, 0 when there is none. Values so high that little
// room is left above them do not count.
int HighestIdIn(const QByteArray& xml);

} // namespace ofd
