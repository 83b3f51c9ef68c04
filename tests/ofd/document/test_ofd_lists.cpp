#include "ofd_file.h"

#include <frame/base/converters.h>
#include <ofd/ofd_document.h>
#include <ofd/package/package.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");

} // namespace

class TestOfdLists : public QObject
{
    Q_OBJECT

private slots:
    void aRemarkIsWrittenInPlace_data();
    void aRemarkIsWrittenInPlace();
    void aRemarkTakenBackSavesTheSameBytes();
    void annotationsThatCannotBeReadAreTold_data();
    void annotationsThatCannotBeReadAreTold();
    void anAttachmentWithoutANameIsCalledAfterItsPart();
    void addedAttachmentsAreSaved();
    void aListOfAttachmentsIsMadeInItsPlace();
    void removedAttachmentsTakeTheirPartsAlong();
    void sharedAttachmentPartsStay();
    void attachmentsOfTheSameNameGetPartsOfTheirOwn();

private:
    std::unique_ptr<ofd::OfdDocument> Open(const OfdFile& file);
    QString path;
    QTemporaryDir folder;
    int count = 0;
};

std::unique_ptr<ofd::OfdDocument> TestOfdLists::Open(const OfdFile& file)
{
    path = file.Write(folder.filePath(QStringLiteral("%1.ofd").arg(++count)));
    ofd::OpenResult result = ofd::OfdDocument::Open(path);
    if (!result)
        qFatal("%s", qPrintable(result.error));
    return std::move(result.document);
}

void TestOfdLists::aRemarkIsWrittenInPlace_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("remark");
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<QByteArray>("after");
    const QByteArray tail = "<ofd:Appearance Boundary=\"1 2 3 4\"/></ofd:Annot>";
    QTest::newRow("changed") << "<ofd:Annot ID=\"7\" LastModDate=\"2020-1-2\" Own=\"x\"><ofd:Remark>old</ofd:Remark>" +
                                    tail
                             << QByteArray("new <&>") << QByteArray("2024-01-02 03:04:05")
                             << "<ofd:Annot ID=\"7\" LastModDate=\"2024-01-02 03:04:05\" Own=\"x\"><ofd:Remark>new "
                                "&lt;&amp;&gt;</ofd:Remark>" +
                                    tail;
    QTest::newRow("without namespace") << "<ofd:Annot ID=\"7\" LastModDate=\"d\"><Remark>old</Remark>" + tail
                                       << QByteArray("new") << QByteArray("d")
                                       << "<ofd:Annot ID=\"7\" LastModDate=\"d\"><Remark>new</Remark>" + tail;
    QTest::newRow("added") << "<ofd:Annot ID=\"7\">" + tail << QByteArray("new") << QByteArray("d")
                           << "<ofd:Annot ID=\"7\" LastModDate=\"d\"><ofd:Remark>new</ofd:Remark>" + tail;
    QTest::newRow("removed") << "<ofd:Annot ID=\"7\" LastModDate=\"d\"><ofd:Remark>old</ofd:Remark>" + tail
                             << QByteArray() << QByteArray() << "<ofd:Annot ID=\"7\">" + tail;
}

void TestOfdLists::aRemarkIsWrittenInPlace()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, remark);
    QFETCH(QByteArray, date);
    QFETCH(QByteArray, after);
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Annotations>A.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/A.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>P.xml</ofd:FileLoc></ofd:Page>"));
    const QByteArray other = "<ofd:Annot ID=\"6\"><ofd:Appearance Boundary=\"0 0 1 1\"/></ofd:Annot>";
    file.Set(QStringLiteral("Doc_0/P.xml"), Element("PageAnnot", other + before + other));
    const auto document = Open(file);
    QCOMPARE(document->GetPage(0)->LoadAnnots(), 0);
    IG_Annot* annot = document->GetPage(0)->GetAnnotById(7);
    QVERIFY(annot);
    annot->SetRemark(CCA_String(remark));
    annot->SetDate(CCA_String(date));
    QVERIFY(document->IsModified());
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    QCOMPARE(PartOf(path, QStringLiteral("Doc_0/P.xml")), Element("PageAnnot", other + after + other));
    QCOMPARE(PartOf(path, DocumentPart), file.Part(DocumentPart));
    annot->SetRemark("twice");
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/P.xml")).contains("Remark>twice</"));
}

