#include "tag_content.h"

#include "child_order.h"

#include <ofd/package/tag_names.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_text.h>
#include <ofd/package/xml_values.h>
#include <ofd/parse/custom_tag_reader.h>

#include <QHash>

#include <algorithm>

namespace ofd {

namespace {

// An attribute or a piece of literal data; the value may hold a '=' too.
struct KeyedValue
{
    QByteArray key;
    QString value;

    bool IsData() const { return key == "ObjectData"; }
    // What XML allows: a name with at most one prefix.
    bool CanBeWritten() const
    {
        const QString text = QString::fromUtf8(key);
        const int colon = text.indexOf(QLatin1Char(':'));
        return IsXmlName(text.mid(colon + 1)) && (colon < 0 || IsXmlName(text.left(colon)));
    }
};

QVector<KeyedValue> KeyedValues(const QVector<CCA_String>& attributes)
{
    QVector<KeyedValue> values;
    for (const CCA_String& attribute : attributes) {
        const QByteArray bytes = attribute.Bytes();
        const int equals = bytes.indexOf('=');
        const KeyedValue value{bytes.left(equals), equals < 0 ? QString() : QString::fromUtf8(bytes.mid(equals + 1))};
        if (value.CanBeWritten())
            values.append(value);
    }
    return values;
}

QStringList DataIn(const QVector<KeyedValue>& values)
{
    QStringList data;
    for (const KeyedValue& value : values) {
        if (value.IsData())
            data.append(value.value);
    }
    return data;
}

void EditAttributes(XmlEdit& edit, const pugi::xml_node& element, const QVector<KeyedValue>& now,
                    const QVector<KeyedValue>& before)
{
    QHash<QByteArray, QString> old;
    QHash<QByteArray, QString> current;
    for (const KeyedValue& value : before)
        old.insert(value.key, value.value);
    for (const KeyedValue& value : now)
        current.insert(value.key, value.value);
    for (const KeyedValue& value : before) {
        if (!value.IsData() && !current.contains(value.key))
            edit.RemoveAttribute(element, value.key);
    }
    for (const KeyedValue& value : now) {
        const bool isSame = old.contains(value.key) && old.value(value.key) == value.value;
        if (!value.IsData() && !isSame)
            edit.SetAttribute(element, value.key, value.value);
    }
}

void EditData(XmlEdit& edit, const pugi::xml_node& element, const QStringList& now, const QStringList& before)
{
    const std::vector<pugi::xml_node> elements = ChildElements(element, "ObjectData");
    for (int i = 0; i < int(elements.size()); ++i) {
        if (i >= now.size())
            edit.Remove(elements[size_t(i)]);
        else if (now.at(i) != before.value(i))
            edit.SetText(elements[size_t(i)], now.at(i));
    }
    for (int i = int(elements.size()); i < now.size(); ++i)
        edit.AppendChild(element, XmlFragment(PrefixOf(element)).Element("ObjectData", now.at(i)).GetBytes());
}

using Reference = QPair<int, int>; // page id, object id

QVector<Reference> ReferencesIn(const QVector<G_PageObjRef>& objects)
{
    QVector<Reference> references;
    for (const G_PageObjRef& page : objects) {
        for (const int id : page.objectIds)
            references.append({page.pageId, id});
    }
    return references;
}

void AppendReference(XmlFragment& xml, const Reference& reference)
{
    xml.Open("ObjectRef").Attribute("PageRef", FormatId(reference.first));
    xml.Text(FormatId(reference.second)).Close();
}

Reference ReferenceOf(const pugi::xml_node& element)
{
    return {int(IdAttribute(element, "PageRef")), int(ParseId(TrimmedText(element).toStdString()).value_or(0))};
}

// The order in which references are read: those of one page together, pages in the order of their first one.
QVector<Reference> ByPages(const QVector<Reference>& references)
{
    QVector<int> pages;
    QHash<int, QVector<Reference>> ofPage;
    for (const Reference& reference : references) {
        if (!ofPage.contains(reference.first))
            pages.append(reference.first);
        ofPage[reference.first].append(reference);
    }
    QVector<Reference> ordered;
    for (const int page : qAsConst(pages))
        ordered += ofPage.value(page);
    return ordered;
}

QByteArray ReferenceXml(const Reference& reference, const QByteArray& prefix)
{
    XmlFragment xml(prefix);
    AppendReference(xml, reference);
    return xml.GetBytes();
}

// Puts them into another order, which the edit below cannot.
void ReorderReferences(XmlEdit& edit, const pugi::xml_node& element, const std::vector<pugi::xml_node>& elements,
                       const QVector<Reference>& now, const QByteArray& prefix)
{
    QHash<Reference, QVector<int>> places;
    for (int i = int(elements.size()) - 1; i >= 0; --i)
        places[ReferenceOf(elements[size_t(i)])].append(i);
    std::vector<int> matches;
    for (const Reference& reference : now) {
        QVector<int>& free = places[reference];
        matches.push_back(free.isEmpty() ? -1 : free.takeLast());
    }
    ArrangeChildren(edit, element, elements, matches, [&](int i) {
        const int match = matches[size_t(i)];
        return match < 0 ? ReferenceXml(now.at(i), prefix) : edit.GetElementBytes(elements[size_t(match)]);
    });
}

// Takes out what is not wanted and adds what is missing behind the last one; references to nothing stay.
void AddAndRemoveReferences(XmlEdit& edit, const pugi::xml_node& element, const QVector<Reference>& now,
                            const QByteArray& prefix)
{
    QHash<Reference, int> wanted;
    QHash<Reference, int> kept;
    for (const Reference& reference : now)
        ++wanted[reference];
    const std::vector<pugi::xml_node> elements = ChildElements(element, "ObjectRef");
    for (const pugi::xml_node& child : elements) {
        const Reference reference = ReferenceOf(child);
        if (reference.first == 0 || reference.second == 0)
            continue;
        int& count = wanted[reference];
        if (count > 0) {
            --count;
            ++kept[reference];
        } else {
            edit.Remove(child);
        }
    }
    QByteArray inFront;
    for (const Reference& reference : now) {
        if (kept[reference]-- > 0)
            continue;
        if (elements.empty())
            inFront += ReferenceXml(reference, prefix);
        else
            edit.InsertAfter(elements.back(), ReferenceXml(reference, prefix));
    }
    if (!inFront.isEmpty())
        edit.PrependChild(element, inFront);
}

// As few edits as the wanted order allows.
void EditReferences(XmlEdit& edit, const pugi::xml_node& element, const QVector<Reference>& now,
                    const QByteArray& prefix)
{
    std::vector<pugi::xml_node> valid;
    QHash<Reference, int> open;
    QVector<Reference> left; // what the part would hold if nothing moved
    for (const Reference& reference : now)
        ++open[reference];
    for (const pugi::xml_node& child : ChildElements(element, "ObjectRef")) {
        const Reference reference = ReferenceOf(child);
        if (reference.first == 0 || reference.second == 0)
            continue;
        valid.push_back(child);
        if (open[reference]-- > 0)
            left.append(reference);
    }
    QHash<Reference, int> kept;
    for (const Reference& reference : qAsConst(left))
        ++kept[reference];
    for (const Reference& reference : now) {
        if (kept[reference]-- <= 0)
            left.append(reference);
    }
    if (!valid.empty() && ByPages(left) != ByPages(now))
        ReorderReferences(edit, element, valid, now, prefix);
    else
        AddAndRemoveReferences(edit, element, now, prefix);
}
} // namespace

bool HasSameObjects(const QVector<G_PageObjRef>& a, const QVector<G_PageObjRef>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const G_PageObjRef& x, const G_PageObjRef& y) {
        return x.pageId == y.pageId && x.objectIds == y.objectIds;
    });
}

