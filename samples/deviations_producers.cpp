// What writers do that follow their own system rather than the format: its encodings, its buffers, its lists of
// numbers.
#include "deviations.h"

#include "raw_zip.h"

#include <QTextCodec>

namespace samples {

namespace {

QByteArray InGb18030(const QString& text)
{
    return QTextCodec::codecForName("GB18030")->fromUnicode(text);
}

QByteArray WithNamesOfTwoReadings(const Package& package)
{
    Package named = package;
    const QString picture = QString::fromUtf8("Doc_0/Res/图片.png"); // in GB18030 it is valid UTF-8 as well
    const QString note = QString::fromUtf8("Doc_0/Attachs/说明.txt");
    named.Rename(kPicture, picture);
    named.Replace(kDocumentRes, "quadrants.png", QByteArray("图片.png"));
    named.Rename("Doc_0/Attachs/note.txt", note);
    named.Replace(kAttachmentList, "note.txt", QByteArray("说明.txt"));
    named.Rename(kTagFile, QString::fromUtf8("Doc_0/Tags/标签.xml"));
    named.Replace(kTagList, "Sample.xml", QByteArray("标签.xml"));
    return WithChangedEntries(named, [](RawEntry& entry) {
        entry.name = InGb18030(QString::fromUtf8(entry.name));
        entry.localFlags = entry.centralFlags = 0;
    });
}

QByteArray WithDoubledSlashes(const Package& package)
{
    return WithChangedEntries(package, [](RawEntry& entry) { entry.name.replace("Doc_0/", "Doc_0//"); });
}

void EscapedReferences(Package& package)
{
    package.Rename(kPicture, QString::fromUtf8("Doc_0/Res/图 1.png"));
    package.Replace(kDocumentRes, "quadrants.png", "%E5%9B%BE%201.png");
    package.Rename("Doc_0/Attachs/note.txt", "Doc_0/Attachs/a note.txt");
    package.Replace(kAttachmentList, "note.txt", "a%20note.txt");
}

void Gb18030CalledUtf8(Package& package)
{
    AddToFirstPage(package, "<ofd:TextObject ID=\"900\" Boundary=\"20 100 100 8\" Font=\"1\" Size=\"6\"><ofd:TextCode "
                            "X=\"0\" Y=\"6\" DeltaX=\"g 5 6\">" +
                                InGb18030(QString::fromUtf8("价税合计金额")) + "</ofd:TextCode></ofd:TextObject>\n");
}

void ZeroBytesBehind(Package& package)
{
    for (Part& part : package.Parts())
        if (part.data.contains("<ofd:"))
            part.data += QByteArray(5, '\0');
}

void WideWithoutMark(Package& package)
{
    QByteArray& data = package.Data(kDocument);
    QTextCodec::ConverterState noMark(QTextCodec::IgnoreHeader);
    const QString text = QString::fromUtf8(data).replace("encoding=\"UTF-8\"", "encoding=\"UTF-16\"");
    data = QTextCodec::codecForName("UTF-16LE")->fromUnicode(text.constData(), text.size(), &noMark);
}

void DeltasWithCommas(Package& package)
{
    AddToFirstPage(package, "<ofd:TextObject ID=\"900\" Boundary=\"20 100 100 8\" Font=\"1\" Size=\"6\"><ofd:TextCode "
                            "X=\"0\" Y=\"6\" DeltaX=\"5,5, 5\">FOUR</ofd:TextCode></ofd:TextObject>\n"
                            "<ofd:TextObject ID=\"901\" Boundary=\"20 110 100 8\" Font=\"1\" Size=\"6\"><ofd:TextCode "
                            "X=\"0\" Y=\"6\" DeltaX=\"g3 5\">GLUE</ofd:TextCode></ofd:TextObject>\n");
}

void ObjectsWithoutLayer(Package& package)
{
    package.Replace(kSecondPage, "<ofd:Layer ID=\"12\">", "");
    package.Replace(kSecondPage, "</ofd:Layer>", "");
}

constexpr const char* kGroup = "Producers";

const Deviation kTable[] = {
    {"names_of_two_readings", kGroup, "names in GB18030, one of which is valid UTF-8 too",
     "where one name is GB18030, so are the others", nullptr, WithNamesOfTwoReadings},
    {"doubled_slashes_in_names", kGroup, "names of entries with two slashes", "two slashes are one", nullptr,
     WithDoubledSlashes},
    {"escaped_references", kGroup, "references escaped as in web addresses", "unescape where nothing else is found",
     EscapedReferences},
    {"gb18030_called_utf8", kGroup, "a page in GB18030 that says it is UTF-8", "read what the bytes are",
     Gb18030CalledUtf8},
    {"zero_bytes_behind", kGroup, "zero bytes behind the end of every part of the document", "ignore them",
     ZeroBytesBehind},
    {"wide_without_mark", kGroup, "the document part in characters of two bytes, without a byte-order mark",
     "the first character tells", WideWithoutMark},
    {"deltas_with_commas", kGroup, "distances between glyphs with commas, and a count that sticks to its letter",
     "read them as with blanks", DeltasWithCommas},
    {"objects_without_layer", kGroup, "the second page's objects are in no layer", "take them as a body layer",
     ObjectsWithoutLayer},
};

} // namespace

std::vector<Deviation> ProducerDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
