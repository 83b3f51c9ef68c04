#include "xml_edit.h"

#include "xml_names.h"
#include "xml_part.h"
#include "xml_scan.h"
#include "xml_text.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstring>

namespace ofd {

namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Where one attribute stands inside a start tag.
struct AttributeRange
{
    qint64 begin = -1;      // with the white space in front
    qint64 quoteBegin = -1; // the opening quote
    qint64 end = -1;        // behind the closing quote
};

// Finds an attribute in the start tag [begin, end) of well-formed XML: the one of that name, else the first of that
// local name, as readers do; declarations are passed over.
AttributeRange FindAttribute(const QByteArray& bytes, qint64 begin, qint64 end, const QByteArray& wanted)
{
    const char* data = bytes.constData();
    qint64 at = begin + 1;
    while (at < end && !IsBlank(data[at]) && data[at] != '>' && data[at] != '/')
        ++at;
    AttributeRange prefixed;
    while (at < end) {
        AttributeRange range;
        range.begin = at;
        while (at < end && IsBlank(data[at]))
            ++at;
        const qint64 nameBegin = at;
        while (at < end && !IsBlank(data[at]) && data[at] != '=' && data[at] != '>' && data[at] != '/')
            ++at;
        const QByteArray name(data + nameBegin, int(at - nameBegin));
        while (at < end && data[at] != '"' && data[at] != '\'')
            ++at;
        if (name.isEmpty() || at >= end)
            break;
        range.quoteBegin = at;
        const void* quote = std::memchr(data + at + 1, data[at], size_t(end - at - 1));
        if (!quote)
            break;
        at = static_cast<const char*>(quote) - data + 1;
        range.end = at;
        const bool isDeclaration = name == "xmlns" || name.startsWith("xmlns:");
        if (!isDeclaration && name == wanted)
            return range;
        if (!isDeclaration && prefixed.begin < 0 && LocalName(name.constData()) == wanted.constData())
            prefixed = range;
    }
    return prefixed;
}

// Behind the last attribute of a start tag, or behind the name when there is none.
qint64 AttributesEnd(const QByteArray& bytes, const ElementRange& range)
{
    qint64 at = range.startTagEnd - (range.isEmptyTag ? 2 : 1);
    while (at > range.begin && IsBlank(bytes.at(int(at - 1))))
        --at;
    return at;
}

int DepthOf(pugi::xml_node node)
{
    int depth = 0;
    for (; node; node = node.parent())
        ++depth;
    return depth;
}

// Levels of edits around an element, and of edits of its attributes or its whole content.
int LevelAround(const pugi::xml_node& element)
{
    return 2 * DepthOf(element);
}
int LevelInside(const pugi::xml_node& element)
{
    return 2 * DepthOf(element) + 1;
}
int LevelOfChildren(const pugi::xml_node& parent)
{
    return 2 * DepthOf(parent) + 2;
}

pugi::xml_node LastElement(const pugi::xml_node& parent)
{
    pugi::xml_node child = parent.last_child();
    while (child && child.type() != pugi::node_element)
        child = child.previous_sibling();
    return child;
}

} // namespace

XmlEdit::XmlEdit(const XmlPart& part)
    : part(part)
{
}

ElementRange XmlEdit::GetRange(const pugi::xml_node& element) const
{
    ElementRange range;
    const qint64 begin = part.PlaceOf(element);
    if (begin < 0)
        return range;
    XmlScanner scanner(part.GetBytes(), begin);
    int depth = 0;
    for (XmlToken token = scanner.Next(); token.kind != XmlToken::End; token = scanner.Next()) {
        if (token.kind == XmlToken::StartTag)
            ++depth;
        else if (token.kind == XmlToken::EndTag)
            --depth;
        if (range.startTagEnd < 0) {
            range.startTagEnd = token.end;
            range.isEmptyTag = token.kind == XmlToken::EmptyTag;
        }
        if (depth == 0) {
            range.begin = begin;
            range.end = token.end;
            range.contentEnd = range.isEmptyTag ? token.end : token.begin;
            break;
        }
    }
    return range;
}

QByteArray XmlEdit::GetElementBytes(const pugi::xml_node& element) const
{
    const ElementRange range = GetRange(element);
    return range ? part.GetBytes().mid(int(range.begin), int(range.end - range.begin)) : QByteArray();
}

