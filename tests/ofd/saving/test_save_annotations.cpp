#include "saving_desk.h"

#include <frame/base/converters.h>
#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <tests/support/test_main.h>

#include <QtTest>

namespace {

const QString ListPart = QStringLiteral("Doc_0/Annots/Annotations.xml");
const QString FirstPart = QStringLiteral("Doc_0/Annots/Page_1.xml");
const QString SecondPart = QStringLiteral("Doc_0/Annots/Page_2.xml");

const QByteArray Appearance = "<ofd:Appearance Boundary=\"0 0 9 9\"><ofd:PathObject ID=\"90\" Boundary=\"0 0 9 9\">"
                              "<ofd:AbbreviatedData>M 0 0 L 9 9</ofd:AbbreviatedData></ofd:PathObject>"
                              "</ofd:Appearance>";

QByteArray Annot(const QByteArray& attributes, const QByteArray& content = {})
{
    return "\n  <ofd:Annot " + attributes + ">" + content + Appearance + "</ofd:Annot>";
}

const QByteArray First = Annot("ID=\"21\" Type=\"Path\" Creator=\"me\" LastModDate=\"2020-01-02\" Own=\"x\"",
                               "<ofd:Remark>one</ofd:Remark><ofd:Parameters/>");
const QByteArray Second = Annot("ID='22' Type='Highlight' Creator='me' LastModDate='2020-01-02'");
const QByteArray Third = Annot("Type=\"Stamp\" Creator=\"me\"", "<Remark>plain</Remark>");

OfdFile File()
{
    return OfdFile::WithPages(3)
        .Tail("<ofd:Annotations>Annots/Annotations.xml</ofd:Annotations>")
        .Set(ListPart,
             Element("Annotations", "\n <ofd:Page PageID=\"1\"><ofd:FileLoc>Page_1.xml</ofd:FileLoc></ofd:Page>"
                                    "\n <ofd:Page PageID=\"2\"><ofd:FileLoc>Page_2.xml</ofd:FileLoc></ofd:Page>"
                                    "\n <ofd:Page PageID=\"3\"><ofd:FileLoc>gone.xml</ofd:FileLoc></ofd:Page>\n"))
        .Set(FirstPart, Element("PageAnnot", First + Second + Third + "<!-- end -->\n"))
        .Set(SecondPart,
             Element("PageAnnot", Annot("ID=\"31\" Type=\"Path\" Creator=\"c\" LastModDate=\"2020-01-02\"")));
}

IG_Annot* AnnotAt(IG_Document& document, int page, int position)
{
    IG_Page* at = document.GetPage(page);
    if (at->LoadAnnots() != 0)
        qFatal("no annotations");
    return at->GetAnnotAt(position);
}

QString Remarks(IG_Document& document, int page)
{
    QStringList remarks;
    document.GetPage(page)->LoadAnnots();
    for (int i = 0; i < document.GetPage(page)->GetAnnotCount(); ++i)
        remarks.append(GQ_ToQStringFromUtf8(document.GetPage(page)->GetAnnotAt(i)->GetRemark()));
    return remarks.join(QLatin1Char('|'));
}

} // namespace

// Annotations that were edited: remark, date, deletion and its undoing.
class TestSaveAnnotations : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void remarksAndDatesAreEditedInPlace();
    void removedRemarksAndDatesGo();
    void aMissingIdentifierIsWrittenWithTheFirstEdit();
    void displayIsNotSaved();
    void aRemovedAnnotationGoesAlone();
    void theLastAnnotationTakesPartAndEntryAlong();
    void editAndUndoSavesTheSameBytes();
    void aRemovedAnnotationComesBackToItsPlaceAfterASave();
    void aPartComesBackWithItsFirstAnnotation();
    void aRevivedAnnotationTakesEditsAlong();
    void aPartThatIsListedTwiceIsReadOnce();
    void aSharedPageHasAnnotationsOfAllItsParts();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveAnnotations::remarksAndDatesAreEditedInPlace()
{
    const OfdFile file = File();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path = desk->Saved(file, [](IG_Document& document) {
        AnnotAt(document, 0, 0)->SetRemark("<new> & long");
        AnnotAt(document, 0, 1)->SetRemark("added");
        AnnotAt(document, 0, 1)->SetDate("2024-05-06 07:08:09");
    });
    QByteArray expected = file.Part(FirstPart);
    expected.replace("<ofd:Remark>one<", "<ofd:Remark>&lt;new&gt; &amp; long<");
    expected.replace(Second, QByteArray(Second)
                                 .replace("'2020-01-02'", "\"2024-05-06 07:08:09\"")
                                 .replace("<ofd:Appearance", "<ofd:Remark>added</ofd:Remark><ofd:Appearance"));
    QCOMPARE(PartOf(path, FirstPart), expected);
    QCOMPARE(DifferingParts(original, path), QStringList(FirstPart));
}

