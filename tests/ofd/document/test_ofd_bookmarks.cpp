#include "ofd_file.h"

#include <frame/base/converters.h>
#include <ofd/ofd_document.h>
#include <ofd/package/package.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

#include <functional>

namespace {

const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");

// One line a bookmark: name, type of destination, page, rectangle, zoom.
QString Listed(IG_Document& document)
{
    QString text;
    G_TreeNode* root = document.GetBookmarkRoot();
    for (int i = 0; root && i < root->SubNodeCount(); ++i) {
        const auto* bookmark = dynamic_cast<const G_Bookmark*>(root->SubNode(i)->data);
        const G_Dest& dest = *bookmark->dest;
        text += QStringLiteral("%1 m%2 p%3/%4 (%5 %6 %7 %8) x%9\n")
                    .arg(GQ_ToQStringFromUtf8(bookmark->name))
                    .arg(dest.zoomMode)
                    .arg(dest.pageId)
                    .arg(dest.pageIndex)
                    .arg(double(dest.left))
                    .arg(double(dest.top))
                    .arg(double(dest.right))
                    .arg(double(dest.bottom))
                    .arg(double(dest.zoom));
    }
    return text;
}

G_Bookmark* BookmarkAt(IG_Document& document, int row)
{
    return dynamic_cast<G_Bookmark*>(document.GetBookmarkRoot()->SubNode(row)->data);
}

G_Bookmark* AddBookmark(IG_Document& document, int row, const char* name, const G_Dest& dest = G_Dest())
{
    document.CreateBookmarkRoot();
    auto* bookmark = new G_Bookmark; // owned by its node
    bookmark->name = name;
    *bookmark->dest = dest;
    if (!document.GetBookmarkRoot()->AddSubNode(row, bookmark))
        qFatal("the bookmark was refused");
    return bookmark;
}

G_Dest Dest(int mode, int pageId, float left = 0, float top = 0, float right = 0, float bottom = 0, float zoom = 0)
{
    G_Dest dest;
    dest.zoomMode = mode;
    dest.pageId = pageId;
    dest.pageIndex = pageId - 1;
    dest.left = left;
    dest.top = top;
    dest.right = right;
    dest.bottom = bottom;
    dest.zoom = zoom;
    return dest;
}

const QByteArray ThreeBookmarks =
    "\n  <ofd:Bookmarks>\n"
    "    <!-- the first -->\n"
    "    <ofd:Bookmark Name=\"One\" Extra=\"kept\"><ofd:Dest Type=\"XYZ\" PageID=\"1\" Left=\"5\" "
    "Top=\"10\"/></ofd:Bookmark>\n"
    "    <ofd:Bookmark Name=\"Two\"><ofd:Dest Top=\"7.50\" Type=\"FitH\" PageID=\"2\" Own=\"1\"/></ofd:Bookmark>\n"
    "    <ofd:Bookmark Name=\"Three\"><ofd:Dest Type=\"FitR\" PageID=\"3\" Left=\"1\" Top=\"2\" Right=\"3\" "
    "Bottom=\"4\"/>"
    "</ofd:Bookmark>\n"
    "  </ofd:Bookmarks>\n  <ofd:Extensions>Ext.xml</ofd:Extensions>";

} // namespace

Q_DECLARE_METATYPE(G_Dest)

class TestOfdBookmarks : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void noEditSavesTheSameBytes();
    void everyTypeOfDestinationComesBack_data();
    void everyTypeOfDestinationComesBack();
    void aRenameChangesOnlyTheName();
    void aNewDestinationKeepsForeignAttributes();
    void rowsCanBeRearranged_data();
    void rowsCanBeRearranged();
    void theLastBookmarkTakesTheListAlong();
    void theFirstBookmarkMakesTheListInItsPlace();
    void editAndUndoSavesTheSameBytes();
    void aDeletedBookmarkComesBackWithItsBytesAfterASave();
    void aPastedCopyGetsAnElementOfItsOwn();
    void anUnprefixedBookmarkIsEditedInPlace();
    void namesMayHoldAnything();
    void aBookmarkOnAMissingPageKeepsItsPage();
    void rootsAndRowsLiveOnAfterASave();
    void savingUnderAnotherNameLeavesTheFirstFileAlone();
    void aFileChangedByOthersIsNotOverwritten();
    void aRemovedFileIsTold();
    void aFolderThatIsGoneIsTold();
    void aReadOnlyDocumentIsNotSavedOverItself();
    void theDateOfTheLastChangeFollows();
    void otherPartsKeepTheirBytes();

