#include "reader_desk.h"

#include <tests/support/test_main.h>

#include <frame/document/ig_document.h>
#include <frame/navigation/navigation_page.h>
#include <frame/view/doc_view.h>

#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QTimer>
#include <QTreeWidget>
#include <QUndoStack>
#include <QtTest>

// Tabs: dirty or clean, saved or not, closed with or without a question, changed behind the reader's back.
class TestReaderTabs : public QObject
{
    Q_OBJECT
private slots:
    void aChangeMakesTheTabDirtyAndUndoMakesItClean();
    void savingMakesTheTabCleanAndUndoDirtyAgain();
    void aSavedBookmarkIsThereAfterReopening();
    void closingADirtyTabAsksAndCancelKeepsIt();
    void closingADirtyTabWithDiscardLosesTheChangeOnly();
    void aClosedTabLeavesNoPageViewBehind();
    void closingADirtyTabWithSaveSaves();
    void saveAsLeavesTheOriginalAlone();
    void aSaveThatBreaksSignaturesAsksOnceADocument();
    void insteadOfBreakingSignaturesACopyIsSaved();
    void undoActsOnTheCurrentTabOnly();
    void aFileThatVanishesWhileOpenIsToldAndSavingRefuses();
    void aFileReplacedByAnotherProgramIsNotOverwrittenWithoutAQuestion();
    void closingATabWhileItsEditorIsOpenIsSafe();
    void filesFromOutsideAndClosingWaitForAModalWindow();
    void eachTabHasPanesOfItsOwn();

private:
    static bool AddBookmark(ReaderDesk& desk)
    {
        return desk.WaitForPanes() && desk.Context()->PerformOperation("d_addbookmark", QString());
    }
    static int BookmarkCount(ReaderDesk& desk)
    {
        G_TreeNode* root = desk.View()->GDocument()->GetBookmarkRoot();
        return root ? root->SubNodeCount() : 0;
    }
    static QByteArray Bytes(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static std::vector<G_Bookmark> Bookmarks(ReaderDesk& desk)
    {
        std::vector<G_Bookmark> bookmarks;
        G_TreeNode* root = desk.View()->GDocument()->GetBookmarkRoot();
        for (int i = 0; root && i < root->SubNodeCount(); ++i)
            bookmarks.emplace_back(*dynamic_cast<G_Bookmark*>(root->SubNode(i)->data));
        return bookmarks;
    }
    // The file keeps what the zoom mode uses, with four decimals.
    static bool IsSamePlace(const G_Dest& a, const G_Dest& b)
    {
        const auto isNear = [](float x, float y) { return qAbs(x - y) < 0.0002F; };
        const bool usesTop = a.zoomMode == 0 || a.zoomMode == 2 || a.zoomMode == 4;
        return a.pageId == b.pageId && a.pageIndex == b.pageIndex && a.zoomMode == b.zoomMode &&
               (!usesTop || isNear(a.top, b.top)) && (a.zoomMode != 0 || isNear(a.zoom, b.zoom));
    }
    static void Settle() { QTest::qWait(20); }
};

void TestReaderTabs::aChangeMakesTheTabDirtyAndUndoMakesItClean()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    DocumentTab* tab = desk.Window()->CurrentTab();
    QVERIFY(!tab->IsDirty());
    QVERIFY(AddBookmark(desk));
    Settle();
    QVERIFY(tab->IsDirty());
    QVERIFY(tab->Label().startsWith('*'));
    desk.View()->UndoStack()->undo();
    Settle();
    QVERIFY(!tab->IsDirty());
}

void TestReaderTabs::savingMakesTheTabCleanAndUndoDirtyAgain()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    DocumentTab* tab = desk.Window()->CurrentTab();
    QVERIFY(AddBookmark(desk));
    QVERIFY(desk.Window()->SaveTab(tab));
    Settle();
    QVERIFY(!tab->IsDirty());
    desk.View()->UndoStack()->undo();
    Settle();
    QVERIFY(tab->IsDirty());
}

void TestReaderTabs::aSavedBookmarkIsThereAfterReopening()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(AddBookmark(desk));
    const std::vector<G_Bookmark> before = Bookmarks(desk);
    QVERIFY(desk.Window()->SaveTab(desk.Window()->CurrentTab()));
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->OpenFile(path));
    const std::vector<G_Bookmark> after = Bookmarks(desk);
    QCOMPARE(after.size(), before.size());
    for (size_t i = 0; i < before.size(); ++i) {
        QCOMPARE(after.at(i).name.Bytes(), before.at(i).name.Bytes());
        QVERIFY(IsSamePlace(*after.at(i).dest, *before.at(i).dest));
    }
}

