#pragma once

#include <QHash>
#include <QVector>

#include <pugixml.hpp>

namespace ofd {

class XmlPart;
struct Resources;

// Reads the draw parameters of a list of resources. Their colours may be patterns whose cells are drawn with other draw
// parameters, so each is read after those, wherever they stand. One that is painted with itself gets no colours inside
// of its own cells. Lives while the list is read.
class DrawParamReader
{
public:
    // The colour spaces must have been read.
    explicit DrawParamReader(Resources& resources)
        : resources(resources)
    {
    }

    // Takes everything but the colours; the first of an identifier must be the one. The part must outlive this object.
    void Add(const XmlPart& part, const pugi::xml_node& element, int id);
    // Once, when all are there.
    void ReadColors();

private:
    // What must have been read before.
    struct Need
    {
        int id;
        bool isPainted; // in a cell; else it is only what the values go on with
    };
    struct Entry
    {
        const XmlPart* part; // not owned
        pugi::xml_node element;
        int id;
        bool isOpen = false;
        bool isRead = false;
        int depth = 0; // of patterns in patterns
    };
    struct Step
    {
        int entry;
        bool isPainted; // how the step below came here
        QVector<Need> needs;
        int next = 0;
    };

    static QVector<Need> NeedsOf(const pugi::xml_node& element);
    void ReadWithNeeds(int first);
    // The entry that has to be read before the step is done; -1 when there is none.
    int NextNeed(QVector<Step>& steps);
    void TellOfCycle(const QVector<Step>& steps, int entry, bool isPainted) const;
    void Read(Entry& entry);

    Resources& resources;
    QVector<Entry> entries;
    QHash<int, int> entryById;
};

} // namespace ofd
