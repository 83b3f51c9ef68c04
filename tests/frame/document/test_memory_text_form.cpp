#include <frame/base/converters.h>
#include <frame/document/memory_document.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <QtTest>

class TestMemoryTextForm : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyTextIsAnEmptyDocument();
    void commentsAndEmptyLinesArePassedOver();
    void pageIdsCountFromOneUnlessGiven();
    void quotesKeepBlanksAndEscapes();
    void destinationsNameAPageByIdOrIndex();
    void outlinesNestAndCollapse();
    void tagsHoldAttributesAndObjects();
    void annotationsTakeEveryField();
    void aRemarkRunsToTheEndOfTheLine();
    void statesAndRightsAreRead();
    void attachmentsHaveContentOfTheirSize();
    void aDeepOutlineIsRead();
    void badTextIsRefusedWithItsLine_data();
    void badTextIsRefusedWithItsLine();
};

namespace {

std::unique_ptr<MemoryDocument> Read(const char* text)
{
    QString error;
    auto document = MemoryDocument::FromText(QString::fromUtf8(text), &error);
    if (!document)
        qWarning() << error;
    return document;
}

void BadRow(const char* text, const char* error)
{
    QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(error);
}

// Pages and what stands on them, and lines out of place.
void AddBadPages()
{
    BadRow("sheet 1 2", "line 1: unknown word \"sheet\"");
    BadRow("page 1 2\npages", "line 2: unknown word \"pages\"");
    BadRow("page", "line 1: wrong values for \"page\"");
    BadRow("page 210", "line 1: wrong values for \"page\"");
    BadRow("page 210 x", "line 1: wrong values for \"page\"");
    BadRow("page 210 nan", "line 1: wrong values for \"page\"");
    BadRow("page 0 10", "line 1: impossible page size");
    BadRow("page 1e9 10", "line 1: impossible page size");
    BadRow("page 1 2 id=0", "line 1: the page id is wrong or taken");
    BadRow("page 1 2 id=x", "line 1: the page id is wrong or taken");
    BadRow("page 1 2 id=3\npage 1 2 id=3", "line 2: the page id is wrong or taken");
    BadRow("page 1 2 name=x", "line 1: wrong values for \"page\"");
    BadRow("page 1 2 id=3 more", "line 1: too much behind \"page\"");
    BadRow(" page 1 2", "line 1: wrong indentation");
    BadRow("  page 1 2", "line 1: wrong indentation");
    BadRow("\tpage 1 2", "line 1: wrong indentation");
    BadRow("page 1 2\n    text 1 2 x", "line 2: wrong indentation");
    BadRow("text 1 2 x", "line 1: \"text\" cannot stand here");
    BadRow("page 1 2\n  bookmark a", "line 2: \"bookmark\" cannot stand here");
    BadRow("bookmark a\n  bookmark b", "line 2: \"bookmark\" cannot stand here");
    BadRow("outline a\n  tag b", "line 2: \"tag\" cannot stand here");
    BadRow("page 1 2\n  text x", "line 2: wrong values for \"text\"");
    BadRow("page 1 2\n  layer 3 x", "line 2: wrong values for \"layer\"");
    BadRow("page 1 2\n  layer 12 x", "line 2: wrong values for \"layer\"");
    BadRow("page 1 2\n  template x Body", "line 2: wrong values for \"template\"");
    BadRow("page 1 2\n  template 5 Body x", "line 2: too much behind \"template\"");
    BadRow("page 1 2\n  annot rect=1,2,3", "line 2: wrong values for \"annot\"");
    BadRow("page 1 2\n  annot colour=red", "line 2: unknown word \"colour\"");
    BadRow("page 1 2\n  annot visible=maybe", "line 2: wrong values for \"annot\"");
    BadRow("page 1 2\n  annot id=five", "line 2: wrong values for \"annot\"");
    BadRow("page 1 2\n  annot subtype", "line 2: wrong values for \"annot\"");
    BadRow("\"page", "line 1: unfinished quotes");
}

// Lists, rights and the rest of the document.
void AddBadLists()
{
    BadRow("bookmark", "line 1: wrong values for \"bookmark\"");
    BadRow("bookmark \"a", "line 1: wrong values for \"bookmark\"");
    BadRow("bookmark a page=0", "line 1: wrong values for \"bookmark\"");
    BadRow("bookmark a mode=5", "line 1: wrong values for \"bookmark\"");
    BadRow("bookmark a zoom=inf", "line 1: wrong values for \"bookmark\"");
    BadRow("bookmark a where=1", "line 1: unknown word \"where\"");
    BadRow("outline a open", "line 1: unknown word \"open\"");
    BadRow("tag a attribute", "line 1: wrong values for \"tag\"");
    BadRow("tag a objects=1", "line 1: wrong values for \"tag\"");
    BadRow("tag a objects=1:x", "line 1: wrong values for \"tag\"");
    BadRow("tag a objects=1:2:3", "line 1: wrong values for \"tag\"");
    BadRow("attachment a xml 1", "line 1: wrong values for \"attachment\"");
    BadRow("attachment a xml -1 1", "line 1: impossible size");
    BadRow("attachment a xml 1e9 1", "line 1: impossible size");
    BadRow("attachment a xml 1 1 secret", "line 1: wrong values for \"attachment\"");
    BadRow("rights edit=perhaps", "line 1: wrong values for \"rights\"");
    BadRow("rights look=no", "line 1: unknown word \"look\"");
    BadRow("rights copies=-1", "line 1: wrong values for \"rights\"");
    BadRow("rights copies=some", "line 1: wrong values for \"rights\"");
    BadRow("outline a uri", "line 1: unknown word \"uri\"");
    BadRow("readonly now", "line 1: too much behind \"readonly\"");
}

void AddBadLinks()
{
    BadRow("page 1 2\n  link uri=x", "line 2: wrong values for \"link\"");
    BadRow("page 1 2\n  link rect=0,0,9,9", "line 2: wrong values for \"link\"");
    BadRow("page 1 2\n  link rect=0,0,9 uri=x", "line 2: wrong values for \"link\"");
    BadRow("page 1 2\n  link rect=0,0,9,9 uri", "line 2: \"uri\" needs a value");
    BadRow("page 1 2\n  link rect=0,0,9,9 sound=loud", "line 2: \"sound\" takes no value");
    BadRow("page 1 2\n  link rect=0,0,9,9 attachment=x", "line 2: wrong values for \"link\"");
    BadRow("page 1 2\n  link rect=0,0,9,9 annot=x sound", "line 2: wrong values for \"link\"");
    BadRow("page 1 2\n  link rect=0,0,9,9 base=x", "line 2: \"base\" needs an address before it");
    BadRow("page 1 2\n  link rect=0,0,9,9 dance=1", "line 2: unknown word \"dance\"");
    BadRow("open", "line 1: wrong values for \"open\"");
    BadRow("open page=0", "line 1: wrong values for \"open\"");
    BadRow("open page=1 mode=9", "line 1: wrong values for \"open\"");
}

} // namespace