void TestOfdLists::aRemarkTakenBackSavesTheSameBytes()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Annotations>A.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/A.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>P.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/P.xml"), Element("PageAnnot", "<ofd:Annot ID=\"7\"><ofd:Remark/></ofd:Annot>"));
    const auto document = Open(file);
    const QByteArray bytes = BytesOf(path);
    QCOMPARE(document->GetPage(0)->LoadAnnots(), 0);
    IG_Annot* annot = document->GetPage(0)->GetAnnotById(7);
    annot->SetRemark("x");
    annot->SetDate("y");
    annot->SetRemark("");
    annot->SetDate("");
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), bytes);
}

void TestOfdLists::annotationsThatCannotBeReadAreTold_data()
{
    const QByteArray entry = "<ofd:Page PageID=\"1\"><ofd:FileLoc>P.xml</ofd:FileLoc></ofd:Page>";
    const QByteArray broken = "<ofd:PageAnnot><ofd:Annot></ofd:PageAnnot>";
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("no list") << QByteArray() << broken << true;
    QTest::newRow("no entry for the page") << Element("Annotations", "") << broken << true;
    QTest::newRow("no part of the page") << Element("Annotations", entry) << QByteArray() << true;
    QTest::newRow("a broken part") << Element("Annotations", entry) << broken << false;
    QTest::newRow("a broken list") << QByteArray("<ofd:Annotations>" + entry) << Element("PageAnnot", "") << false;
}

void TestOfdLists::annotationsThatCannotBeReadAreTold()
{
    QFETCH(QByteArray, list);
    QFETCH(QByteArray, page);
    QFETCH(bool, isRead);
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Annotations>A.xml</ofd:Annotations>");
    if (!list.isEmpty())
        file.Set(QStringLiteral("Doc_0/A.xml"), list);
    if (!page.isEmpty())
        file.Set(QStringLiteral("Doc_0/P.xml"), page);
    const auto document = Open(file);
    QCOMPARE(document->GetPage(0)->LoadAnnots() == 0, isRead);
    QCOMPARE(document->GetPage(0)->GetAnnotCount(), 0);
    QCOMPARE(document->GetPage(0)->LoadAnnots() == 0, isRead); // the second time too
}

void TestOfdLists::anAttachmentWithoutANameIsCalledAfterItsPart()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>");
    const auto entry = [](const QByteArray& attributes, const QByteArray& location) {
        return "<ofd:Attachment " + attributes + "><ofd:FileLoc>" + location + "</ofd:FileLoc></ofd:Attachment>";
    };
    file.Set(QStringLiteral("Doc_0/Attachments.xml"),
             Element("Attachments", entry("ID=\"1\"", "Files\\invoice.xml") +
                                        entry("ID=\"2\" Name=\"  \" Format=\"XML\"", "Files/invoice.xml") +
                                        entry("ID=\"3\"", "Files/gone") + entry("ID=\"4\"", "")));
    file.Set(QStringLiteral("Doc_0/Files/invoice.xml"), "<a/>");
    const auto document = Open(file);
    QStringList names;
    for (int i = 0; i < document->GetAttachmentCount(); ++i)
        names.append(GQ_ToQStringFromUtf8(document->GetAttachment(i).name));
    QCOMPARE(names.join(QLatin1Char('|')), QStringLiteral("invoice|invoice|gone|"));
}

void TestOfdLists::addedAttachmentsAreSaved()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Attachments>Attachs/List.xml</ofd:Attachments>");
    const QByteArray old =
        "<ofd:Attachment ID=\"5\" Name=\"old\" Format=\"xml\" Visible=\"false\" Own=\"1\"><ofd:FileLoc>old.xml"
        "</ofd:FileLoc></ofd:Attachment>";
    file.Set(QStringLiteral("Doc_0/Attachs/List.xml"), Element("Attachments", old));
    file.Set(QStringLiteral("Doc_0/Attachs/old.xml"), "<data/>");
    const auto document = Open(file);
    const QByteArray bytes = QByteArray(300'000, 'x') + "end";
    QVERIFY(document->AddAttachment(new BytesReader(bytes), false, "new note", "txt", "new note.txt", "txt", 1));
    const int id = document->GetAttachment(1).id;
    QVERIFY(id > 1000); // above all identifiers of the document
    QVERIFY(document->IsModified());
    const ofd::DocumentSaveResult saved = document->Save();
    QVERIFY2(saved, qPrintable(saved.error));
    QVERIFY(!document->IsModified());
    QCOMPARE(PartOf(path, QStringLiteral("Doc_0/Attachs/new note.txt")), bytes);
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Attachs/List.xml"))
                .contains(old + "<ofd:Attachment ID=\"1001\" Name=\"new note\""));
    QVERIFY(PartOf(path, DocumentPart).contains("<ofd:MaxUnitID>1001</ofd:MaxUnitID>"));
    BytesWriter writer;
    QVERIFY(document->WriteAttachment(1, &writer)); // now from the new file
    QCOMPARE(writer.bytes, bytes);
    const ofd::OpenResult again = ofd::OfdDocument::Open(path);
    QCOMPARE(again.document->GetAttachmentCount(), 2);
    QCOMPARE(again.document->GetAttachment(1).id, id);
    QVERIFY(!again.document->GetAttachment(0).visible);
}

