#pragma once

#include "package_error.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QPair>
#include <QString>

#include <vector>

#include <pugixml.hpp>

namespace ofd {

class XmlPart;

// Where an element stands in the bytes of its part. All are offsets from the start; ends are one past.
struct ElementRange
{
    qint64 begin = -1;       // the '<'; -1 when the node is no element of the part
    qint64 startTagEnd = -1; // behind the '>' of the start tag
    qint64 contentEnd = -1;  // the '<' of the end tag; startTagEnd for an empty tag
    qint64 end = -1;         // behind the last '>'
    bool isEmptyTag = false; // <a/>

    explicit operator bool() const { return begin >= 0; }
};

// Names of the children of an element in the order in which the format wants them.
using SchemaOrder = std::vector<const char*>;

// Changes to a part, collected as replacements of byte ranges and applied all at once: everything that was not touched
// keeps its bytes, down to white space, line ends, prefixes, attribute order and comments. The part's tree stays as it
// was: nodes name places in the old bytes, also after several edits. An edit inside a range that another edit replaces
// or removes is dropped. The part must outlive the edit.
class XmlEdit
{
public:
    explicit XmlEdit(const XmlPart& part);

    // Places of an element, for copying its bytes.
    ElementRange GetRange(const pugi::xml_node& element) const;
    QByteArray GetElementBytes(const pugi::xml_node& element) const;

    // XML below is bytes in UTF-8 as XmlFragment makes them.
    void ReplaceElement(const pugi::xml_node& element, const QByteArray& xml);
    // Replaces all between the tags; an empty tag is opened.
    void ReplaceContent(const pugi::xml_node& element, const QByteArray& xml);
    void SetText(const pugi::xml_node& element, const QString& text);
    // Changes the value of the attribute of that name, else of the first with that local name, or adds it behind the
    // last one as `name`.
    void SetAttribute(const pugi::xml_node& element, const QByteArray& name, const QString& value);
    void RemoveAttribute(const pugi::xml_node& element, const QByteArray& name);
    // Removes the element together with the white space in front of it.
    void Remove(const pugi::xml_node& element);

    // New elements take the indentation of their neighbour. Several at one place stand in the order of the calls.
    void InsertBefore(const pugi::xml_node& sibling, const QByteArray& xml);
    void InsertAfter(const pugi::xml_node& sibling, const QByteArray& xml);
    void PrependChild(const pugi::xml_node& parent, const QByteArray& xml);
    void AppendChild(const pugi::xml_node& parent, const QByteArray& xml);
    // Inserts a child called `localName` where the order wants it: before the first sibling that comes later; when the
    // file's own order is already another, behind the last sibling that does not; else at the end. Nothing existing is
    // moved. Call it in schema order for several new children, since each sees only what the part had.
    void InsertInOrder(const pugi::xml_node& parent, const QByteArray& localName, const QByteArray& xml,
                       const SchemaOrder& order);

    bool IsEmpty() const { return splices.empty() && openedTags.isEmpty(); }
    // The new bytes of the part. They are parsed before they are handed out: on an error the result is empty.
    QByteArray Apply(PackageError* error = nullptr) const;

private:
    // Bytes that take the place of a range. The level tells edits around an element from edits inside it when both
    // begin or end at the same byte: an edit is dropped when one of a lower level covers it.
    struct Splice
    {
        qint64 begin = 0;
        qint64 end = 0;
        QByteArray bytes;
        int level = 0;
        bool isInsertion = false;
    };

    // An empty tag that gets content.
    struct OpenedTag
    {
        qint64 end = 0;
        QByteArray content;
        QByteArray qualifiedName;
        int level = 0;
    };

    void Replace(qint64 begin, qint64 end, const QByteArray& bytes, int level);
    void Insert(qint64 at, const QByteArray& bytes, int level);
    QByteArray LeadingBlank(qint64 elementBegin) const;
    // Adds to the content of an empty tag, in front or at the end.
    void FillEmptyTag(const pugi::xml_node& element, const QByteArray& xml, bool inFront);
    std::vector<Splice> SortedSplices() const;

    const XmlPart& part;
    std::vector<Splice> splices;
    QMap<qint64, OpenedTag> openedTags;                       // by the place of their "/>"
    QHash<QPair<qint64, QByteArray>, size_t> addedAttributes; // by place and name, the splice that adds it
};

} // namespace ofd