void XmlEdit::ReplaceElement(const pugi::xml_node& element, const QByteArray& xml)
{
    if (const ElementRange range = GetRange(element))
        Replace(range.begin, range.end, xml, LevelAround(element));
}

void XmlEdit::ReplaceContent(const pugi::xml_node& element, const QByteArray& xml)
{
    const ElementRange range = GetRange(element);
    if (!range)
        return;
    if (!range.isEmptyTag) {
        Replace(range.startTagEnd, range.contentEnd, xml, LevelInside(element));
        return;
    }
    openedTags.remove(AttributesEnd(part.GetBytes(), range));
    if (!xml.isEmpty())
        FillEmptyTag(element, xml, false);
}

void XmlEdit::SetText(const pugi::xml_node& element, const QString& text)
{
    ReplaceContent(element, EscapeText(text));
}

void XmlEdit::SetAttribute(const pugi::xml_node& element, const QByteArray& name, const QString& value)
{
    const ElementRange range = GetRange(element);
    if (!range)
        return;
    const QByteArray quoted = '"' + EscapeAttribute(value) + '"';
    const AttributeRange old = FindAttribute(part.GetBytes(), range.begin, range.startTagEnd, name);
    if (old.begin >= 0) {
        Replace(old.quoteBegin, old.end, quoted, LevelInside(element));
        return;
    }
    const qint64 at = AttributesEnd(part.GetBytes(), range);
    const QByteArray bytes = ' ' + name + '=' + quoted;
    const QPair<qint64, QByteArray> key(at, name);
    const auto added = addedAttributes.constFind(key);
    if (added != addedAttributes.cend()) {
        splices[*added].bytes = bytes;
        return;
    }
    addedAttributes.insert(key, splices.size());
    Insert(at, bytes, LevelInside(element));
}

void XmlEdit::RemoveAttribute(const pugi::xml_node& element, const QByteArray& name)
{
    const ElementRange range = GetRange(element);
    if (!range)
        return;
    const AttributeRange old = FindAttribute(part.GetBytes(), range.begin, range.startTagEnd, name);
    const auto added = addedAttributes.constFind({AttributesEnd(part.GetBytes(), range), name});
    if (old.begin >= 0)
        Replace(old.begin, old.end, {}, LevelInside(element));
    else if (added != addedAttributes.cend())
        splices[*added].bytes.clear();
}

void XmlEdit::Remove(const pugi::xml_node& element)
{
    const ElementRange range = GetRange(element);
    if (range)
        Replace(range.begin - LeadingBlank(range.begin).size(), range.end, {}, LevelAround(element));
}

void XmlEdit::InsertBefore(const pugi::xml_node& sibling, const QByteArray& xml)
{
    const qint64 begin = part.PlaceOf(sibling);
    if (begin < 0)
        return;
    const QByteArray blank = LeadingBlank(begin);
    Insert(begin - blank.size(), blank + xml, LevelAround(sibling));
}

void XmlEdit::InsertAfter(const pugi::xml_node& sibling, const QByteArray& xml)
{
    if (const ElementRange range = GetRange(sibling))
        Insert(range.end, LeadingBlank(range.begin) + xml, LevelAround(sibling));
}

void XmlEdit::PrependChild(const pugi::xml_node& parent, const QByteArray& xml)
{
    if (const pugi::xml_node first = FirstElement(parent)) {
        InsertBefore(first, xml);
        return;
    }
    const ElementRange range = GetRange(parent);
    if (range && range.isEmptyTag)
        FillEmptyTag(parent, xml, true);
    else if (range)
        Insert(range.startTagEnd, xml, LevelOfChildren(parent));
}

void XmlEdit::AppendChild(const pugi::xml_node& parent, const QByteArray& xml)
{
    if (const pugi::xml_node last = LastElement(parent)) {
        InsertAfter(last, xml);
        return;
    }
    const ElementRange range = GetRange(parent);
    if (range && range.isEmptyTag) {
        FillEmptyTag(parent, xml, false);
    } else if (range) {
        // In front of the white space that indents the end tag.
        const qint64 blank = LeadingBlank(range.contentEnd).size();
        Insert(range.contentEnd - blank, xml, LevelOfChildren(parent));
    }
}

