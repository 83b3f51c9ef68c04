#include "saving_desk.h"

#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QTextCodec>
#include <QtTest>

Q_DECLARE_METATYPE(QVector<G_PageObjRef>)

namespace {

const QString DataPart = QStringLiteral("Doc_0/Attachs/data.bin");
const QString TagPart = QStringLiteral("Doc_0/Tag_1.xml");

// A document with an attachment.
OfdFile File()
{
    return OfdFile::WithPages(1)
        .Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>")
        .Set(QStringLiteral("Doc_0/Attachments.xml"),
             Element("Attachments", "<ofd:Attachment ID=\"7\" Name=\"data\"><ofd:FileLoc>Attachs/data.bin"
                                    "</ofd:FileLoc></ofd:Attachment>"))
        .Set(DataPart, "data");
}

void RemoveFirst(IG_Document& document)
{
    if (!document.RemoveAttachment(0))
        qFatal("nothing was removed");
}

// A document with a tag that has these references.
OfdFile Tagged(const QByteArray& references)
{
    return OfdFile::WithPages(3)
        .Tail("<ofd:CustomTags>CustomTags.xml</ofd:CustomTags>")
        .Set(QStringLiteral("Doc_0/CustomTags.xml"),
             Element("CustomTags", "<ofd:CustomTag NameSpace=\"urn:t\"><ofd:FileLoc>Tag_1.xml</ofd:FileLoc>"
                                   "</ofd:CustomTag>"))
        .Set(TagPart, Element("t", references));
}

QByteArray Ref(int page, int object, const QByteArray& more = {})
{
    return "<ofd:ObjectRef PageRef=\"" + QByteArray::number(page) + '"' + more + '>' + QByteArray::number(object) +
           "</ofd:ObjectRef>";
}

} // namespace

// References between parts, and of tags to objects, after a save.
class TestSaveReferences : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void aRemovedPartStaysWhileOthersNeedIt_data();
    void aRemovedPartStaysWhileOthersNeedIt();
    void aRemovedPartThatNobodyNeedsGoes_data();
    void aRemovedPartThatNobodyNeedsGoes();
    void newListsAreNamedAsTheirNeighboursAre();
    void objectsOfATagKeepTheirOrder_data();
    void objectsOfATagKeepTheirOrder();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveReferences::aRemovedPartStaysWhileOthersNeedIt_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("a version's list of files")
        << QStringLiteral("Versions/V1.xml")
        << Element("DocVersion", "<ofd:FileList><ofd:File ID=\"1\">../Doc_0/Attachs/data.bin</ofd:File>"
                                 "</ofd:FileList>");
    QTest::newRow("another document, from the root")
        << QStringLiteral("Doc_1/Attachments.xml")
        << Element("Attachments", "<ofd:Attachment ID=\"1\" Name=\"b\"><ofd:FileLoc>/Doc_0/Attachs/data.bin"
                                  "</ofd:FileLoc></ofd:Attachment>");
    QTest::newRow("resources with a folder of their own")
        << QStringLiteral("Doc_0/Res.xml")
        << QByteArray("<Res BaseLoc=\"Attachs\"><MultiMedias><MultiMedia ID=\"9\"><MediaFile>data.bin</MediaFile>"
                      "</MultiMedia></MultiMedias></Res>");
    QTest::newRow("an attribute, in other letter cases")
        << QStringLiteral("Doc_0/other.xml") << QByteArray("<a><b Loc=' attachs/DATA.BIN '/></a>");
    const QString wide = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>Attachs/data.bin</a>");
    QTest::newRow("characters of two bytes")
        << QStringLiteral("Doc_0/other.xml") << QTextCodec::codecForName("UTF-16")->fromUnicode(wide);
    QTest::newRow("a character by its number")
        << QStringLiteral("Doc_0/other.xml") << QByteArray("<a>Attachs/&#100;ata.bin</a>");
    QTest::newRow("escaped as in a web address")
        << QStringLiteral("Doc_0/other.xml") << QByteArray("<a>Attachs/%64ata.bin</a>");
    QTest::newRow("a part that names it and cannot be read")
        << QStringLiteral("Doc_0/broken.xml") << QByteArray("<a>data.bin");
}

void TestSaveReferences::aRemovedPartStaysWhileOthersNeedIt()
{
    QFETCH(const QString, part);
    QFETCH(const QByteArray, bytes);
    const QString path = desk->Saved(File().Set(part, bytes), RemoveFirst);
    QCOMPARE(PartOf(path, DataPart), QByteArray("data"));
    QCOMPARE(desk->Open(path)->GetAttachmentCount(), 0);
}

void TestSaveReferences::aRemovedPartThatNobodyNeedsGoes_data()
{
    QTest::addColumn<QString>("part");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nobody") << QStringLiteral("Doc_0/other.xml") << QByteArray("<a/>");
    QTest::newRow("another part of that name")
        << QStringLiteral("Doc_0/other.xml") << QByteArray("<a>Elsewhere/data.bin</a>");
    QTest::newRow("a signature, about which the user was asked")
        << QStringLiteral("Signs/Signature.xml")
        << Element("Signature", "<ofd:SignedInfo><ofd:References><ofd:Reference FileRef=\"/Doc_0/Attachs/data.bin\"/>"
                                "</ofd:References></ofd:SignedInfo>");
    QTest::newRow("a part that cannot be read and does not name it")
        << QStringLiteral("Doc_0/broken.xml") << QByteArray("<a>");
    QTest::newRow("itself") << QStringLiteral("Doc_0/Attachs/data.bin") << QByteArray("<a>data.bin</a>");
}

