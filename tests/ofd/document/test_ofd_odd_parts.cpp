#include "page_painting.h"

#include <frame/base/converters.h>
#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <ofd/ofd_document.h>
#include <ofd/package/byte_source.h>
#include <ofd/package/package.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <algorithm>

namespace {

constexpr quint16 Bzip2 = 12; // a method of packing that is not read

const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");
const QString FirstPage = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");
const QString SecondPage = QStringLiteral("Doc_0/Pages/Page_1/Content.xml");
const QString AttachmentList = QStringLiteral("Doc_0/Attachments.xml");
const QString Note = QStringLiteral("Doc_0/note.txt");

// Gives the part another method in both headers of its entry.
void SetMethod(const QString& path, const QString& part, quint16 method)
{
    QByteArray bytes = BytesOf(path);
    const QByteArray name = part.toUtf8();
    int count = 0;
    for (int at = bytes.indexOf(name); at >= 0; at = bytes.indexOf(name, at + 1)) {
        const auto begins = [&](int header, const char* signature) {
            return header >= 0 && bytes.mid(header, 4) == QByteArray(signature, 4);
        };
        const int place = begins(at - 30, "PK\x03\x04")   ? at - 30 + 8
                          : begins(at - 46, "PK\x01\x02") ? at - 46 + 10
                                                          : -1;
        if (place < 0)
            continue;
        bytes[place] = char(method);
        ++count;
    }
    QFile file(path);
    if (count != 2 || !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s: the method of %s was not changed", qPrintable(path), qPrintable(part));
}

// The header, the packed bytes and the method of a part.
QByteArray RawEntryOf(const QString& path, const QString& part)
{
    const auto package = ofd::Package::Open(path);
    const int position = package ? package->FindEntry(part) : -1;
    if (position < 0)
        return {};
    const ofd::ZipEntry& entry = package->GetDirectory().entries[size_t(position)];
    return QByteArray::number(entry.method) + ' ' +
           package->GetSource().ReadAt(entry.headerOffset, 30 + part.toUtf8().size() + entry.compressedSize);
}

OfdFile FileWithANote()
{
    OfdFile file = OfdFile::WithPages(3).Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>");
    file.Set(FirstPage, PageXml(FilledSquare(10, 10, "Value=\"255 0 0\"")));
    file.Set(AttachmentList, Element("Attachments", "<ofd:Attachment ID=\"7\" Name=\"note\"><ofd:FileLoc>note.txt"
                                                    "</ofd:FileLoc></ofd:Attachment>"));
    return file.Set(Note, "a note");
}

int CountProblems(const ofd::OfdDocument& document, ofd::ProblemKind kind, const QString& part)
{
    const std::vector<ofd::Problem> problems = document.GetProblems();
    return int(std::count_if(problems.begin(), problems.end(), [&](const ofd::Problem& problem) {
        return problem.kind == kind && problem.part == part;
    }));
}

bool AddNote(ofd::OfdDocument& document)
{
    return document.AddAttachment(new BytesReader("another"), false, "other", "txt", "other", "txt", 0);
}

// The part says so; of wide characters it does not say in which order their bytes are.
QByteArray InEncoding(const QByteArray& xml, const QByteArray& encoding, bool hasMark)
{
    const QByteArray said = encoding.startsWith("UTF-16") ? QByteArray("UTF-16") : encoding;
    const QString text = QString::fromUtf8(xml).replace(QStringLiteral("UTF-8"), QString::fromLatin1(said));
    QTextCodec::ConverterState state(hasMark ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName(encoding)->fromUnicode(text.constData(), text.size(), &state);
}

} // namespace

// Parts that are packed, spelled or named in ways that hardly anybody uses.
class TestOfdOddParts : public QObject
{
    Q_OBJECT

private slots:
    void aPartThatIsPackedInAnUnknownWayIsToldAndTheOthersGoOn();
    void aPartThatIsPackedInAnUnknownWaySurvivesASave();
    void whatCannotBeDoneWithoutSuchAPartIsRefused();
    void resourcesOfAPageInWideCharactersServeItsAnnotations_data();
    void resourcesOfAPageInWideCharactersServeItsAnnotations();
    void editedPartsInOtherEncodingsAreWrittenInUtf8_data();
    void editedPartsInOtherEncodingsAreWrittenInUtf8();
    void resourcesThatAreNamedTwiceAreReadOnce();

private:
    std::unique_ptr<ofd::OfdDocument> Open(const QString& path)
    {
        ofd::OpenResult result = ofd::OfdDocument::Open(path);
        if (!result)
            qFatal("%s", qPrintable(result.error));
        return std::move(result.document);
    }
    QString Path(const char* name) const { return folder.filePath(QLatin1String(name)); }

    QTemporaryDir folder;
};

void TestOfdOddParts::aPartThatIsPackedInAnUnknownWayIsToldAndTheOthersGoOn()
{
    const QString path = FileWithANote().Write(Path("told.ofd"));
    SetMethod(path, SecondPage, Bzip2);
    SetMethod(path, Note, Bzip2);
    const auto document = Open(path);
    QCOMPARE(document->GetPageCount(), 3);
    G_RenderRequest request;
    request.pixelsPerMm = PixelsPerMm;
    for (request.pageIndex = 0; request.pageIndex < 3; ++request.pageIndex) {
        const G_RenderResult result = document->Renderer()->RenderPage(request);
        QCOMPARE(result.image.size(), QSize(400, 400));
        QCOMPARE(result.error.isEmpty(), request.pageIndex != 1);
        QCOMPARE(ColourAt(result.image, 20, 20), QColor(request.pageIndex == 0 ? Qt::red : Qt::white));
    }
    QVERIFY(!document->GetPage(1)->Load());
    QVERIFY(document->GetPage(2)->Load());
    BytesWriter writer;
    QVERIFY(!document->WriteAttachment(0, &writer));
    QVERIFY(writer.bytes.isEmpty());
    QCOMPARE(CountProblems(*document, ofd::ProblemKind::PageFailed, SecondPage), 1);
    for (const QString& part : {SecondPage, Note})
        QCOMPARE(CountProblems(*document, ofd::ProblemKind::UnreadablePart, part), 1);
    for (const ofd::Problem& problem : document->GetProblems())
        QVERIFY2(problem.text.contains(QStringLiteral("packed in an unknown way (12)")), qPrintable(problem.text));
}

void TestOfdOddParts::aPartThatIsPackedInAnUnknownWaySurvivesASave()
{
    const QString path = FileWithANote().Write(Path("saved.ofd"));
    SetMethod(path, SecondPage, Bzip2);
    SetMethod(path, Note, Bzip2);
    const QByteArray page = RawEntryOf(path, SecondPage);
    const QByteArray note = RawEntryOf(path, Note);
    QVERIFY(page.startsWith("12 PK"));
    const auto document = Open(path);
    QVERIFY(AddNote(*document));
    QVERIFY(document->CreateBookmarkRoot());
    auto* bookmark = new G_Bookmark; // owned by its node
    bookmark->name = "new";
    document->GetBookmarkRoot()->AddSubNode(0, bookmark);
    QVERIFY(document->Save());
    QCOMPARE(RawEntryOf(path, SecondPage), page);
    QCOMPARE(RawEntryOf(path, Note), note);
    const auto again = Open(path);
    QCOMPARE(again->GetAttachmentCount(), 2);
    QCOMPARE(again->GetBookmarkRoot()->SubNodeCount(), 1);
}

void TestOfdOddParts::whatCannotBeDoneWithoutSuchAPartIsRefused()
{
    const QString path = FileWithANote().Write(Path("list.ofd"));
    SetMethod(path, AttachmentList, Bzip2);
    const auto document = Open(path);
    QCOMPARE(document->GetAttachmentCount(), 0);
    QVERIFY(!AddNote(*document)); // a new list would hide the one that others can read
    QVERIFY(!document->IsModified());
    for (const QString& part : {DocumentPart, QStringLiteral("OFD.xml")}) {
        const QString closed = FileWithANote().Write(Path("closed.ofd"));
        SetMethod(closed, part, Bzip2);
        const ofd::OpenResult result = ofd::OfdDocument::Open(closed);
        QVERIFY(!result);
        QVERIFY2(result.error.contains(QStringLiteral("packed in an unknown way (12)")), qPrintable(result.error));
    }
}

void TestOfdOddParts::resourcesOfAPageInWideCharactersServeItsAnnotations_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("hasMark");
    QTest::addColumn<bool>("isList"); // else the page itself is
    for (const bool isList : {false, true}) {
        const QByteArray what = isList ? "the resources, " : "the page, ";
        QTest::newRow(what + "with a mark") << QByteArray("UTF-16") << true << isList;
        QTest::newRow(what + "little-endian") << QByteArray("UTF-16LE") << false << isList;
        QTest::newRow(what + "big-endian") << QByteArray("UTF-16BE") << false << isList;
    }
}

void TestOfdOddParts::resourcesOfAPageInWideCharactersServeItsAnnotations()
{
    QFETCH(const QByteArray, encoding);
    QFETCH(const bool, hasMark);
    QFETCH(const bool, isList);
    const QString resources = QStringLiteral("Doc_0/Pages/Page_0/Res.xml");
    const QByteArray square = "<ofd:PathObject ID=\"8\" Boundary=\"0 0 20 20\" Stroke=\"false\" Fill=\"true\" "
                              "DrawParam=\"70\">" +
                              SquareData + "</ofd:PathObject>";
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Annotations>Annotations.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Annot.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/Annot.xml"),
             Element("PageAnnot", "<ofd:Annot ID=\"7\" Type=\"Stamp\"><ofd:Appearance Boundary=\"40 40 20 20\">" +
                                      square + "</ofd:Appearance></ofd:Annot>"));
    file.Set(resources, Element("Res", "<ofd:DrawParams><ofd:DrawParam ID=\"70\"><ofd:FillColor Value=\"0 0 255\"/>"
                                       "</ofd:DrawParam></ofd:DrawParams>"));
    file.Set(FirstPage, Element("Page", "<ofd:PageRes>Res.xml</ofd:PageRes><ofd:Content/>"));
    const QString odd = isList ? resources : FirstPage;
    file.Set(odd, InEncoding(file.Part(odd), encoding, hasMark));
    QCOMPARE(ColourAt(PaintFile(file), 50, 50), QColor(Qt::blue));
}