void TestMemoryTextForm::anEmptyTextIsAnEmptyDocument()
{
    const auto document = Read("");
    QVERIFY(document);
    QCOMPARE(document->GetPageCount(), 0);
    QVERIFY(!document->GetBookmarkRoot());
    QVERIFY(!document->GetPage(0));
}

void TestMemoryTextForm::commentsAndEmptyLinesArePassedOver()
{
    const auto document = Read("# a comment\n\npage 10 20\n   \n  # another, anywhere\n  text 1 2 x\n\r\n");
    QVERIFY(document);
    QCOMPARE(document->PageSizeMm(0), QSizeF(10, 20));
}

void TestMemoryTextForm::pageIdsCountFromOneUnlessGiven()
{
    const auto document = Read("page 10 20\npage 10 20 id=7\npage 10 20\n");
    QVERIFY(document);
    QCOMPARE(document->PageIdFromIndex(0), 1);
    QCOMPARE(document->PageIdFromIndex(1), 7);
    QCOMPARE(document->PageIdFromIndex(2), 8);
}

void TestMemoryTextForm::quotesKeepBlanksAndEscapes()
{
    const auto document = Read("bookmark \"a b \\\"c\\\" \\\\ d\\ne\"\nbookmark \"\"\nbookmark plain\n");
    QVERIFY(document);
    QCOMPARE(DumpNames(document->GetBookmarkRoot()), QStringLiteral("a b \"c\" \\ d\ne\n\nplain\n"));
}

void TestMemoryTextForm::destinationsNameAPageByIdOrIndex()
{
    const auto document = Read("bookmark a page=7\nbookmark b index=2 rect=1,2,3,4 zoom=1.5 mode=4\n"
                               "bookmark c page=99\nbookmark d\npage 10 20\npage 10 20 id=7\n");
    QVERIFY(document);
    QCOMPARE(DumpTree(document->GetBookmarkRoot()), QStringLiteral("a -> 7/1 (0,0,0,0) x0 mode 0\n"
                                                                   "b -> 0/2 (1,2,3,4) x1.5 mode 4\n"
                                                                   "c -> 99/-1 (0,0,0,0) x0 mode 0\n"
                                                                   "d -> 0/0 (0,0,0,0) x0 mode 0\n"));
}

void TestMemoryTextForm::outlinesNestAndCollapse()
{
    const auto document = Read("outline A closed page=1\n"
                               "  outline B uri=https://example.org/?a=b\n"
                               "    outline C\n"
                               "  outline D\n"
                               "outline E\n"
                               "page 10 20\n");
    QVERIFY(document);
    QCOMPARE(DumpTree(document->GetOutlineRoot()), QStringLiteral("A closed -> 1/0 (0,0,0,0) x0 mode 0\n"
                                                                  "  B -> https://example.org/?a=b\n"
                                                                  "    C\n"
                                                                  "  D\n"
                                                                  "E\n"));
}