void TestSaveReferences::aRemovedPartThatNobodyNeedsGoes()
{
    QFETCH(const QString, part);
    QFETCH(const QByteArray, bytes);
    const QString path = desk->Saved(File().Set(part, bytes), RemoveFirst);
    QVERIFY(PartOf(path, DataPart).isEmpty());
}

void TestSaveReferences::newListsAreNamedAsTheirNeighboursAre()
{
    const auto edit = [](IG_Document& document) {
        QVERIFY(document.AddAttachment(new BytesReader("x"), false, "a", "txt", "a", "txt", 0));
        QVERIFY(document.AddCustomTagRoot("a", "p", "urn:p", 0));
    };
    const OfdFile fromRoot = OfdFile::WithPages(1).Tail("<ofd:Annotations>/Doc_0/Annots.xml</ofd:Annotations>");
    const QString path = desk->Saved(fromRoot, edit);
    QByteArray part = PartOf(path, DocumentPart);
    QVERIFY(part.contains(">/Doc_0/Attachments.xml<"));
    QVERIFY(part.contains(">/Doc_0/CustomTags.xml<"));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Attachments.xml")).contains(">/Doc_0/Attachs/a.txt<"));
    QCOMPARE(desk->Open(path)->GetAttachmentCount(), 1);
    part = desk->SavedPart(OfdFile::WithPages(1).Tail("<ofd:Annotations>Annots.xml</ofd:Annotations>"), DocumentPart,
                           edit);
    QVERIFY(part.contains(">Attachments.xml<"));
    OfdFile pages = OfdFile::WithPages(1);
    pages.Set(DocumentPart, pages.Part(DocumentPart).replace("\"Pages/", "\"/Doc_0/Pages/"));
    QVERIFY(desk->SavedPart(pages, DocumentPart, edit).contains(">/Doc_0/Attachments.xml<"));
}

void TestSaveReferences::objectsOfATagKeepTheirOrder_data()
{
    QTest::addColumn<QVector<G_PageObjRef>>("objects");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray nothing = Ref(1, 0);
    QTest::newRow("the same") << QVector<G_PageObjRef>{{1, {11, 13}}, {2, {12}}}
                              << Ref(1, 11, " own=\"1\"") + nothing + Ref(2, 12) + Ref(1, 13);
    QTest::newRow("one more") << QVector<G_PageObjRef>{{1, {11, 13}}, {2, {12, 14}}}
                              << Ref(1, 11, " own=\"1\"") + nothing + Ref(2, 12) + Ref(1, 13) + Ref(2, 14);
    QTest::newRow("one less") << QVector<G_PageObjRef>{{1, {13}}, {2, {12}}} << nothing + Ref(1, 13) + Ref(2, 12);
    QTest::newRow("others") << QVector<G_PageObjRef>{{3, {30}}} << nothing + Ref(3, 30);
    QTest::newRow("the other way round") << QVector<G_PageObjRef>{{1, {13, 11}}, {2, {12}}}
                                         << Ref(1, 13) + Ref(1, 11, " own=\"1\"") + nothing + Ref(2, 12);
    QTest::newRow("a page in front") << QVector<G_PageObjRef>{{2, {12}}, {1, {11, 13}}}
                                     << Ref(2, 12) + Ref(1, 11, " own=\"1\"") + nothing + Ref(1, 13);
    QTest::newRow("none") << QVector<G_PageObjRef>{} << nothing;
}

void TestSaveReferences::objectsOfATagKeepTheirOrder()
{
    QFETCH(const QVector<G_PageObjRef>, objects);
    QFETCH(const QByteArray, expected);
    const OfdFile file = Tagged(Ref(1, 11, " own=\"1\"") + Ref(1, 0) + Ref(2, 12) + Ref(1, 13));
    const auto tagOf = [](IG_Document& document) {
        return dynamic_cast<G_CustomTagItem*>(document.CustomTagRoot(0)->SubNode(0)->data);
    };
    const QString path = desk->Saved(file, [&](IG_Document& document) {
        G_CustomTagItem* tag = tagOf(document);
        qDeleteAll(tag->objects.Values());
        tag->objects.RemoveAll();
        for (const G_PageObjRef& page : objects)
            tag->objects.Add(new G_PageObjRef(page)); // owned by the tag
    });
    QCOMPARE(PartOf(path, TagPart), Element("t", expected));
    const auto reopened = desk->Open(path);
    const QVector<G_PageObjRef*> read = tagOf(*reopened)->objects.Values();
    QCOMPARE(read.size(), objects.size());
    for (int i = 0; i < read.size(); ++i) {
        QCOMPARE(read.at(i)->pageId, objects.at(i).pageId);
        QCOMPARE(read.at(i)->objectIds, objects.at(i).objectIds);
    }
}

TETO_TEST_MAIN(TestSaveReferences)

#include "test_save_references.moc"