void TestReaderTabs::closingADirtyTabAsksAndCancelKeepsIt()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(AddBookmark(desk));
    desk.Context()->Answer(QMessageBox::Cancel);
    QVERIFY(!desk.Window()->CloseTab(0));
    QCOMPARE(desk.Window()->TabCount(), 1);
    QCOMPARE(desk.Context()->PendingAnswers(), 0);
}

void TestReaderTabs::closingADirtyTabWithDiscardLosesTheChangeOnly()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    const QByteArray before = Bytes(path);
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(AddBookmark(desk));
    desk.Context()->Answer(QMessageBox::Discard);
    QVERIFY(desk.Window()->CloseTab(0));
    QCOMPARE(desk.Window()->TabCount(), 0);
    QCOMPARE(Bytes(path), before);
}

void TestReaderTabs::aClosedTabLeavesNoPageViewBehind()
{
    ReaderDesk desk(false);
    const auto pageViews = [&desk] { return desk.Window()->findChildren<QWidget*>(QStringLiteral("pageView")).size(); };
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QCOMPARE(pageViews(), 1);
    QVERIFY(desk.Window()->CloseTab(0));
    QTRY_COMPARE(pageViews(), 0);
}

void TestReaderTabs::closingADirtyTabWithSaveSaves()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    QVERIFY(desk.Window()->OpenFile(path));
    const int count = BookmarkCount(desk);
    QVERIFY(AddBookmark(desk));
    desk.Context()->Answer(QMessageBox::Save);
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->OpenFile(path));
    QCOMPARE(BookmarkCount(desk), count + 1);
}

void TestReaderTabs::saveAsLeavesTheOriginalAlone()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    const QByteArray before = Bytes(path);
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(AddBookmark(desk));
    const QString copy = desk.Folder() + "/copy.ofd";
    QVERIFY(desk.Window()->SaveTabAs(desk.Window()->CurrentTab(), copy));
    QCOMPARE(Bytes(path), before);
    QCOMPARE(desk.Window()->CurrentTab()->Path(), copy);
    QCOMPARE(QString::fromUtf8(desk.View()->GDocument()->GetDocumentKey().Bytes()), copy);
}

void TestReaderTabs::aSaveThatBreaksSignaturesAsksOnceADocument()
{
    ReaderDesk desk;
    const QString maker = qEnvironmentVariable("TETO_BIN") + "/make_samples";
    QCOMPARE(QProcess::execute(maker, {desk.Folder(), "deviations"}), 0);
    const QString path = desk.Folder() + "/deviations/signed.ofd";
    const QByteArray before = Bytes(path);
    QVERIFY(desk.Window()->OpenFile(path));
    DocumentTab* tab = desk.Window()->CurrentTab();
    QVERIFY(desk.Window()->SaveTab(tab)); // nothing changes, so nothing is asked
    QVERIFY(AddBookmark(desk));
    Settle();
    desk.Context()->Answer(QMessageBox::Cancel);
    QVERIFY(!desk.Window()->SaveTab(tab));
    QCOMPARE(desk.Context()->Texts().last(), "The document is signed. Saving will make its signatures invalid.");
    QVERIFY(tab->IsDirty());
    desk.Context()->Answer(QMessageBox::Cancel);
    QVERIFY(!desk.Window()->SaveTabAs(tab, desk.Folder() + "/copy.ofd"));
    QCOMPARE(Bytes(path), before);
    QVERIFY(!QFile::exists(desk.Folder() + "/copy.ofd"));
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(desk.Window()->SaveTab(tab));
    QVERIFY(Bytes(path) != before);
    QVERIFY(AddBookmark(desk));
    QVERIFY(desk.Window()->SaveTab(tab)); // not asked again
    QCOMPARE(desk.Context()->PendingAnswers(), 0);
}

