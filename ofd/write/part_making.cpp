#include "part_making.h"

#include <ofd/package/package.h>
#include <ofd/package/package_error.h>
#include <ofd/package/xml_edit.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/package/xml_values.h>

namespace ofd {

QByteArray FormatNamespace(const pugi::xml_node& root)
{
    const QByteArray prefix = PrefixOf(root).replace(':', QByteArray());
    const QString address = NamespaceOfPrefix(root, std::string_view(prefix.constData(), size_t(prefix.size())));
    return address.isEmpty() ? QByteArray("http://www.ofdspec.org/2016") : address.toUtf8();
}

QByteArray NamespaceDeclaration(const pugi::xml_node& root)
{
    const QByteArray prefix = PrefixOf(root).replace(':', QByteArray());
    const QByteArray name = prefix.isEmpty() ? QByteArray("xmlns") : "xmlns:" + prefix;
    return ' ' + name + "=\"" + EscapeAttribute(QString::fromUtf8(FormatNamespace(root))) + '"';
}

QByteArray NewPart(const pugi::xml_node& other, const QByteArray& rootName, const QByteArray& content)
{
    const QByteArray name = PrefixOf(other) + rootName;
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<" + name + NamespaceDeclaration(other) + '>' + content + "</" +
           name + '>';
}

std::unique_ptr<XmlPart> LoadList(const Package& package, const QString& listPart, PackageError& error)
{
    if (listPart.isEmpty())
        return nullptr;
    PackageError reason;
    std::unique_ptr<XmlPart> list = XmlPart::Load(package, listPart, &reason);
    const bool isBroken = reason.kind == PackageErrorKind::BadXml || reason.kind == PackageErrorKind::Damaged;
    if (!list && !isBroken)
        error = reason;
    return list;
}

bool RefersFromRoot(const pugi::xml_node& list)
{
    const pugi::xml_node location = ChildElement(FirstElement(list), "FileLoc");
    return TrimmedText(location).startsWith(QLatin1Char('/'));
}

bool ListsAreFromRoot(const pugi::xml_node& documentRoot)
{
    for (const char* name : {"Annotations", "CustomTags", "Attachments", "Extensions"}) {
        const QString location = TrimmedText(ChildElement(documentRoot, name));
        if (!location.isEmpty())
            return location.startsWith(QLatin1Char('/'));
    }
    const pugi::xml_node page = Descend(documentRoot, {"Pages", "Page"});
    return AttributeText(page, "BaseLoc").trimmed().startsWith(QLatin1Char('/'));
}

void RaiseMaxUnitId(XmlEdit& edit, const pugi::xml_node& documentRoot, int id)
{
    const pugi::xml_node common = ChildElement(documentRoot, "CommonData");
    const pugi::xml_node element = ChildElement(common, "MaxUnitID");
    if (!common || id == 0 || qint64(ParseId(TrimmedText(element).toStdString()).value_or(0)) >= id)
        return;
    const QString text = QString::number(id);
    if (element)
        edit.SetText(element, text);
    else
        edit.PrependChild(common, XmlFragment(PrefixOf(common)).Element("MaxUnitID", text).GetBytes());
}

} // namespace ofd