private:
    std::unique_ptr<ofd::OfdDocument> Open(const QString& path);
    // What the document part is once these changes were saved.
    QByteArray SavedPart(const std::function<void(IG_Document&)>& change, const OfdFile& file);
    QString Path(const QString& name) const { return folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> folder;
};

void TestOfdBookmarks::init()
{
    folder = std::make_unique<QTemporaryDir>();
}

std::unique_ptr<ofd::OfdDocument> TestOfdBookmarks::Open(const QString& path)
{
    ofd::OpenResult result = ofd::OfdDocument::Open(path);
    if (!result)
        qFatal("%s", qPrintable(result.error));
    return std::move(result.document);
}

QByteArray TestOfdBookmarks::SavedPart(const std::function<void(IG_Document&)>& change, const OfdFile& file)
{
    const QString path = file.Write(Path(QStringLiteral("edited.ofd")));
    const auto document = Open(path);
    change(*document);
    const ofd::DocumentSaveResult result = document->Save();
    if (!result)
        qFatal("%s", qPrintable(result.error));
    return PartOf(path, DocumentPart);
}

void TestOfdBookmarks::noEditSavesTheSameBytes()
{
    const QString path = OfdFile::WithPages(3).Tail(ThreeBookmarks).Write(Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = Open(path);
    QCOMPARE(document->GetBookmarkRoot()->SubNodeCount(), 3);
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
    const QString copy = Path(QStringLiteral("b.ofd"));
    QVERIFY(document->SaveAs(copy));
    QCOMPARE(BytesOf(copy), before);
}

void TestOfdBookmarks::everyTypeOfDestinationComesBack_data()
{
    QTest::addColumn<G_Dest>("dest");
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("listed");
    QTest::newRow("XYZ") << Dest(0, 2, 1.5F, 2, 3, 4, 1.25F)
                         << QByteArray("Type=\"XYZ\" PageID=\"2\" Left=\"1.5\" Top=\"2\" Right=\"3\" Bottom=\"4\" "
                                       "Zoom=\"1.25\"/>")
                         << QStringLiteral("new m0 p2/1 (1.5 2 3 4) x1.25\n");
    QTest::newRow("XYZ keeping the zoom")
        << Dest(0, 2, 1, 2, 3, 4)
        << QByteArray("Type=\"XYZ\" PageID=\"2\" Left=\"1\" Top=\"2\" Right=\"3\" Bottom=\"4\"/>")
        << QStringLiteral("new m0 p2/1 (1 2 3 4) x0\n");
    QTest::newRow("Fit") << Dest(1, 3, 1, 2, 3, 4) << QByteArray("Type=\"Fit\" PageID=\"3\"/>")
                         << QStringLiteral("new m1 p3/2 (0 0 0 0) x0\n");
    QTest::newRow("FitH") << Dest(2, 1, 1, 2, 3, 4) << QByteArray("Type=\"FitH\" PageID=\"1\" Top=\"2\"/>")
                          << QStringLiteral("new m2 p1/0 (0 2 0 0) x0\n");
    QTest::newRow("FitV") << Dest(3, 1, 1, 2, 3, 4) << QByteArray("Type=\"FitV\" PageID=\"1\" Left=\"1\"/>")
                          << QStringLiteral("new m3 p1/0 (1 0 0 0) x0\n");
    QTest::newRow("FitR") << Dest(4, 1, 1, 2, 3, 4)
                          << QByteArray("Type=\"FitR\" PageID=\"1\" Left=\"1\" Top=\"2\" Right=\"3\" Bottom=\"4\"/>")
                          << QStringLiteral("new m4 p1/0 (1 2 3 4) x0\n");
}

void TestOfdBookmarks::everyTypeOfDestinationComesBack()
{
    QFETCH(G_Dest, dest);
    QFETCH(QByteArray, xml);
    QFETCH(QString, listed);
    const QByteArray part =
        SavedPart([&](IG_Document& document) { AddBookmark(document, 0, "new", dest); }, OfdFile::WithPages(3));
    QVERIFY2(part.contains("<ofd:Bookmark Name=\"new\"><ofd:Dest " + xml), part.constData());
    QCOMPARE(Listed(*Open(Path(QStringLiteral("edited.ofd")))), listed);
}

void TestOfdBookmarks::aRenameChangesOnlyTheName()
{
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Name=\"Two\"", "Name=\"Zwei &amp; mehr\"");
    QCOMPARE(SavedPart([](IG_Document& document) { BookmarkAt(document, 1)->name = "Zwei & mehr"; }, file), expected);
}