void TestSaveAnnotations::removedRemarksAndDatesGo()
{
    const OfdFile file = File();
    const QByteArray part = desk->SavedPart(file, FirstPart, [](IG_Document& document) {
        AnnotAt(document, 0, 0)->SetRemark("");
        AnnotAt(document, 0, 0)->SetDate("");
    });
    QByteArray expected = file.Part(FirstPart);
    expected.replace("<ofd:Remark>one</ofd:Remark>", "");
    QCOMPARE(part, expected.replace(" LastModDate=\"2020-01-02\" Own", " Own"));
}

void TestSaveAnnotations::aMissingIdentifierIsWrittenWithTheFirstEdit()
{
    const OfdFile file = File();
    int id = 0;
    const QString path = desk->Saved(file, [&id](IG_Document& document) {
        IG_Annot* annot = AnnotAt(document, 0, 2);
        id = annot->GetId();
        annot->SetRemark("changed");
    });
    QVERIFY(id > 1000); // the highest that the document tells
    const QByteArray number = QByteArray::number(id);
    QByteArray expected = file.Part(FirstPart);
    expected.replace("Type=\"Stamp\" Creator=\"me\"", "Type=\"Stamp\" Creator=\"me\" ID=\"" + number + '"');
    QCOMPARE(PartOf(path, FirstPart), expected.replace("<Remark>plain", "<Remark>changed"));
    QCOMPARE(PartOf(path, DocumentPart),
             file.Part(DocumentPart).replace("<ofd:MaxUnitID>1000", "<ofd:MaxUnitID>" + number));
    QCOMPARE(AnnotAt(*desk->Open(path), 0, 2)->GetId(), id);
}

void TestSaveAnnotations::displayIsNotSaved()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    AnnotAt(*document, 0, 0)->SetVisible(false, true);
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestSaveAnnotations::aRemovedAnnotationGoesAlone()
{
    const OfdFile file = File();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path =
        desk->Saved(file, [](ofd::OfdDocument& document) { QVERIFY(document.RemoveAnnot(AnnotAt(document, 0, 1))); });
    QCOMPARE(PartOf(path, FirstPart), file.Part(FirstPart).replace(Second, ""));
    QCOMPARE(DifferingParts(original, path), QStringList(FirstPart));
    QCOMPARE(Remarks(*desk->Open(path), 0), QStringLiteral("one|plain"));
}

void TestSaveAnnotations::theLastAnnotationTakesPartAndEntryAlong()
{
    const OfdFile file = File();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path = desk->Saved(file, [](ofd::OfdDocument& document) {
        QVERIFY(document.RemoveAnnot(AnnotAt(document, 1, 0)));
        QVERIFY(document.IsModified());
        QVERIFY(document.GetUnsavableChanges().isEmpty());
    });
    QCOMPARE(DifferingParts(original, path), QStringList({ListPart, SecondPart}));
    QCOMPARE(
        PartOf(path, ListPart),
        file.Part(ListPart).replace("\n <ofd:Page PageID=\"2\"><ofd:FileLoc>Page_2.xml</ofd:FileLoc></ofd:Page>", ""));
    const QString both = desk->Saved(file, [](ofd::OfdDocument& document) {
        for (int page : {0, 0, 0, 1})
            QVERIFY(document.RemoveAnnot(AnnotAt(document, page, 0)));
    });
    QCOMPARE(DifferingParts(original, both), QStringList({ListPart, FirstPart, SecondPart}));
    const auto reopened = desk->Open(both);
    for (int page = 0; page < 3; ++page) {
        QCOMPARE(reopened->GetPage(page)->LoadAnnots(), 0);
        QCOMPARE(reopened->GetPage(page)->GetAnnotCount(), 0);
    }
}