void TestOfdLists::aListOfAttachmentsIsMadeInItsPlace()
{
    const auto document = Open(OfdFile::WithPages(1).Tail("<ofd:CustomTags>T.xml</ofd:CustomTags>"));
    QVERIFY(document->AddAttachment(new BytesReader("abc"), false, "a", "txt", "a", "txt", 1));
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, DocumentPart).contains("</ofd:CustomTags><ofd:Attachments>Attachments.xml</ofd:Attachments>"));
    const ofd::OpenResult again = ofd::OfdDocument::Open(path);
    QCOMPARE(again.document->GetAttachmentCount(), 1);
    BytesWriter writer;
    QVERIFY(again.document->WriteAttachment(0, &writer));
    QCOMPARE(writer.bytes, QByteArray("abc"));
    QVERIFY(document->RemoveAttachment(0));
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Attachs/a.txt")).isNull());
    QCOMPARE(ofd::OfdDocument::Open(path).document->GetAttachmentCount(), 0);
}

void TestOfdLists::removedAttachmentsTakeTheirPartsAlong()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Attachments>L.xml</ofd:Attachments>");
    const QByteArray first = "\n <ofd:Attachment ID=\"1\" Name=\"a\"><ofd:FileLoc>a.bin</ofd:FileLoc></ofd:Attachment>";
    const QByteArray second =
        "\n <ofd:Attachment ID=\"2\" Name=\"b\"><ofd:FileLoc>b.bin</ofd:FileLoc></ofd:Attachment>";
    file.Set(QStringLiteral("Doc_0/L.xml"), Element("Attachments", first + second + "\n"));
    file.Set(QStringLiteral("Doc_0/a.bin"), "aaa").Set(QStringLiteral("Doc_0/b.bin"), "bbb");
    const auto document = Open(file);
    QVERIFY(document->RemoveAttachment(0));
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, QStringLiteral("Doc_0/L.xml")), Element("Attachments", second + "\n"));
    const auto package = ofd::Package::Open(path);
    QVERIFY(!package->HasPart(QStringLiteral("Doc_0/a.bin")));
    QCOMPARE(package->Read(QStringLiteral("Doc_0/b.bin")).bytes, QByteArray("bbb"));
}

void TestOfdLists::sharedAttachmentPartsStay()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Attachments>L.xml</ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/L.xml"),
             Element("Attachments",
                     "<ofd:Attachment ID=\"1\" Name=\"a\"><ofd:FileLoc>a.bin</ofd:FileLoc></ofd:Attachment>"
                     "<ofd:Attachment ID=\"2\" Name=\"b\"><ofd:FileLoc>/Doc_0/a.bin</ofd:FileLoc></ofd:Attachment>"));
    file.Set(QStringLiteral("Doc_0/a.bin"), "aaa");
    const auto document = Open(file);
    QVERIFY(document->RemoveAttachment(0));
    QVERIFY(document->Save());
    BytesWriter writer;
    QVERIFY(document->WriteAttachment(0, &writer));
    QCOMPARE(writer.bytes, QByteArray("aaa"));
}

void TestOfdLists::attachmentsOfTheSameNameGetPartsOfTheirOwn()
{
    const auto document = Open(OfdFile::WithPages(1));
    for (const char* bytes : {"one", "two", "three"})
        QVERIFY(document->AddAttachment(new BytesReader(bytes), false, "Same", "txt", "Same", "txt", 1));
    QVERIFY(document->Save());
    const ofd::OpenResult again = ofd::OfdDocument::Open(path);
    QCOMPARE(again.document->GetAttachmentCount(), 3);
    QByteArray all;
    for (int i = 0; i < 3; ++i) {
        BytesWriter writer;
        QVERIFY(again.document->WriteAttachment(i, &writer));
        QVERIFY(again.document->GetAttachment(i).name == "Same");
        all += writer.bytes + ' ';
    }
    QCOMPARE(all, QByteArray("one two three "));
}

TETO_TEST_MAIN(TestOfdLists)

#include "test_ofd_lists.moc"
