#include "damaged.h"

#include "deviations.h"
#include "raw_zip.h"

#include <zlib.h>

namespace samples {

namespace {

Package Plain()
{
    return PlainDocument("damaged", "A plain document before it was damaged.");
}

QByteArray TruncatedHalf()
{
    const QByteArray bytes = PackedBytes(Plain());
    return bytes.left(bytes.size() / 2);
}

QByteArray TruncatedTail()
{
    return PackedBytes(Plain()).chopped(30);
}

QByteArray Empty()
{
    return {};
}

QByteArray NotAZip()
{
    return "This is a text, whatever its name says.\r\n";
}

QByteArray OtherFormat()
{
    return "%PDF-1.4\n1 0 obj\n<</Type/Catalog>>\nendobj\ntrailer<</Root 1 0 R>>\n%%EOF\n";
}

QByteArray EncryptedBit()
{
    return WithChangedEntries(Plain(), [](RawEntry& entry) { entry.localFlags = entry.centralFlags = 1; });
}

QByteArray NoEntryPart()
{
    Package package = Plain();
    package.Remove(kEntryPart);
    return PackedBytes(package);
}

QByteArray NoDocRoot()
{
    Package package = Plain();
    package.Replace(kEntryPart, ElementText(package, kEntryPart, "DocRoot"), "");
    return PackedBytes(package);
}

QByteArray DocRootMissing()
{
    Package package = Plain();
    package.Remove(kDocument);
    return PackedBytes(package);
}

QByteArray NoPages()
{
    Package package = Plain();
    package.Replace(kDocument, ElementText(package, kDocument, "Pages"), "<ofd:Pages/>");
    return PackedBytes(package);
}

QByteArray NotWellFormed()
{
    Package package = Plain();
    package.Data(kDocument) = package.Data(kDocument).left(package.Data(kDocument).size() / 2);
    return PackedBytes(package);
}

const QByteArray kDoctype =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE x [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">"
    "<!ENTITY file SYSTEM \"file:///etc/hostname\">]>";

QByteArray WithDoctype(const QString& part)
{
    Package package = Plain();
    package.Replace(part, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>", kDoctype);
    if (part == kSecondPage)
        package.Replace(part, ">Second page<", ">&b;&file;<");
    return PackedBytes(package);
}

QByteArray Doctype()
{
    return WithDoctype(kDocument);
}

QByteArray DoctypeInPage()
{
    return WithDoctype(kSecondPage);
}

QByteArray BombPart(const QByteArray& page)
{
    const int at = page.indexOf("</ofd:Page>");
    return page.left(at) + QByteArray(64 << 20, ' ') + page.mid(at);
}

QByteArray Bomb()
{
    Package package = Plain();
    package.Data(kSecondPage) = BombPart(package.Data(kSecondPage));
    return PackedBytes(package);
}

QByteArray BombUnderstated()
{
    return WithChangedEntries(Plain(), [](RawEntry& entry) {
        if (QString::fromUtf8(entry.name) != kSecondPage)
            return;
        entry.declaredSize = entry.data.size();
        entry.data = BombPart(entry.data);
    });
}

QByteArray DeepXml()
{
    Package package = Plain();
    const int depth = 100000;
    package.Replace(kSecondPage, "<ofd:Layer ID=\"12\">",
                    "<ofd:Layer ID=\"12\">" + QByteArray("<ofd:PageBlock>").repeated(depth) +
                        QByteArray("</ofd:PageBlock>").repeated(depth));
    return PackedBytes(package);
}

QByteArray CyclicTemplate()
{
    Package package = Plain();
    package.Replace(kTemplate, "<ofd:Area>", "<ofd:Template TemplateID=\"3\" ZOrder=\"Background\"/>\n<ofd:Area>");
    return PackedBytes(package);
}

QByteArray CyclicDrawParam()
{
    Package package = Plain();
    AddResources(
        package,
        "<ofd:DrawParams><ofd:DrawParam ID=\"900\" Relative=\"901\"/><ofd:DrawParam ID=\"901\" Relative=\"900\" "
        "LineWidth=\"2\"/></ofd:DrawParams>\n");
    package.Replace(kFirstPage, "<ofd:PathObject ID=\"9\"", "<ofd:PathObject ID=\"9\" DrawParam=\"900\"");
    return PackedBytes(package);
}

QByteArray CyclicComposite()
{
    Package package = Plain();
    AddResources(
        package,
        "<ofd:CompositeGraphicUnits><ofd:CompositeGraphicUnit ID=\"900\" Width=\"40\" Height=\"40\"><ofd:Content>"
        "<ofd:CompositeObject ID=\"901\" Boundary=\"0 0 40 40\" ResourceID=\"900\"/>"
        "<ofd:CompositeObject ID=\"902\" Boundary=\"1 1 40 40\" "
        "ResourceID=\"900\"/></ofd:Content></ofd:CompositeGraphicUnit>"
        "</ofd:CompositeGraphicUnits>\n");
    AddToFirstPage(package, "<ofd:CompositeObject ID=\"903\" Boundary=\"20 100 40 40\" ResourceID=\"900\"/>\n");
    return PackedBytes(package);
}

QByteArray NestedPatterns()
{
    Package package = Plain();
    const QByteArray open = "<ofd:PathObject ID=\"900\" Boundary=\"0 0 4 4\" Fill=\"true\"><ofd:FillColor><ofd:Pattern "
                            "Width=\"1\" Height=\"1\" "
                            "XStep=\"0.001\" YStep=\"0.001\"><ofd:CellContent>";
    const QByteArray close =
        "</ofd:CellContent></ofd:Pattern></ofd:FillColor><ofd:AbbreviatedData>M 0 0 L 4 0 L 4 4 C</ofd:AbbreviatedData>"
        "</ofd:PathObject>";
    AddToFirstPage(package, open.repeated(20) + close.repeated(20));
    return PackedBytes(package);
}

QByteArray DotDotNames()
{
    Package package = Plain();
    package.Add("../../outside.txt", "an entry that climbs out of the package");
    package.Add("/absolute.txt", "an entry with an absolute name");
    package.Add("Doc_0\\Attachs\\back.txt", "an entry with backslashes");
    package.Replace(kAttachmentList, ">note.txt<", ">../../../../../etc/hostname<");
    package.Replace(kAttachmentList, " Name=\"note\"", " Name=\"../../note\"");
    return PackedBytes(package);
}

QByteArray HugeDeltaCount()
{
    Package package = Plain();
    AddToFirstPage(
        package,
        "<ofd:TextObject ID=\"900\" Boundary=\"20 100 60 8\" Font=\"1\" Size=\"6\"><ofd:TextCode X=\"0\" Y=\"6\" "
        "DeltaX=\"g 2000000000 1\" DeltaY=\"g 2000000000 0\">TEXT</ofd:TextCode></ofd:TextObject>\n");
    return PackedBytes(package);
}

QByteArray HugeNumbers()
{
    Package package = Plain();
    package.Replace(kFirstPage, "<ofd:PhysicalBox>0 0 210 297</ofd:PhysicalBox>",
                    "<ofd:PhysicalBox>0 0 1e30 nan</ofd:PhysicalBox>");
    package.Replace(kFirstPage, "CTM=\"20 0 0 20 0 0\"", "CTM=\"1e300 0 0 inf 0 0\"");
    package.Replace(kFirstPage, "M 0.125 0.125", "M -99999999999999999999 0.125");
    return PackedBytes(package);
}

void Append32(QByteArray& bytes, quint32 value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char(value >> shift));
}

QByteArray PngChunk(const QByteArray& type, const QByteArray& data)
{
    const QByteArray body = type + data;
    QByteArray chunk;
    Append32(chunk, quint32(data.size()));
    chunk += body;
    Append32(chunk, quint32(crc32(0, reinterpret_cast<const Bytef*>(body.constData()), uInt(body.size()))));
    return chunk;
}

QByteArray HugeImage()
{
    Package package = Plain();
    QByteArray header;
    Append32(header, 100000);
    Append32(header, 100000);
    header += QByteArray::fromHex("0802000000");
    package.Data(kPicture) = QByteArray::fromHex("89504e470d0a1a0a") + PngChunk("IHDR", header) +
                             PngChunk("IDAT", qCompress(QByteArray(300001, '\0')).mid(4)) + PngChunk("IEND", {});
    return PackedBytes(package);
}

QByteArray BrokenImage()
{
    Package package = Plain();
    package.Data(kPicture) = package.Data(kPicture).left(60);
    return PackedBytes(package);
}

QByteArray MissingPage()
{
    Package package = Plain();
    package.Remove(kSecondPage);
    return PackedBytes(package);
}

QByteArray CheckSumWrong()
{
    Package package = Plain();
    for (Part& part : package.Parts())
        part.isStored = part.name == "Doc_0/Attachs/note.txt";
    return PackedBytes(package).replace("A text attachment.", "A test attachment.");
}

QByteArray EntryOutsideFile()
{
    QByteArray bytes = PackedBytes(Plain());
    const int name = bytes.lastIndexOf(kPicture.toUtf8());
    return bytes.replace(name - 4, 4, QByteArray::fromHex("ffffff7f"));
}

QByteArray EntryCountLies()
{
    QByteArray bytes = PackedBytes(Plain());
    const int end = bytes.lastIndexOf("PK\x05\x06");
    return bytes.replace(end + 8, 4, QByteArray::fromHex("fefffeff"));
}

const Damage kTable[] = {
    {"truncated", "the second half of the file is missing", "refuse", TruncatedHalf},
    {"truncated_tail", "the last thirty bytes are missing", "refuse", TruncatedTail},
    {"empty", "a file of no bytes", "refuse", Empty},
    {"not_a_zip", "a text file", "refuse", NotAZip},
    {"other_format", "the beginning of a document of another format", "refuse", OtherFormat},
    {"encrypted", "all entries say that they are encrypted", "refuse: encrypted", EncryptedBit},
    {"no_ofd_xml", "OFD.xml is missing", "refuse", NoEntryPart},
    {"no_doc_root", "OFD.xml names no document", "refuse", NoDocRoot},
    {"doc_root_missing", "the document that OFD.xml names is missing", "refuse", DocRootMissing},
    {"no_pages", "the document has no page", "refuse", NoPages},
    {"not_well_formed", "Document.xml ends in the middle", "refuse", NotWellFormed},
    {"doctype", "Document.xml has a document type with entities", "refuse", Doctype},
    {"doctype_in_page", "the second page has a document type and reads a file of the machine",
     "open; the second page is empty", DoctypeInPage},
    {"bomb", "a page of 64 MiB of blanks, packed a thousand times smaller", "open; the second page is empty", Bomb},
    {"bomb_understated", "the same with a small size stated", "open; the second page is empty", BombUnderstated},
    {"deep_xml", "a page of 100,000 elements inside each other", "open; the second page is empty", DeepXml},
    {"cyclic_template", "a template that uses itself", "open", CyclicTemplate},
    {"cyclic_draw_param", "two draw parameters that build on each other", "open", CyclicDrawParam},
    {"cyclic_composite", "a composite unit that contains itself twice", "open", CyclicComposite},
    {"nested_patterns", "twenty patterns inside each other with steps of a micrometre", "open", NestedPatterns},
    {"dot_dot_names", "names and a reference that climb out of the package", "open; touch nothing outside",
     DotDotNames},
    {"huge_delta_count", "a text with two thousand million steps", "open", HugeDeltaCount},
    {"huge_numbers", "numbers that are no numbers or beyond all measure", "open with defaults", HugeNumbers},
    {"huge_image", "a picture that says it is 100,000 by 100,000", "open; draw nothing for it", HugeImage},
    {"broken_image", "a picture that ends early", "open; draw nothing for it", BrokenImage},
    {"missing_page", "the second page's part is missing", "open; the second page is empty", MissingPage},
    {"check_sum_wrong", "a part does not match its check sum", "open; warn", CheckSumWrong},
    {"entry_outside_file", "an entry of the directory lies outside the file", "open; reject that entry",
     EntryOutsideFile},
    {"entry_count_lies", "the directory claims thousands of entries more than it has", "refuse", EntryCountLies},
};

} // namespace

std::vector<Damage> Damages()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