void TestMemoryTextForm::tagsHoldAttributesAndObjects()
{
    const auto document = Read("tag Invoice version=1.0\n"
                               "  tag Buyer \"long name=two words\" empty= objects=1:1,2 objects=7:3\n"
                               "tag Other\n");
    QVERIFY(document);
    QCOMPARE(document->CustomTagRootCount(), 2);
    QCOMPARE(DumpTree(document->CustomTagRoot(0)),
             QStringLiteral("Invoice [version=1.0]\n"
                            "  Buyer [long name=two words] [empty=] {1:1,2} {7:3}\n"));
    QCOMPARE(DumpTree(document->CustomTagRoot(1)), QStringLiteral("Other\n"));
}

void TestMemoryTextForm::annotationsTakeEveryField()
{
    const auto document = Read("page 10 20\n"
                               "  annot id=5 type=2 subtype=Pen creator=\"Li Bo\" date=2020-01-02 rect=1,2,3,4 "
                               "points=\"1 2 3 4\" visible=no locked=yes hidden=yes remark=\"a b\"\n"
                               "  annot id=5\n");
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    page->LoadAnnots();
    QCOMPARE(page->GetAnnotCount(), 2);
    IG_Annot* annot = page->GetAnnotAt(0);
    QCOMPARE(annot->GetId(), 5);
    QCOMPARE(annot->GetType(), int(AnnotPath));
    QVERIFY(annot->GetSubType() == "Pen");
    QVERIFY(annot->GetCreator() == "Li Bo");
    QVERIFY(annot->GetDate() == "2020-01-02");
    QVERIFY(annot->GetRemark() == "a b");
    QVERIFY(annot->GetPointsText() == "1 2 3 4");
    QVERIFY(annot->GetBoundary() == CCA_GRect(1, 2, 3, 4));
    QVERIFY(!annot->GetVisible(0) && !annot->GetVisible(1));
    QVERIFY(annot->IsLocked());
    QVERIFY(annot->IsHiddenFromList());
    QVERIFY(page->GetAnnotAt(1)->GetId() != 5); // a taken id is replaced
}

void TestMemoryTextForm::aRemarkRunsToTheEndOfTheLine()
{
    const auto document = Read("page 10 20\n  annot id=1 remark=to the end, id=2 too\n  annot id=3 remark=\n");
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    page->LoadAnnots();
    QVERIFY(page->GetAnnotById(1)->GetRemark() == "to the end, id=2 too");
    QVERIFY(page->GetAnnotById(3)->GetRemark().IsEmpty());
}

void TestMemoryTextForm::statesAndRightsAreRead()
{
    const auto document = Read("rights annot=no export=yes print=yes copies=2\nreadonly\nsigned\nencrypted\n");
    QVERIFY(document);
    QVERIFY(document->HasPermissions());
    QVERIFY(document->MayEdit());
    QVERIFY(!document->MayAnnotate());
    QVERIFY(document->MayExport());
    QVERIFY(document->MayPrint());
    QCOMPARE(document->MostCopies(), 2);
    QVERIFY(document->IsReadOnly());
    QVERIFY(document->IsSignProtected());
    QVERIFY(document->IsEncrypted());
}

void TestMemoryTextForm::attachmentsHaveContentOfTheirSize()
{
    const auto document = Read("attachment \"my data\" xml 1.5 3\nattachment second \"\" 0 3 hidden\n");
    QVERIFY(document);
    QCOMPARE(document->GetAttachmentCount(), 2);
    QVERIFY(document->GetAttachment(0).name == "my data");
    QCOMPARE(document->GetAttachment(0).size, 1.5F);
    QVERIFY(document->GetAttachment(1).format.IsEmpty());
    QVERIFY(!document->GetAttachment(1).visible);
    QCOMPARE(document->GetAttachment(1).id, 4); // a taken id is replaced
    BytesWriter first;
    QVERIFY(document->WriteAttachment(0, &first));
    QCOMPARE(first.bytes.size(), 1536);
    QVERIFY(first.bytes.startsWith("abcdefghijklmnopqrstuvwxyzabc"));
    QVERIFY(first.bytes.endsWith("zab")); // 1536 % 26 == 2
    BytesWriter second;
    QVERIFY(document->WriteAttachment(1, &second));
    QVERIFY(second.bytes.isEmpty());
}

void TestMemoryTextForm::aDeepOutlineIsRead()
{
    QString text;
    for (int depth = 0; depth < 1000; ++depth)
        text += QString(depth * 2, QLatin1Char(' ')) + QStringLiteral("outline x\n");
    const auto document = MemoryDocument::FromText(text);
    QVERIFY(document);
    int depth = 0;
    for (G_TreeNode* node = document->GetOutlineRoot(); node->SubNode(0); node = node->SubNode(0))
        ++depth;
    QCOMPARE(depth, 1000);
}

void TestMemoryTextForm::badTextIsRefusedWithItsLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    AddBadPages();
    AddBadLists();
    AddBadLinks();
}

void TestMemoryTextForm::badTextIsRefusedWithItsLine()
{
    QFETCH(QString, text);
    QFETCH(QString, error);
    QString message;
    QVERIFY(!MemoryDocument::FromText(text, &message));
    QCOMPARE(message, error);
    QVERIFY(!MemoryDocument::FromText(text));
}

TETO_TEST_MAIN(TestMemoryTextForm)
#include "test_memory_text_form.moc"