void EditTagContent(XmlEdit& edit, const pugi::xml_node& element, const G_CustomTagItem& tag, const TagSource& source,
                    const QByteArray& referencePrefix)
{
    const QVector<CCA_String> attributes = tag.attributes.Values();
    if (attributes != source.attributes) {
        const QVector<KeyedValue> now = KeyedValues(attributes);
        const QVector<KeyedValue> before = KeyedValues(source.attributes);
        EditAttributes(edit, element, now, before);
        EditData(edit, element, DataIn(now), DataIn(before));
    }
    const QVector<G_PageObjRef> objects = ObjectsOf(tag);
    if (!HasSameObjects(objects, source.objects))
        EditReferences(edit, element, ReferencesIn(objects), referencePrefix);
}

void AppendTagContent(XmlFragment& xml, const G_CustomTagItem& tag, const QByteArray& referencePrefix)
{
    const QVector<KeyedValue> values = KeyedValues(tag.attributes.Values());
    for (const KeyedValue& value : values) {
        if (!value.IsData())
            xml.Attribute(value.key, value.value);
    }
    XmlFragment content(referencePrefix);
    for (const QString& data : DataIn(values))
        content.Element("ObjectData", data);
    for (const Reference& reference : ReferencesIn(ObjectsOf(tag)))
        AppendReference(content, reference);
    const QByteArray bytes = content.GetBytes();
    if (!bytes.isEmpty())
        xml.Raw(bytes);
}

} // namespace ofd
