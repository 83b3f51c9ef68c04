#include "saving_desk.h"

#include <frame/base/converters.h>
#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QtTest>

namespace {

const QString AttachmentList = QStringLiteral("Doc_0/Attachments.xml");
const QString TagList = QStringLiteral("Doc_0/Tags/CustomTags.xml");

OfdFile FileWithLists(const QByteArray& attachments, const QByteArray& tags)
{
    return OfdFile::WithPages(1)
        .Tail("<ofd:CustomTags>Tags/CustomTags.xml</ofd:CustomTags>"
              "<ofd:Attachments>Attachments.xml</ofd:Attachments>")
        .Set(AttachmentList, attachments)
        .Set(TagList, tags);
}

bool AddNote(IG_Document& document)
{
    return document.AddAttachment(new BytesReader("a note"), false, "note", "txt", "note", "txt", 0);
}

QByteArray AttachmentBytes(IG_Document& document, int index)
{
    BytesWriter writer;
    document.WriteAttachment(index, &writer);
    return writer.bytes;
}

QStringList BookmarkNames(IG_Document& document)
{
    QStringList names;
    const G_TreeNode* root = document.GetBookmarkRoot();
    for (int i = 0; root && i < root->SubNodeCount(); ++i)
        names.append(GQ_ToQStringFromUtf8(root->SubNode(i)->NodeText()));
    return names;
}

G_Bookmark* BookmarkAt(IG_Document& document, int row)
{
    return dynamic_cast<G_Bookmark*>(document.GetBookmarkRoot()->SubNode(row)->data);
}

QByteArray Bookmark(const QByteArray& name)
{
    return "<ofd:Bookmark Name=\"" + name + "\"><ofd:Dest Type=\"Fit\" PageID=\"1\"/></ofd:Bookmark>";
}

// What a writer that appends makes: a second list behind the first.
OfdFile FileWithTwoBookmarkLists()
{
    return OfdFile::WithPages(1).Tail("<ofd:Bookmarks>" + Bookmark("one") + Bookmark("two") +
                                      "</ofd:Bookmarks><!-- between --><ofd:Bookmarks>" + Bookmark("three") +
                                      "</ofd:Bookmarks>");
}

bool HasProblem(const ofd::OfdDocument& document, ofd::ProblemKind kind, const char* text)
{
    const std::vector<ofd::Problem> problems = document.GetProblems();
    return std::any_of(problems.begin(), problems.end(), [&](const ofd::Problem& problem) {
        return problem.kind == kind && problem.text.contains(QLatin1String(text));
    });
}

} // namespace

// Lists that are broken or there twice: what can be read is shown, what the user adds is saved, and no byte of the
// rest is lost.
class TestSaveBrokenLists : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void whatIsAddedToABrokenListGoesIntoANewOneBesideIt_data();
    void whatIsAddedToABrokenListGoesIntoANewOneBesideIt();
    void anAdditionThatCouldNotBeSavedIsRefusedAtOnce();
    void bookmarksOfTwoListsAreOneTree();
    void editsReachBothListsOfBookmarks();
    void aListThatLosesItsLastBookmarkGoes();
    void removingAllBookmarksRemovesBothLists();
    void aSecondOutlineIsToldAndKept();
    void pagesOfTwoListsAreOneDocument();
    void furtherDocumentsAndListsAreToldAndKept();
    void blanksAroundADateComeBackWithIt();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveBrokenLists::whatIsAddedToABrokenListGoesIntoANewOneBesideIt_data()
{
    QTest::addColumn<QByteArray>("broken");
    QTest::newRow("ends early") << QByteArray("<ofd:Attachments xmlns:ofd=\"u\"><ofd:Attachment ID=\"7\" Name=\"a\"");
    QTest::newRow("no XML") << QByteArray("not a list at all");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("wrong end tag") << QByteArray("<a><b></a></b>");
}