void TestReaderTabs::insteadOfBreakingSignaturesACopyIsSaved()
{
    ReaderDesk desk;
    const QString maker = qEnvironmentVariable("TETO_BIN") + "/make_samples";
    QCOMPARE(QProcess::execute(maker, {desk.Folder(), "deviations"}), 0);
    const QString path = desk.Folder() + "/deviations/signed.ofd";
    const QString copy = desk.Folder() + "/copy.ofd";
    const QByteArray before = Bytes(path);
    QVERIFY(desk.Window()->OpenFile(path));
    DocumentTab* tab = desk.Window()->CurrentTab();
    QVERIFY(AddBookmark(desk));
    Settle();
    desk.Context()->UseRealFileDialog();
    QTimer chooser; // answers the dialog that asks for a name
    connect(&chooser, &QTimer::timeout, this, [&copy] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(copy);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    chooser.start(20);
    desk.Context()->Answer(QMessageBox::Save);
    QVERIFY(desk.Window()->SaveTab(tab));
    QCOMPARE(desk.Context()->PendingAnswers(), 0);
    QCOMPARE(Bytes(path), before);
    QVERIFY(QFile::exists(copy));
    QVERIFY(!tab->IsDirty());
    QCOMPARE(QFileInfo(tab->Path()), QFileInfo(copy)); // what is edited from now on is the copy
    QVERIFY(desk.View()->GDocument()->IsSignProtected());
}

void TestReaderTabs::undoActsOnTheCurrentTabOnly()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(AddBookmark(desk));
    const int first = BookmarkCount(desk);
    QVERIFY(desk.Window()->OpenFile(desk.Sample("letter.ofd")));
    QVERIFY(AddBookmark(desk));
    const int second = BookmarkCount(desk);
    desk.View()->Widget()->setFocus();
    QTest::keyClick(desk.Window(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(BookmarkCount(desk), second - 1);
    desk.Window()->ActivateTab(0);
    QCOMPARE(BookmarkCount(desk), first);
    desk.Context()->Answer(QMessageBox::Discard);
    QVERIFY(desk.Window()->CloseTab(0));
}

void TestReaderTabs::aFileThatVanishesWhileOpenIsToldAndSavingRefuses()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    QVERIFY(desk.Window()->OpenFile(path));
    DocumentTab* tab = desk.Window()->CurrentTab();
    QSignalSpy changed(tab, &DocumentTab::FileChangedOnDisk);
    QVERIFY(AddBookmark(desk));
    QVERIFY(QFile::remove(path));
    QVERIFY(changed.wait(5000));
    desk.Context()->Answer(QMessageBox::Cancel); // overwrite what is not there any more? no
    QVERIFY(!desk.Window()->SaveTab(tab));
    QVERIFY(!QFile::exists(path));
    QVERIFY(tab->IsDirty());
    desk.View()->GoToPage(desk.View(), 1, CCA_GRect(), false); // the document lives on
    QCOMPARE(desk.View()->CurrentPageIndex(), 1);
}

void TestReaderTabs::aFileReplacedByAnotherProgramIsNotOverwrittenWithoutAQuestion()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(AddBookmark(desk));
    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::copy(desk.Sample("letter.ofd"), path));
    const QByteArray foreign = Bytes(path);
    desk.Context()->Answer(QMessageBox::Cancel);
    QVERIFY(!desk.Window()->SaveTab(desk.Window()->CurrentTab()));
    QCOMPARE(Bytes(path), foreign);
}

void TestReaderTabs::closingATabWhileItsEditorIsOpenIsSafe()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(AddBookmark(desk)); // leaves the editor of the new row open
    desk.Context()->Answer(QMessageBox::Discard);
    QVERIFY(desk.Window()->CloseTab(0));
    Settle();
    QCOMPARE(desk.Window()->TabCount(), 0);
}

void TestReaderTabs::filesFromOutsideAndClosingWaitForAModalWindow()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    const QString other = desk.Sample("letter.ofd");
    const DocumentTab* first = desk.Window()->CurrentTab();
    QDialog question(desk.Window());
    question.setModal(true);
    question.show();
    desk.Window()->OpenWhenFree({other});
    QVERIFY(!desk.Window()->CloseTab(0));
    QTest::qWait(300);
    QCOMPARE(desk.Window()->TabCount(), 1);
    QCOMPARE(desk.Window()->CurrentTab(), first);
    question.close();
    QTRY_COMPARE(desk.Window()->TabCount(), 2);
    QVERIFY(desk.Window()->CloseTab(1));
    desk.Window()->OpenWhenFree({other});
    QCOMPARE(desk.Window()->TabCount(), 2); // at once
}

void TestReaderTabs::eachTabHasPanesOfItsOwn()
{
    ReaderDesk desk;
    QVERIFY(desk.Window()->OpenFile(desk.Sample("tour.ofd")));
    QVERIFY(desk.WaitForPanes());
    IG_Document* first = desk.View()->GDocument();
    QVERIFY(desk.Window()->OpenFile(desk.Sample("letter.ofd")));
    QVERIFY(desk.WaitForPanes());
    IG_Document* second = desk.View()->GDocument();
    const QList<Core::G_NavigationPage*> pages = Core::G_NavigationPage::allNaviPages();
    QVERIFY(!pages.isEmpty());
    for (const Core::G_NavigationPage* page : pages) {
        QVERIFY(page->WidgetFor(first));
        QVERIFY(page->WidgetFor(first) != page->WidgetFor(second));
    }
    desk.Window()->CloseTab(1);
    for (const Core::G_NavigationPage* page : pages) {
        QVERIFY(page->WidgetFor(first));
        QVERIFY(!page->WidgetFor(second));
    }
}

TETO_TEST_MAIN(TestReaderTabs)
#include "test_reader_tabs.moc"