void TestOfdOddParts::editedPartsInOtherEncodingsAreWrittenInUtf8_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("hasMark");
    QTest::newRow("UTF-16 with a mark") << QByteArray("UTF-16") << true;
    QTest::newRow("UTF-16, little-endian") << QByteArray("UTF-16LE") << false;
    QTest::newRow("UTF-16, big-endian") << QByteArray("UTF-16BE") << false;
    QTest::newRow("GB18030") << QByteArray("GB18030") << false;
}

void TestOfdOddParts::editedPartsInOtherEncodingsAreWrittenInUtf8()
{
    QFETCH(const QByteArray, encoding);
    QFETCH(const bool, hasMark);
    const QString annotations = QStringLiteral("Doc_0/Annot.xml");
    const QString tags = QStringLiteral("Doc_0/Tags.xml");
    const QByteArray word = "\xe6\xa0\x87\xe7\xad\xbe"; // two characters that no other encoding spells so
    OfdFile file = FileWithANote().Tail(
        "<ofd:Bookmarks><ofd:Bookmark Name=\"" + word +
        "\"><ofd:Dest Type=\"Fit\" PageID=\"2\"/></ofd:Bookmark></ofd:Bookmarks><ofd:Annotations>Annotations.xml"
        "</ofd:Annotations><ofd:CustomTags>TagList.xml</ofd:CustomTags><ofd:Attachments>Attachments.xml"
        "</ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Annot.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(annotations, Element("PageAnnot", "<ofd:Annot ID=\"7\" Creator=\"" + word +
                                                   "\"><ofd:Appearance Boundary=\"1 1 9 9\"/></ofd:Annot>"));
    file.Set(QStringLiteral("Doc_0/TagList.xml"),
             Element("CustomTags", "<ofd:CustomTag><ofd:FileLoc>Tags.xml</ofd:FileLoc></ofd:CustomTag>"));
    file.Set(tags, Element(word, "<ofd:item/>"));
    const QStringList odd{DocumentPart, annotations, tags, AttachmentList};
    for (const QString& part : odd) {
        QByteArray bytes = file.Part(part);
        if (part == AttachmentList)
            bytes.replace("note\"", word + '"');
        file.Set(part, InEncoding(bytes, encoding, hasMark));
    }
    const QString path = file.Write(Path("encodings.ofd"));
    const auto document = Open(path);
    QVERIFY(AddNote(*document));
    auto* bookmark = new G_Bookmark; // owned by its node
    bookmark->name = "new";
    QVERIFY(document->GetBookmarkRoot()->AddSubNode(1, bookmark));
    QCOMPARE(document->GetPage(0)->LoadAnnots(), 0);
    document->GetPage(0)->GetAnnotAt(0)->SetRemark("a remark");
    QVERIFY(document->CustomTagRoot(0)->SubNode(0)->AddSubNode(1, new G_CustomTagItem)); // owned by its node
    QVERIFY(document->Save());
    for (const QString& part : odd) {
        const QByteArray bytes = PartOf(path, part);
        QVERIFY2(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"), qPrintable(part));
        QVERIFY2(bytes.contains(word), qPrintable(part));
    }
    const auto again = Open(path);
    QCOMPARE(again->GetPageCount(), 3);
    QCOMPARE(again->GetAttachment(0).name.Bytes(), word);
    QCOMPARE(again->GetAttachmentCount(), 2);
    QCOMPARE(GQ_ToQStringFromUtf8(again->GetBookmarkRoot()->SubNode(0)->NodeText()), QString::fromUtf8(word));
    QCOMPARE(again->GetBookmarkRoot()->SubNodeCount(), 2);
    QCOMPARE(again->GetPage(0)->LoadAnnots(), 0);
    QCOMPARE(again->GetPage(0)->GetAnnotAt(0)->GetRemark(), CCA_String("a remark"));
    QCOMPARE(again->GetPage(0)->GetAnnotAt(0)->GetCreator(), CCA_String(word));
    const G_TreeNode* tag = again->CustomTagRoot(0)->SubNode(0);
    QCOMPARE(GQ_ToQStringFromUtf8(tag->NodeText()), QString::fromUtf8(word));
    QCOMPARE(tag->SubNodeCount(), 2);
}

void TestOfdOddParts::resourcesThatAreNamedTwiceAreReadOnce()
{
    OfdFile file = OfdFile::WithPage(FilledSquare(10, 10, "Value=\"255 0 0\""));
    file.Common("<ofd:PublicRes>Res.xml</ofd:PublicRes><ofd:DocumentRes>Res.xml</ofd:DocumentRes>"
                "<ofd:DocumentRes>/Doc_0/Res.xml</ofd:DocumentRes>");
    file.Set(QStringLiteral("Doc_0/Res.xml"),
             Element("Res", "<ofd:ColorSpaces><ofd:ColorSpace ID=\"3\" Type=\"GRAY\"/></ofd:ColorSpaces>"));
    const auto document = Open(file.Write(Path("twice.ofd")));
    document->Renderer()->RenderPage({});
    QVERIFY(document->GetProblems().empty());
}

TETO_TEST_MAIN(TestOfdOddParts)

#include "test_ofd_odd_parts.moc"