void TestOfdBookmarks::aNewDestinationKeepsForeignAttributes()
{
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    const QByteArray part =
        SavedPart([](IG_Document& document) { *BookmarkAt(document, 1)->dest = Dest(3, 1, 42); }, file);
    QVERIFY2(part.contains("<ofd:Bookmark Name=\"Two\"><ofd:Dest Type=\"FitV\" PageID=\"1\" Own=\"1\" Left=\"42\"/>"),
             part.constData());
    QVERIFY(part.contains("Name=\"One\" Extra=\"kept\"><ofd:Dest Type=\"XYZ\" PageID=\"1\" Left=\"5\" Top=\"10\"/>"));
}

void TestOfdBookmarks::rowsCanBeRearranged_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("first to the end") << 0 << 2 << QStringList{"Two", "Three", "One"};
    QTest::newRow("last to the top") << 2 << 0 << QStringList{"Three", "One", "Two"};
    QTest::newRow("middle up") << 1 << 0 << QStringList{"Two", "One", "Three"};
}

void TestOfdBookmarks::rowsCanBeRearranged()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QStringList, names);
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    const QByteArray part = SavedPart(
        [&](IG_Document& document) {
            G_TreeNode* root = document.GetBookmarkRoot();
            QVERIFY(G_TreeNode::MoveSubNode(root, from, root, to));
        },
        file);
    QStringList found;
    for (int at = part.indexOf("Bookmark Name=\""); at >= 0; at = part.indexOf("Bookmark Name=\"", at + 1))
        found.append(QString::fromUtf8(part.mid(at + 15, part.indexOf('"', at + 15) - at - 15)));
    QCOMPARE(found, names);
    // Moved elements take their bytes along, and everything around the list stays.
    QVERIFY(part.contains("Extra=\"kept\"><ofd:Dest Type=\"XYZ\" PageID=\"1\" Left=\"5\" Top=\"10\"/>"));
    QVERIFY(part.contains("<ofd:Dest Top=\"7.50\" Type=\"FitH\" PageID=\"2\" Own=\"1\"/>"));
    QVERIFY(part.contains("<!-- the first -->"));
    QVERIFY(part.endsWith("</ofd:Bookmarks>\n  <ofd:Extensions>Ext.xml</ofd:Extensions>\n</ofd:Document>"));
}

void TestOfdBookmarks::theLastBookmarkTakesTheListAlong()
{
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    const QByteArray part = SavedPart(
        [](IG_Document& document) {
            while (document.GetBookmarkRoot()->SubNodeCount() > 0)
                document.GetBookmarkRoot()->RemoveSubNode(0);
        },
        file);
    QVERIFY2(!part.contains("Bookmark"), part.constData());
    QVERIFY(part.contains("<ofd:Extensions>Ext.xml</ofd:Extensions>"));
    QVERIFY(!Open(Path(QStringLiteral("edited.ofd")))->GetBookmarkRoot());
}

