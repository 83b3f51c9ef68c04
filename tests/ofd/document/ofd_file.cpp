#include "ofd_file.h"

#include <ofd/package/package.h>
#include <ofd/package/package_writer.h>

#include <QFile>

namespace {

const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");

QString PagePart(int index)
{
    return QStringLiteral("Doc_0/Pages/Page_%1/Content.xml").arg(index);
}

} // namespace

QByteArray Element(const QByteArray& name, const QByteArray& content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ofd:" + name + " xmlns:ofd=\"http://www.ofdspec.org/2016\">" +
           content + "</ofd:" + name + ">";
}

QByteArray PageXml(const QByteArray& objects)
{
    return Element("Page", "<ofd:Content><ofd:Layer ID=\"500\">" + objects + "</ofd:Layer></ofd:Content>");
}

OfdFile OfdFile::WithPages(int count)
{
    OfdFile file;
    file.pageCount = count;
    file.parts[QStringLiteral("OFD.xml")] =
        Element("OFD", "<ofd:DocBody><ofd:DocInfo><ofd:DocID>1</ofd:DocID></ofd:DocInfo>"
                       "<ofd:DocRoot>Doc_0/Document.xml</ofd:DocRoot></ofd:DocBody>");
    for (int i = 0; i < count; ++i)
        file.parts[PagePart(i)] = PageXml({});
    file.MakeDocument();
    return file;
}

OfdFile OfdFile::WithPage(const QByteArray& content)
{
    OfdFile file = WithPages(1);
    file.parts[PagePart(0)] = PageXml(content);
    return file;
}

void OfdFile::MakeDocument()
{
    QByteArray pages;
    for (int i = 0; i < pageCount; ++i) {
        const QByteArray index = QByteArray::number(i);
        pages += "\n    <ofd:Page ID=\"" + QByteArray::number(i + 1) + "\" BaseLoc=\"Pages/Page_" + index +
                 "/Content.xml\"/>";
    }
    parts[DocumentPart] =
        Element("Document", "\n  <ofd:CommonData><ofd:MaxUnitID>1000</ofd:MaxUnitID><ofd:PageArea>"
                            "<ofd:PhysicalBox>0 0 100 100</ofd:PhysicalBox></ofd:PageArea>" +
                                common + "</ofd:CommonData>\n  <ofd:Pages>" + pages + "\n  </ofd:Pages>" + tail + "\n");
}

OfdFile& OfdFile::Set(const QString& part, const QByteArray& bytes)
{
    parts[part] = bytes;
    return *this;
}

OfdFile& OfdFile::Remove(const QString& part)
{
    parts.remove(part);
    return *this;
}

OfdFile& OfdFile::Tail(const QByteArray& xml)
{
    tail = xml;
    MakeDocument();
    return *this;
}

OfdFile& OfdFile::Common(const QByteArray& xml)
{
    common = xml;
    MakeDocument();
    return *this;
}

OfdFile& OfdFile::Resources(const QByteArray& xml)
{
    parts[QStringLiteral("Doc_0/DocumentRes.xml")] =
        Element("Res", xml).replace("<ofd:Res ", "<ofd:Res BaseLoc=\"Res\" ");
    return Common("<ofd:DocumentRes>DocumentRes.xml</ofd:DocumentRes>");
}

QString OfdFile::Write(const QString& path) const
{
    ofd::PackageChanges changes;
    for (auto part = parts.cbegin(); part != parts.cend(); ++part)
        changes.SetPart(part.key(), part.value());
    const ofd::SaveResult result = ofd::CreatePackage(changes, path);
    if (!result)
        qFatal("%s: %s", qPrintable(path), qPrintable(result.error.text));
    return path;
}

QByteArray PartOf(const QString& path, const QString& part)
{
    const std::unique_ptr<ofd::Package> package = ofd::Package::Open(path);
    return package ? package->Read(part).bytes : QByteArray();
}

QByteArray BytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