void TestSaveBrokenLists::whatIsAddedToABrokenListGoesIntoANewOneBesideIt()
{
    QFETCH(const QByteArray, broken);
    const QString path = desk->Saved(FileWithLists(broken, broken), [](ofd::OfdDocument& document) {
        QCOMPARE(document.GetAttachmentCount(), 0);
        QCOMPARE(document.CustomTagRootCount(), 0);
        QVERIFY(AddNote(document));
        QVERIFY(document.AddCustomTagRoot("invoice", "fp", "urn:fp", 0));
    });
    QCOMPARE(PartOf(path, AttachmentList), broken);
    QCOMPARE(PartOf(path, TagList), broken);
    const auto document = desk->Open(path);
    QCOMPARE(document->GetAttachmentCount(), 1);
    QCOMPARE(AttachmentBytes(*document, 0), QByteArray("a note"));
    QCOMPARE(document->CustomTagRootCount(), 1);
    QCOMPARE(GQ_ToQStringFromUtf8(document->CustomTagRoot(0)->SubNode(0)->NodeText()), QStringLiteral("invoice"));
    // From now on it is a list like any other.
    QVERIFY(AddNote(*document));
    QVERIFY(document->Save());
    QCOMPARE(desk->Open(path)->GetAttachmentCount(), 2);
}

// A list of a size that we do not read may be sound; a new one beside it would hide what it names from everybody.
void TestSaveBrokenLists::anAdditionThatCouldNotBeSavedIsRefusedAtOnce()
{
    QByteArray blanks(8 << 20, ' ');
    for (int i = 0; i < blanks.size(); i += 1000) // not so even that it would be a bomb, which nobody unpacks
        blanks[i] = char('a' + i / 1000 * 7 % 26);
    const QByteArray tooBig = Element("Attachments", blanks);
    const QString path = FileWithLists(tooBig, tooBig).Write(desk->Path(QStringLiteral("big.ofd")));
    const auto document = desk->Open(path);
    QVERIFY(!AddNote(*document));
    QVERIFY(!document->AddCustomTagRoot("invoice", "fp", "urn:fp", 0));
    QCOMPARE(document->GetAttachmentCount(), 0);
    QCOMPARE(document->CustomTagRootCount(), 0);
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
}

void TestSaveBrokenLists::bookmarksOfTwoListsAreOneTree()
{
    const QString path = FileWithTwoBookmarkLists().Write(desk->Path(QStringLiteral("two.ofd")));
    const auto document = desk->Open(path);
    QCOMPARE(BookmarkNames(*document).join(QLatin1Char(' ')), QStringLiteral("one two three"));
    QVERIFY(HasProblem(*document, ofd::ProblemKind::DuplicateIdentifier, "more than one list of bookmarks"));
    QVERIFY(!document->IsModified());
}

void TestSaveBrokenLists::editsReachBothListsOfBookmarks()
{
    const QByteArray before = FileWithTwoBookmarkLists().Part(DocumentPart);
    QByteArray expected = before;
    expected.replace("Name=\"two\"", "Name=\"second\"").replace("Name=\"three\"", "Name=\"third\"");
    QVERIFY(expected != before);
    const QByteArray part = desk->SavedPart(FileWithTwoBookmarkLists(), DocumentPart, [](ofd::OfdDocument& document) {
        BookmarkAt(document, 1)->name = "second";
        BookmarkAt(document, 2)->name = "third";
    });
    QCOMPARE(part, expected);
    // One from the second list to the front, and a new one at the end.
    const QString path = desk->Saved(FileWithTwoBookmarkLists(), [](ofd::OfdDocument& document) {
        G_TreeNode* root = document.GetBookmarkRoot();
        G_TreeNode::MoveSubNode(root, 2, root, 0);
        auto* added = new G_Bookmark; // owned by its node
        added->name = "four";
        document.GetBookmarkRoot()->AddSubNode(3, added);
    });
    QCOMPARE(BookmarkNames(*desk->Open(path)).join(QLatin1Char(' ')), QStringLiteral("three one two four"));
    QVERIFY(PartOf(path, DocumentPart).contains("<!-- between -->"));
}

void TestSaveBrokenLists::aListThatLosesItsLastBookmarkGoes()
{
    const QByteArray part = desk->SavedPart(FileWithTwoBookmarkLists(), DocumentPart, [](ofd::OfdDocument& document) {
        document.GetBookmarkRoot()->RemoveSubNode(2);
    });
    QCOMPARE(part.count("<ofd:Bookmarks>"), 1);
    QCOMPARE(part.count("<ofd:Bookmark "), 2);
    // What replaces all of them stands in one list, which is not empty.
    const QByteArray other = desk->SavedPart(FileWithTwoBookmarkLists(), DocumentPart, [](ofd::OfdDocument& document) {
        for (int i = 2; i >= 0; --i)
            document.GetBookmarkRoot()->RemoveSubNode(i);
        auto* added = new G_Bookmark; // owned by its node
        added->name = "new";
        document.GetBookmarkRoot()->AddSubNode(0, added);
    });
    QCOMPARE(other.count("<ofd:Bookmarks>"), 1);
    QCOMPARE(other.count("<ofd:Bookmark "), 1);
}