void TestOfdBookmarks::theFirstBookmarkMakesTheListInItsPlace()
{
    const OfdFile file =
        OfdFile::WithPages(2).Tail("\n  <ofd:Permissions/>\n  <ofd:Attachments>A.xml</ofd:Attachments>");
    const QByteArray part = SavedPart(
        [](IG_Document& document) {
            AddBookmark(document, 0, "b", Dest(1, 2));
            AddBookmark(document, 0, "a", Dest(1, 1));
        },
        file);
    QVERIFY2(part.contains("<ofd:Permissions/>\n  <ofd:Bookmarks><ofd:Bookmark Name=\"a\"><ofd:Dest Type=\"Fit\" "
                           "PageID=\"1\"/></ofd:Bookmark><ofd:Bookmark Name=\"b\"><ofd:Dest Type=\"Fit\" "
                           "PageID=\"2\"/></ofd:Bookmark></ofd:Bookmarks>\n  <ofd:Attachments>"),
             part.constData());
    QVERIFY(part.contains("<ofd:MaxUnitID>1000</ofd:MaxUnitID>")); // bookmarks have no identifiers
}

void TestOfdBookmarks::editAndUndoSavesTheSameBytes()
{
    const QString path = OfdFile::WithPages(3).Tail(ThreeBookmarks).Write(Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = Open(path);
    G_TreeNode* root = document->GetBookmarkRoot();
    // As the undo commands do it: a deleted row comes back as a copy of its record.
    const G_Bookmark kept(*BookmarkAt(*document, 1));
    QVERIFY(root->RemoveSubNode(1));
    BookmarkAt(*document, 0)->name = "other";
    QVERIFY(G_TreeNode::MoveSubNode(root, 0, root, 1));
    QVERIFY(document->IsModified());
    QVERIFY(G_TreeNode::MoveSubNode(root, 1, root, 0));
    BookmarkAt(*document, 0)->name = "One";
    QVERIFY(root->AddSubNode(1, new G_Bookmark(kept)));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestOfdBookmarks::aDeletedBookmarkComesBackWithItsBytesAfterASave()
{
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    const QString path = file.Write(Path(QStringLiteral("a.ofd")));
    const auto document = Open(path);
    const G_Bookmark kept(*BookmarkAt(*document, 1));
    QVERIFY(document->GetBookmarkRoot()->RemoveSubNode(1));
    QVERIFY(document->Save());
    QVERIFY(!PartOf(path, DocumentPart).contains("Two"));
    QVERIFY(!document->IsModified());
    QVERIFY(document->GetBookmarkRoot()->AddSubNode(1, new G_Bookmark(kept)));
    QVERIFY(document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(PartOf(path, DocumentPart), file.Part(DocumentPart));
}

void TestOfdBookmarks::aPastedCopyGetsAnElementOfItsOwn()
{
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    const QByteArray part = SavedPart(
        [](IG_Document& document) {
            auto* copy = new G_Bookmark(*BookmarkAt(document, 0)); // owned by its node
            copy->name = "Copy";
            document.GetBookmarkRoot()->AddSubNode(3, copy);
        },
        file);
    QVERIFY2(part.contains("<ofd:Bookmark Name=\"Copy\" Extra=\"kept\"><ofd:Dest Type=\"XYZ\" PageID=\"1\" Left=\"5\" "
                           "Top=\"10\"/></ofd:Bookmark>\n  </ofd:Bookmarks>"),
             part.constData());
    QVERIFY(part.contains("<ofd:Bookmark Name=\"One\" Extra"));
}

void TestOfdBookmarks::anUnprefixedBookmarkIsEditedInPlace()
{
    const QByteArray tail = "<ofd:Bookmarks><Bookmark Name=\"Old\"><Dest Type=\"XYZ\" PageID=\"2\" Right=\"3\" "
                            "Bottom=\"4\"/></Bookmark></ofd:Bookmarks>";
    const OfdFile file = OfdFile::WithPages(2).Tail(tail);
    QCOMPARE(Listed(*Open(file.Write(Path(QStringLiteral("a.ofd"))))), QStringLiteral("Old m0 p2/1 (0 0 3 4) x0\n"));
    QByteArray expected = file.Part(DocumentPart);
    expected.replace("Name=\"Old\"", "Name=\"New\"");
    QCOMPARE(SavedPart([](IG_Document& document) { BookmarkAt(document, 0)->name = "New"; }, file), expected);
}

void TestOfdBookmarks::namesMayHoldAnything()
{
    const QString name = QString::fromUtf8("<\"&'>\ttab\nline 书签 \xF0\x9F\x93\x96 ]]>");
    SavedPart([&](IG_Document& document) { AddBookmark(document, 0, name.toUtf8().constData(), Dest(1, 1)); },
              OfdFile::WithPages(1));
    const auto document = Open(Path(QStringLiteral("edited.ofd")));
    QCOMPARE(GQ_ToQStringFromUtf8(BookmarkAt(*document, 0)->name), name);
}

void TestOfdBookmarks::aBookmarkOnAMissingPageKeepsItsPage()
{
    const QByteArray tail = "<ofd:Bookmarks><ofd:Bookmark Name=\"Gone\"><ofd:Dest Type=\"Fit\" PageID=\"77\"/>"
                            "</ofd:Bookmark></ofd:Bookmarks>";
    const OfdFile file = OfdFile::WithPages(1).Tail(tail);
    QCOMPARE(Listed(*Open(file.Write(Path(QStringLiteral("a.ofd"))))), QStringLiteral("Gone m1 p77/-1 (0 0 0 0) x0\n"));
    const QByteArray part = SavedPart([](IG_Document& document) { BookmarkAt(document, 0)->name = "Still"; }, file);
    QVERIFY(part.contains("Name=\"Still\"><ofd:Dest Type=\"Fit\" PageID=\"77\"/>"));
}

void TestOfdBookmarks::rootsAndRowsLiveOnAfterASave()
{
    const QString path = OfdFile::WithPages(3).Tail(ThreeBookmarks).Write(Path(QStringLiteral("a.ofd")));
    const auto document = Open(path);
    G_TreeNode* root = document->GetBookmarkRoot();
    G_TreeNode* row = root->SubNode(2);
    G_Bookmark* record = BookmarkAt(*document, 2);
    for (int round = 1; round <= 3; ++round) {
        record->name = "Round" + QByteArray::number(round);
        AddBookmark(*document, 0, "new", Dest(1, 1));
        QVERIFY(document->IsModified());
        QVERIFY(document->Save());
        QVERIFY(!document->IsModified());
        QCOMPARE(document->GetBookmarkRoot(), root);
        QCOMPARE(root->SubNode(2 + round), row);
        QCOMPARE(static_cast<G_NodeData*>(record), row->data);
        QCOMPARE(Listed(*Open(path)), Listed(*document));
    }
}

void TestOfdBookmarks::savingUnderAnotherNameLeavesTheFirstFileAlone()
{
    const QString path = OfdFile::WithPages(3).Tail(ThreeBookmarks).Write(Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = Open(path);
    BookmarkAt(*document, 0)->name = "renamed";
    const QString copy = Path(QStringLiteral("b.ofd"));
    QVERIFY(document->SaveAs(copy));
    QCOMPARE(BytesOf(path), before);
    QCOMPARE(Listed(*Open(copy)), Listed(*document));
    QCOMPARE(GQ_ToQStringFromUtf8(document->GetDocumentKey()), QFileInfo(copy).canonicalFilePath());
    BookmarkAt(*document, 0)->name = "again";
    QVERIFY(document->Save()); // goes to the new file
    QCOMPARE(BytesOf(path), before);
    QVERIFY(Listed(*Open(copy)).startsWith(QStringLiteral("again ")));
}

void TestOfdBookmarks::aFileChangedByOthersIsNotOverwritten()
{
    const OfdFile file = OfdFile::WithPages(3).Tail(ThreeBookmarks);
    const QString path = file.Write(Path(QStringLiteral("a.ofd")));
    const auto document = Open(path);
    BookmarkAt(*document, 0)->name = "mine";
    QVERIFY(!document->IsChangedOnDisk());
    QVERIFY(QFile::remove(path));
    OfdFile::WithPages(1).Write(path);
    const QByteArray theirs = BytesOf(path);
    QVERIFY(document->IsChangedOnDisk());
    const ofd::DocumentSaveResult refused = document->Save();
    QVERIFY(!refused);
    QVERIFY(refused.isForeignChange);
    QVERIFY(!refused.error.isEmpty());
    QCOMPARE(BytesOf(path), theirs);
    QVERIFY(document->IsModified());
    QVERIFY(document->Save(true)); // after asking
    QVERIFY(Listed(*Open(path)).startsWith(QStringLiteral("mine ")));
    QVERIFY(!document->IsChangedOnDisk());
}

void TestOfdBookmarks::aRemovedFileIsTold()
{
    const QString path = OfdFile::WithPages(1).Write(Path(QStringLiteral("a.ofd")));
    const auto document = Open(path);
    AddBookmark(*document, 0, "new", Dest(1, 1));
    QVERIFY(QFile::remove(path));
    const ofd::DocumentSaveResult result = document->Save();
    QVERIFY(!result);
    QVERIFY(result.isForeignChange);
    QVERIFY(!QFile::exists(path));
    QVERIFY(document->Save(true));
    QCOMPARE(Open(path)->GetBookmarkRoot()->SubNodeCount(), 1);
}

void TestOfdBookmarks::aFolderThatIsGoneIsTold()
{
    const QString path = OfdFile::WithPages(1).Write(Path(QStringLiteral("a.ofd")));
    const auto document = Open(path);
    AddBookmark(*document, 0, "new", Dest(1, 1));
    const ofd::DocumentSaveResult result = document->SaveAs(Path(QStringLiteral("no/such/folder/b.ofd")));
    QVERIFY(!result);
    QVERIFY(!result.error.isEmpty());
    QVERIFY(document->IsModified());
    QCOMPARE(GQ_ToQStringFromUtf8(document->GetDocumentKey()), QFileInfo(path).canonicalFilePath());
    QVERIFY(document->Save());
}

void TestOfdBookmarks::aReadOnlyDocumentIsNotSavedOverItself()
{
    const QString path = OfdFile::WithPages(1).Write(Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    ofd::OpenResult opened = ofd::OfdDocument::Open(path, true);
    QVERIFY(opened);
    QVERIFY(opened.document->IsReadOnly());
    AddBookmark(*opened.document, 0, "new", Dest(1, 1));
    QVERIFY(!opened.document->Save());
    QCOMPARE(BytesOf(path), before);
    QVERIFY(opened.document->SaveAs(Path(QStringLiteral("b.ofd"))));
    QVERIFY(!opened.document->IsReadOnly());
}

void TestOfdBookmarks::theDateOfTheLastChangeFollows()
{
    OfdFile file = OfdFile::WithPages(1);
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocInfo>", "<ofd:ModDate>2001-02-03</ofd:ModDate></ofd:DocInfo>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    SavedPart([](IG_Document& document) { AddBookmark(document, 0, "new", Dest(1, 1)); }, file);
    const QByteArray saved = PartOf(Path(QStringLiteral("edited.ofd")), QStringLiteral("OFD.xml"));
    entry.replace("2001-02-03", QDate::currentDate().toString(Qt::ISODate).toUtf8());
    QCOMPARE(saved, entry);
}

void TestOfdBookmarks::otherPartsKeepTheirBytes()
{
    const OfdFile file = OfdFile::WithPages(3)
                             .Tail(ThreeBookmarks)
                             .Set(QStringLiteral("Unknown/part.bin"), QByteArray("\x00\x01\x02", 3));
    SavedPart([](IG_Document& document) { BookmarkAt(document, 0)->name = "other"; }, file);
    const std::unique_ptr<ofd::Package> saved = ofd::Package::Open(Path(QStringLiteral("edited.ofd")));
    const QStringList names = saved->GetPartNames();
    QCOMPARE(names.size(), 6);
    for (const QString& name : names) {
        if (name != DocumentPart)
            QCOMPARE(saved->Read(name).bytes, file.Part(name));
    }
}

TETO_TEST_MAIN(TestOfdBookmarks)

#include "test_ofd_bookmarks.moc"