void XmlEdit::InsertInOrder(const pugi::xml_node& parent, const QByteArray& localName, const QByteArray& xml,
                            const SchemaOrder& order)
{
    auto rankOf = [&order](std::string_view name) {
        const auto found = std::find(order.begin(), order.end(), name);
        return found == order.end() ? -1 : int(found - order.begin());
    };
    const int rank = rankOf(localName.constData());
    pugi::xml_node firstLater;
    pugi::xml_node lastEarlier;
    bool isOutOfOrder = false;
    for (pugi::xml_node child = FirstElement(parent); child; child = NextElement(child)) {
        const int childRank = rankOf(LocalName(child));
        if (childRank < 0)
            continue;
        if (childRank > rank && !firstLater)
            firstLater = child;
        if (childRank <= rank) {
            lastEarlier = child;
            isOutOfOrder = bool(firstLater);
        }
    }
    if (rank < 0 || !firstLater)
        AppendChild(parent, xml);
    else if (isOutOfOrder)
        InsertAfter(lastEarlier, xml);
    else
        InsertBefore(firstLater, xml);
}

QByteArray XmlEdit::Apply(PackageError* error) const
{
    const QByteArray& old = part.GetBytes();
    QByteArray result;
    result.reserve(old.size() + 4096);
    qint64 at = 0;
    for (const Splice& splice : SortedSplices()) {
        result.append(old.constData() + at, int(splice.begin - at));
        result.append(splice.bytes);
        at = splice.end;
    }
    result.append(old.constData() + at, int(old.size() - at));
    const std::unique_ptr<XmlPart> check = part.Reparse(result, error);
    return check ? result : QByteArray();
}

void XmlEdit::Replace(qint64 begin, qint64 end, const QByteArray& bytes, int level)
{
    Splice splice;
    splice.begin = begin;
    splice.end = end;
    splice.bytes = bytes;
    splice.level = level;
    splices.push_back(splice);
}

void XmlEdit::Insert(qint64 at, const QByteArray& bytes, int level)
{
    Replace(at, at, bytes, level);
    splices.back().isInsertion = true;
}

// The white space between the place and the tag in front of it; nothing when there is text between them.
QByteArray XmlEdit::LeadingBlank(qint64 elementBegin) const
{
    const QByteArray& bytes = part.GetBytes();
    qint64 at = elementBegin;
    while (at > 0 && IsBlank(bytes.at(int(at - 1))))
        --at;
    if (at == 0 || bytes.at(int(at - 1)) != '>')
        return {};
    return bytes.mid(int(at), int(elementBegin - at));
}

void XmlEdit::FillEmptyTag(const pugi::xml_node& element, const QByteArray& xml, bool inFront)
{
    const ElementRange range = GetRange(element);
    OpenedTag& tag = openedTags[AttributesEnd(part.GetBytes(), range)];
    tag.end = range.end;
    tag.content = inFront ? xml + tag.content : tag.content + xml;
    tag.qualifiedName = element.name();
    tag.level = LevelInside(element);
}

// All splices from front to back, without those that are covered by another.
std::vector<XmlEdit::Splice> XmlEdit::SortedSplices() const
{
    std::vector<Splice> all = splices;
    for (auto tag = openedTags.cbegin(); tag != openedTags.cend(); ++tag) {
        Splice opened;
        opened.begin = tag.key();
        opened.end = tag->end;
        opened.bytes = '>' + tag->content + "</" + tag->qualifiedName + '>';
        opened.level = tag->level;
        all.push_back(opened);
    }
    std::stable_sort(all.begin(), all.end(), [](const Splice& a, const Splice& b) {
        if (a.begin != b.begin)
            return a.begin < b.begin;
        if (a.level != b.level)
            return a.level < b.level;
        return a.isInsertion && !b.isInsertion;
    });
    std::vector<Splice> kept;
    Splice cover; // the last kept one that replaces bytes
    cover.begin = cover.end = -1;
    for (Splice& splice : all) {
        const bool isInside = splice.begin >= cover.begin && splice.end <= cover.end;
        if (isInside && splice.level > cover.level)
            continue;
        const bool isSameTarget = isInside && !splice.isInsertion && splice.level == cover.level;
        if (isSameTarget && splice.begin == cover.begin && splice.end == cover.end) {
            kept.back() = splice; // of two edits of one thing the later call holds
            continue;
        }
        if (isSameTarget && splice.begin < cover.end)
            continue; // an element that is both replaced and removed is removed
        kept.push_back(splice);
        if (!splice.isInsertion)
            cover = splice;
    }
    return kept;
}

} // namespace ofd