void TestSaveBrokenLists::removingAllBookmarksRemovesBothLists()
{
    const QByteArray part = desk->SavedPart(FileWithTwoBookmarkLists(), DocumentPart, [](ofd::OfdDocument& document) {
        for (int i = 2; i >= 0; --i)
            document.GetBookmarkRoot()->RemoveSubNode(i);
    });
    QVERIFY(!part.contains("Bookmark"));
    QVERIFY(part.contains("<!-- between -->"));
}

void TestSaveBrokenLists::aSecondOutlineIsToldAndKept()
{
    const QByteArray second = "<ofd:Outlines><ofd:OutlineElem Title=\"hidden\" Own=\"1\"/></ofd:Outlines>";
    const OfdFile file =
        OfdFile::WithPages(1).Tail("<ofd:Outlines><ofd:OutlineElem Title=\"shown\"/></ofd:Outlines>" + second);
    const auto remove = [](ofd::OfdDocument& document) {
        QCOMPARE(document.GetOutlineRoot()->SubNodeCount(), 1);
        QVERIFY(HasProblem(document, ofd::ProblemKind::DuplicateIdentifier, "more than one outline"));
        document.GetOutlineRoot()->RemoveSubNode(0);
    };
    const QString path = desk->Saved(file, remove);
    QVERIFY(PartOf(path, DocumentPart).contains(second));
    // What nobody saw does not take the place of what was deleted.
    const auto document = desk->Open(path);
    QCOMPARE(document->GetOutlineRoot()->SubNodeCount(), 0);
    auto* added = new G_OutlineItem; // owned by its node
    added->text = "new";
    document->GetOutlineRoot()->AddSubNode(0, added);
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, DocumentPart).contains(second));
    const auto again = desk->Open(path);
    QCOMPARE(GQ_ToQStringFromUtf8(again->GetOutlineRoot()->SubNode(0)->NodeText()), QStringLiteral("new"));
}