void TestSaveAnnotations::editAndUndoSavesTheSameBytes()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    IG_Annot* annot = AnnotAt(*document, 0, 0);
    annot->SetRemark("other");
    QVERIFY(document->RemoveAnnot(annot));
    QVERIFY(document->IsModified());
    QVERIFY(document->ReviveAnnot(annot));
    annot->SetRemark("one");
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestSaveAnnotations::aRemovedAnnotationComesBackToItsPlaceAfterASave()
{
    const OfdFile file = File();
    const QString path = file.Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    IG_Annot* first = AnnotAt(*document, 0, 0);
    IG_Annot* second = AnnotAt(*document, 0, 1);
    QVERIFY(document->RemoveAnnot(first));
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    QVERIFY(document->RemoveAnnot(second));
    AnnotAt(*document, 0, 0)->SetRemark("third");
    QVERIFY(document->Save());
    QCOMPARE(Remarks(*desk->Open(path), 0), QStringLiteral("third"));
    AnnotAt(*document, 0, 0)->SetRemark("plain");
    QVERIFY(document->ReviveAnnot(second));
    QVERIFY(document->IsModified());
    QVERIFY(document->Save());
    QVERIFY(document->ReviveAnnot(first));
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    // The identifier that came with the edit of the third stays.
    QCOMPARE(PartOf(path, FirstPart).left(file.Part(FirstPart).indexOf(Third)),
             file.Part(FirstPart).left(file.Part(FirstPart).indexOf(Third)));
    QCOMPARE(Remarks(*desk->Open(path), 0), QStringLiteral("one||plain"));
}

void TestSaveAnnotations::aPartComesBackWithItsFirstAnnotation()
{
    const OfdFile file = File();
    const QString path = file.Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    IG_Annot* first = AnnotAt(*document, 0, 0);
    IG_Annot* second = AnnotAt(*document, 0, 1);
    for (int i = 0; i < 3; ++i)
        QVERIFY(document->RemoveAnnot(AnnotAt(*document, 0, 0)));
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, FirstPart).isEmpty());
    QVERIFY(document->ReviveAnnot(second));
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, FirstPart), Element("PageAnnot", Second + "<!-- end -->\n"));
    QVERIFY(PartOf(path, ListPart)
                .contains("\n <ofd:Page PageID=\"1\"><ofd:FileLoc>Page_1.xml</ofd:FileLoc></ofd:Page>\n"));
    QVERIFY(document->ReviveAnnot(first));
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, FirstPart), Element("PageAnnot", First + Second + "<!-- end -->\n"));
    QCOMPARE(Remarks(*desk->Open(path), 0), QStringLiteral("one|"));
    QCOMPARE(Remarks(*desk->Open(path), 1), QString());
    QCOMPARE(PartOf(path, ListPart).count("PageID=\"1\""), 1);
}

void TestSaveAnnotations::aRevivedAnnotationTakesEditsAlong()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    IG_Annot* first = AnnotAt(*document, 0, 0);
    first->SetRemark("before it went");
    QVERIFY(document->RemoveAnnot(first));
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    QVERIFY(document->ReviveAnnot(first));
    QVERIFY(document->Save());
    QCOMPARE(Remarks(*desk->Open(path), 0), QStringLiteral("before it went||plain"));
    first->SetRemark("one");
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, FirstPart), File().Part(FirstPart));
}

void TestSaveAnnotations::aPartThatIsListedTwiceIsReadOnce()
{
    OfdFile file = File();
    file.Set(ListPart, file.Part(ListPart).replace("gone.xml", "Page_1.xml"));
    const QString path = file.Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    QCOMPARE(document->GetPage(2)->LoadAnnots(), 0);
    QCOMPARE(document->GetPage(2)->GetAnnotCount(), 0);
    for (int i = 0; i < 3; ++i)
        QVERIFY(document->RemoveAnnot(AnnotAt(*document, 0, 0)));
    QVERIFY(document->Save());
    QVERIFY(!PartOf(path, ListPart).contains("Page_1.xml")); // nothing names a part that is not there
}

void TestSaveAnnotations::aSharedPageHasAnnotationsOfAllItsParts()
{
    OfdFile file = File();
    file.Set(ListPart, file.Part(ListPart).replace("PageID=\"2\"", "PageID=\"1\""));
    const QString path = file.Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    QCOMPARE(Remarks(*document, 0), QStringLiteral("one||plain|"));
    AnnotAt(*document, 0, 3)->SetRemark("other part");
    QVERIFY(document->RemoveAnnot(AnnotAt(*document, 0, 0)));
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, SecondPart).contains("<ofd:Remark>other part</ofd:Remark>"));
    QCOMPARE(Remarks(*desk->Open(path), 0), QStringLiteral("|plain|other part"));
}

TETO_TEST_MAIN(TestSaveAnnotations)

#include "test_save_annotations.moc"