void TestSaveBrokenLists::pagesOfTwoListsAreOneDocument()
{
    OfdFile file = OfdFile::WithPages(3);
    const QByteArray second = "<ofd:Page ID=\"2\"";
    file.Set(DocumentPart, file.Part(DocumentPart)
                               .replace(second, "</ofd:Pages><ofd:Permissions/><ofd:Pages>" + second)
                               .replace("<ofd:Page ID=\"3\"", "</ofd:Pages>\n<ofd:Pages><ofd:Page ID=\"3\""));
    const auto pagesOf = [](ofd::OfdDocument& document) {
        QCOMPARE(document.GetPageCount(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(document.PageIdFromIndex(i), i + 1);
            QVERIFY(document.GetPage(i)->Load());
        }
    };
    const QByteArray before = file.Part(DocumentPart);
    const QString path = desk->Saved(file, [&](ofd::OfdDocument& document) {
        pagesOf(document);
        QVERIFY(HasProblem(document, ofd::ProblemKind::DuplicateIdentifier, "more than one list of pages"));
        QVERIFY(document.CreateBookmarkRoot());
        auto* bookmark = new G_Bookmark; // owned by its node
        bookmark->name = "last";
        bookmark->dest->pageIndex = 2;
        document.GetBookmarkRoot()->AddSubNode(0, bookmark);
        QVERIFY(document.CreateOutlineRoot());
        document.GetOutlineRoot()->AddSubNode(0, new G_OutlineItem); // owned by its node
        QVERIFY(AddNote(document));
    });
    // What is new stands behind what comes earlier in the format's order, and nothing else has moved.
    QByteArray part = PartOf(path, DocumentPart);
    const int outline = part.indexOf("<ofd:Outlines>");
    QVERIFY(outline > part.lastIndexOf("</ofd:Pages>"));
    QVERIFY(part.indexOf("<ofd:Bookmarks>") > outline);
    QVERIFY(part.indexOf("<ofd:Attachments>") > part.indexOf("</ofd:Bookmarks>"));
    const QByteArray pages =
        before.mid(before.indexOf("<ofd:Pages>"), before.lastIndexOf("</ofd:Pages>") - before.indexOf("<ofd:Pages>"));
    QVERIFY(part.contains(pages));
    const auto again = desk->Open(path);
    pagesOf(*again);
    const auto* bookmark = dynamic_cast<const G_Bookmark*>(again->GetBookmarkRoot()->SubNode(0)->data);
    QCOMPARE(bookmark->dest->pageIndex, 2);
    QCOMPARE(again->GetAttachmentCount(), 1);
}

void TestSaveBrokenLists::furtherDocumentsAndListsAreToldAndKept()
{
    const QString entryPart = QStringLiteral("OFD.xml");
    const QByteArray other = "<ofd:DocBody><ofd:DocInfo><ofd:ModDate>2001-02-03</ofd:ModDate></ofd:DocInfo>"
                             "<ofd:DocRoot>Other/Document.xml</ofd:DocRoot></ofd:DocBody>";
    const QByteArray list = "<ofd:Attachments>Others.xml</ofd:Attachments>";
    OfdFile file = OfdFile::WithPages(2).Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>" + list);
    QByteArray entry = file.Part(entryPart);
    entry.replace("</ofd:DocInfo>", "<ofd:ModDate>2001-02-03</ofd:ModDate></ofd:DocInfo>");
    file.Set(entryPart, entry.replace("</ofd:DocBody>", "</ofd:DocBody>" + other));
    const QByteArray otherPart = file.Part(DocumentPart);
    file.Set(QStringLiteral("Other/Document.xml"), otherPart);
    file.Set(AttachmentList, Element("Attachments", {}));
    file.Set(QStringLiteral("Doc_0/Others.xml"), Element("Attachments", "<ofd:Attachment ID=\"9\" Name=\"hidden\"/>"));
    const QString path = desk->Saved(file, [](ofd::OfdDocument& document) {
        QCOMPARE(document.GetPageCount(), 2);
        QCOMPARE(document.GetAttachmentCount(), 0);
        QVERIFY(HasProblem(document, ofd::ProblemKind::Unsupported, "holds 2 documents"));
        QVERIFY(HasProblem(document, ofd::ProblemKind::DuplicateIdentifier, "more than one \"Attachments\""));
        QCOMPARE(int(document.GetProblems().size()), 2);
        QVERIFY(AddNote(document));
    });
    QVERIFY(PartOf(path, entryPart).contains(other));
    QCOMPARE(PartOf(path, entryPart).count("2001-02-03"), 1); // the date of the one that was edited is another now
    QCOMPARE(PartOf(path, QStringLiteral("Other/Document.xml")), otherPart);
    QVERIFY(PartOf(path, DocumentPart).contains(list));
    QVERIFY(PartOf(path, AttachmentList).contains("Name=\"note\""));
    QCOMPARE(desk->Open(path)->GetAttachmentCount(), 1);
}

void TestSaveBrokenLists::blanksAroundADateComeBackWithIt()
{
    const QString part = QStringLiteral("Doc_0/Annots/Page_1.xml");
    const QByteArray bytes =
        Element("PageAnnot", "<ofd:Annot ID=\"21\" Type=\"Path\" Creator=\"me\" LastModDate=\" 2020-01-02  \" "
                             "ReadOnly=\"false\"><ofd:Remark>one</ofd:Remark><ofd:Appearance "
                             "Boundary=\"0 0 9 9\"/></ofd:Annot>");
    const OfdFile file = OfdFile::WithPages(1)
                             .Tail("<ofd:Annotations>Annots/Annotations.xml</ofd:Annotations>")
                             .Set(QStringLiteral("Doc_0/Annots/Annotations.xml"),
                                  Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Page_1.xml</ofd:FileLoc>"
                                                         "</ofd:Page>"))
                             .Set(part, bytes);
    const QString path = file.Write(desk->Path(QStringLiteral("dates.ofd")));
    const auto document = desk->Open(path);
    IG_Page* page = document->GetPage(0);
    QCOMPARE(page->LoadAnnots(), 0);
    IG_Annot* annot = page->GetAnnotAt(0);
    const CCA_String date = annot->GetDate();
    QCOMPARE(date, CCA_String("2020-01-02"));
    // A remark and its new date, saved; then both are undone and saved.
    annot->SetRemark("two");
    annot->SetDate("2024-05-06");
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, part).contains("LastModDate=\"2024-05-06\""));
    annot->SetRemark("one");
    annot->SetDate(date);
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, part), bytes);
}

TETO_TEST_MAIN(TestSaveBrokenLists)

#include "test_save_broken_lists.moc"
