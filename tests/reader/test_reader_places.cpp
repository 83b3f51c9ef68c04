#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>

#include <reader/status_panel.h>
#include <reader/view_history.h>

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>
#include <frame/view/settings.h>

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabBar>
#include <QUndoStack>
#include <QtTest>

namespace {

QAction* ActionOf(MainWindow* window, const QKeySequence& keys)
{
    const QList<QAction*> actions = window->actions();
    for (QAction* action : actions) {
        if (action->shortcuts().contains(keys))
            return action;
    }
    return nullptr;
}

// One that is seen; null when there is none.
QPushButton* ButtonOf(const MainWindow* window, const QString& text)
{
    const QList<QPushButton*> buttons = window->findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->isVisible() && button->text() == text)
            return button;
    }
    return nullptr;
}

// Long enough that every page has a place of its own.
QString LongFile(ReaderDesk& desk, const QString& name = QStringLiteral("long.ofd"))
{
    return OfdFile::WithPages(40).Write(desk.Folder() + QLatin1Char('/') + name);
}

void Jump(G_DocView* view, int page)
{
    view->GoToPage(nullptr, page, CCA_GRect(), false);
}

} // namespace

// Where one is in a document and how one comes back there; what the window remembers.
class TestReaderPlaces : public QObject
{
    Q_OBJECT
private slots:
    void backAndForwardFollowTheJumps();
    void backReturnsToThePlaceOnThePage();
    void steppingFromPageToPageIsNoJump();
    void aJumpForgetsWhatLaidAhead();
    void jumpsToWhereOneIsArePassedOver();
    void backOfOneTabLeavesTheOtherAlone();
    void aDocumentOpensWhereItWasLeft();
    void twoPagesSideBySideComeBackToo();
    void aDocumentThatLostItsPagesOpensAtItsBeginning();
    void theWindowComesBackWithItsSizeAndPane();
    void fullScreenHidesTheBarsAndEscapeBringsThemBack();
    void keysWorkInFullScreen();
    void aPageNumberIsTypedWithTheKeyboardAlone();
    void tabsAreChosenInTurnByKeys();
    void reloadingKeepsTheTabsPlaceAndThePage();
    void reloadingAsksBeforeItDiscardsChanges();
    void theButtonThatReloadsAsksBeforeItDiscardsChanges();
    void aDocumentThatWasOpenedReadOnlyStaysSoWhenItIsReloaded();
    void aChangeOfAFileIsToldWhenItsTabComesToTheFront();
    void aChangeOfAFileIsToldUntilTheUserSeesToIt();
    void aFileThatIsReplacedAgainIsToldAgain();
    void aFileThatCannotBeReloadedKeepsItsTab();
    void aCopyLeavesTheTabAtItsFile();
    void aCopyOverTheDocumentItselfIsRefused();
    void rotatingRightAndLeftReturns();
};

void TestReaderPlaces::backAndForwardFollowTheJumps()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    QAction* back = ActionOf(desk.Window(), QKeySequence(Qt::ALT | Qt::Key_Left));
    QAction* forward = ActionOf(desk.Window(), QKeySequence(Qt::ALT | Qt::Key_Right));
    QVERIFY(back && forward);
    QVERIFY(!back->isEnabled() && !forward->isEnabled());
    Jump(desk.View(), 10);
    Jump(desk.View(), 20);
    QVERIFY(back->isEnabled() && !forward->isEnabled());
    QTest::keyClick(desk.Window(), Qt::Key_Left, Qt::AltModifier);
    QCOMPARE(desk.View()->CurrentPageIndex(), 10);
    back->trigger();
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
    QVERIFY(!back->isEnabled());
    forward->trigger();
    forward->trigger();
    QCOMPARE(desk.View()->CurrentPageIndex(), 20);
    QVERIFY(!forward->isEnabled());
}

void TestReaderPlaces::backReturnsToThePlaceOnThePage()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    Jump(desk.View(), 3);
    desk.View()->ScrollBy(0, 137);
    const QRect seen = desk.View()->VisibleSceneRect();
    Jump(desk.View(), 30);
    desk.Window()->CurrentTab()->History()->GoBack();
    QVERIFY(qAbs(desk.View()->VisibleSceneRect().top() - seen.top()) <= 1);
}

void TestReaderPlaces::steppingFromPageToPageIsNoJump()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    desk.View()->NextPage();
    desk.View()->NextPage();
    desk.View()->PreviousPage();
    desk.View()->ScrollBy(0, 3000);
    QVERIFY(!desk.Window()->CurrentTab()->History()->CanGoBack());
}

void TestReaderPlaces::aJumpForgetsWhatLaidAhead()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    ViewHistory* history = desk.Window()->CurrentTab()->History();
    Jump(desk.View(), 10);
    history->GoBack();
    QVERIFY(history->CanGoForward());
    Jump(desk.View(), 5);
    QVERIFY(!history->CanGoForward());
    history->GoForward();
    QCOMPARE(desk.View()->CurrentPageIndex(), 5);
}

void TestReaderPlaces::jumpsToWhereOneIsArePassedOver()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    for (int i = 0; i < 4; ++i)
        Jump(desk.View(), 10);
    desk.Window()->CurrentTab()->History()->GoBack();
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
}

void TestReaderPlaces::backOfOneTabLeavesTheOtherAlone()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    Jump(desk.View(), 10);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk, "other.ofd")));
    QAction* back = ActionOf(desk.Window(), QKeySequence(Qt::ALT | Qt::Key_Left));
    QVERIFY(!back->isEnabled());
    desk.Window()->ActivateTab(0);
    QVERIFY(back->isEnabled());
}

void TestReaderPlaces::aDocumentOpensWhereItWasLeft()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    desk.View()->SetRotation(90);
    desk.View()->SetZoom(70, false);
    Jump(desk.View(), 17);
    desk.View()->ScrollBy(0, 50);
    const int top = desk.View()->VisibleSceneRect().top();
    const int page = desk.View()->CurrentPageIndex();
    QVERIFY(page > 0);
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->OpenFile(path));
    QCOMPARE(desk.View()->CurrentPageIndex(), page);
    QCOMPARE(desk.View()->Rotation(), 90);
    QCOMPARE(desk.View()->GetZoom(), 70.0F);
    QVERIFY(qAbs(desk.View()->VisibleSceneRect().top() - top) <= 1);
    QVERIFY(!desk.Window()->CurrentTab()->IsDirty());
}

void TestReaderPlaces::twoPagesSideBySideComeBackToo()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    QAction* twoPages = ActionOf(desk.Window(), QKeySequence(Qt::CTRL | Qt::Key_4));
    QVERIFY(twoPages && !twoPages->isChecked());
    twoPages->trigger();
    QVERIFY(twoPages->isChecked() && desk.View()->HasTwoPages());
    QVERIFY(desk.Window()->OpenFile(LongFile(desk, "other.ofd")));
    QVERIFY(!twoPages->isChecked());
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(twoPages->isChecked() && desk.View()->HasTwoPages());
    twoPages->trigger();
    QVERIFY(!desk.View()->HasTwoPages());
}

void TestReaderPlaces::aDocumentThatLostItsPagesOpensAtItsBeginning()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    Jump(desk.View(), 17);
    QVERIFY(desk.Window()->CloseTab(0));
    OfdFile::WithPages(2).Write(path);
    QVERIFY(desk.Window()->OpenFile(path));
    QCOMPARE(desk.View()->CurrentPageIndex(), 0);
}

void TestReaderPlaces::theWindowComesBackWithItsSizeAndPane()
{
    ReaderDesk desk;
    MainWindow* window = desk.Window();
    window->resize(900, 610);
    QVERIFY(window->ShowPane("ui.navis.bookmark", true));
    QVERIFY(window->close());
    window->resize(700, 500);
    window->ShowPane("ui.navis.bookmark", false);
    window->RestoreWindow();
    window->show();
    QCOMPARE(window->size(), QSize(900, 610));
    QCOMPARE(window->CurrentPaneId(), QString("ui.navis.bookmark"));
}

void TestReaderPlaces::fullScreenHidesTheBarsAndEscapeBringsThemBack()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    QTest::keyClick(desk.Window(), Qt::Key_F11);
    QVERIFY(desk.Window()->isFullScreen());
    QVERIFY(!desk.Window()->menuBar()->isVisible());
    QVERIFY(!desk.Window()->statusBar()->isVisible());
    QVERIFY(!desk.Window()->findChild<QTabBar*>()->isVisible());
    QTest::keyClick(desk.View()->Widget(), Qt::Key_Escape);
    QVERIFY(!desk.Window()->isFullScreen());
    QVERIFY(desk.Window()->menuBar()->isVisible());
    QVERIFY(desk.Window()->statusBar()->isVisible());
    QVERIFY(desk.Window()->findChild<QTabBar*>()->isVisible());
}

void TestReaderPlaces::keysWorkInFullScreen()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    QTest::keyClick(desk.Window(), Qt::Key_F11);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(desk.View()->CurrentPageIndex(), 39);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_F11);
    QVERIFY(!desk.Window()->isFullScreen());
}

void TestReaderPlaces::aPageNumberIsTypedWithTheKeyboardAlone()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    QTest::keyClick(desk.View()->Widget(), Qt::Key_G, Qt::ControlModifier);
    auto* box = desk.Window()->findChild<StatusPanel*>()->findChild<QSpinBox*>();
    QCOMPARE(QApplication::focusWidget(), box);
    QTest::keyClicks(box, "23");
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(desk.View()->CurrentPageIndex(), 22);
    QTRY_COMPARE(QApplication::focusWidget(), desk.View()->Widget());
}

void TestReaderPlaces::tabsAreChosenInTurnByKeys()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    for (const char* name : {"a.ofd", "b.ofd", "c.ofd"})
        QVERIFY(desk.Window()->OpenFile(LongFile(desk, name)));
    QTest::keyClick(desk.View()->Widget(), Qt::Key_Tab, Qt::ControlModifier);
    QVERIFY(desk.Window()->CurrentTab()->Path().endsWith("a.ofd"));
    QTest::keyClick(desk.View()->Widget(), Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(desk.Window()->CurrentTab()->Path().endsWith("c.ofd"));
}

void TestReaderPlaces::reloadingKeepsTheTabsPlaceAndThePage()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk, "other.ofd")));
    desk.Window()->ActivateTab(0);
    Jump(desk.View(), 25);
    OfdFile::WithPages(50).Write(path);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_F5);
    QCOMPARE(desk.Window()->TabCount(), 2);
    QCOMPARE(desk.Window()->TabAt(0), desk.Window()->CurrentTab());
    QCOMPARE(desk.Window()->CurrentTab()->Path(), path);
    QCOMPARE(desk.View()->GDocument()->GetPageCount(), 50);
    QCOMPARE(desk.View()->CurrentPageIndex(), 25);
}

void TestReaderPlaces::reloadingAsksBeforeItDiscardsChanges()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    desk.View()->UndoStack()->push(new QUndoCommand);
    const DocumentTab* tab = desk.Window()->CurrentTab();
    QVERIFY(tab->IsDirty());
    desk.Context()->Answer(QMessageBox::Cancel);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_F5);
    QCOMPARE(desk.Window()->CurrentTab(), tab);
    QVERIFY(tab->IsDirty());
    desk.Context()->Answer(QMessageBox::Discard);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_F5);
    QCOMPARE(desk.Window()->TabCount(), 1);
    QVERIFY(!desk.Window()->CurrentTab()->IsDirty());
}

void TestReaderPlaces::theButtonThatReloadsAsksBeforeItDiscardsChanges()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    const QPointer<DocumentTab> tab = desk.Window()->CurrentTab();
    desk.View()->UndoStack()->push(new QUndoCommand);
    OfdFile::WithPages(50).Write(path);
    QTRY_VERIFY(ButtonOf(desk.Window(), "Reload"));
    desk.Context()->Answer(QMessageBox::Cancel);
    ButtonOf(desk.Window(), "Reload")->click();
    QTRY_COMPARE(desk.Context()->PendingAnswers(), 0);
    QCOMPARE(desk.Window()->CurrentTab(), tab.data());
    QVERIFY(tab->IsDirty());
    desk.Context()->Answer(QMessageBox::Discard);
    ButtonOf(desk.Window(), "Reload")->click();
    QTRY_VERIFY(!tab);
    QCOMPARE(desk.View()->GDocument()->GetPageCount(), 50);
    QVERIFY(!ButtonOf(desk.Window(), "Reload"));
}

void TestReaderPlaces::aDocumentThatWasOpenedReadOnlyStaysSoWhenItIsReloaded()
{
    ReaderDesk desk(false);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk), true));
    QVERIFY(desk.Window()->ReloadTab(desk.Window()->CurrentTab()));
    QVERIFY(desk.Window()->ReloadTab(desk.Window()->CurrentTab()));
    QVERIFY(desk.View()->GDocument()->IsReadOnly());
    QVERIFY(desk.Window()->OpenFile(LongFile(desk, "other.ofd")));
    QVERIFY(desk.Window()->ReloadTab(desk.Window()->CurrentTab()));
    QVERIFY(!desk.View()->GDocument()->IsReadOnly());
}

void TestReaderPlaces::aChangeOfAFileIsToldWhenItsTabComesToTheFront()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    QSignalSpy changed(desk.Window()->CurrentTab(), &DocumentTab::FileChangedOnDisk);
    QVERIFY(desk.Window()->OpenFile(LongFile(desk, "other.ofd")));
    OfdFile::WithPages(50).Write(path);
    QTRY_VERIFY(!changed.isEmpty());
    QVERIFY(!ButtonOf(desk.Window(), "Reload"));
    desk.Window()->ActivateTab(0);
    QVERIFY(ButtonOf(desk.Window(), "Reload"));
    ButtonOf(desk.Window(), "Ignore")->click();
    desk.Window()->ActivateTab(1);
    desk.Window()->ActivateTab(0);
    QVERIFY(!ButtonOf(desk.Window(), "Reload"));
}

void TestReaderPlaces::aChangeOfAFileIsToldUntilTheUserSeesToIt()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk, "other.ofd")));
    desk.Window()->ActivateTab(0);
    OfdFile::WithPages(50).Write(path);
    QTRY_VERIFY(ButtonOf(desk.Window(), "Reload"));
    desk.Window()->ActivateTab(1);
    QVERIFY(!ButtonOf(desk.Window(), "Reload"));
    desk.Window()->ActivateTab(0);
    QVERIFY(ButtonOf(desk.Window(), "Reload"));
    const QString copy = desk.Folder() + "/copy.ofd";
    QVERIFY(desk.Window()->SaveTabAs(desk.Window()->CurrentTab(), copy)); // its file is another one now
    QVERIFY(!ButtonOf(desk.Window(), "Reload"));
    desk.Window()->ActivateTab(1);
    desk.Window()->ActivateTab(0);
    QVERIFY(!ButtonOf(desk.Window(), "Reload"));
}

void TestReaderPlaces::aFileThatIsReplacedAgainIsToldAgain()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    QSignalSpy changed(desk.Window()->CurrentTab(), &DocumentTab::FileChangedOnDisk);
    for (int pages = 50; pages < 53; ++pages) {
        QVERIFY(QFile::remove(path)); // as programs do that write a file anew
        OfdFile::WithPages(pages).Write(path);
        QTRY_COMPARE(changed.size(), pages - 49);
        QVERIFY(ButtonOf(desk.Window(), "Reload")); // never told to be gone
        ButtonOf(desk.Window(), "Ignore")->click();
        QVERIFY(!ButtonOf(desk.Window(), "Ignore"));
    }
}

void TestReaderPlaces::aFileThatCannotBeReloadedKeepsItsTab()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    QVERIFY(desk.Window()->OpenFile(path));
    DocumentTab* tab = desk.Window()->CurrentTab();
    QVERIFY(QFile::rename(path, path + ".away"));
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(!desk.Window()->ReloadTab(tab));
    QCOMPARE(desk.Window()->CurrentTab(), tab);
    QVERIFY(desk.Context()->Texts().first().contains("does not exist"));
}

void TestReaderPlaces::aCopyLeavesTheTabAtItsFile()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    const QString copy = desk.Folder() + "/copy.ofd";
    const QByteArray before = BytesOf(path);
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(desk.WaitForPanes());
    QVERIFY(desk.Context()->PerformOperation("d_addbookmark", QString()));
    QTRY_VERIFY(desk.Window()->CurrentTab()->IsDirty());
    QVERIFY(desk.Window()->SaveTabCopy(desk.Window()->CurrentTab(), copy));
    QCOMPARE(desk.Window()->CurrentTab()->Path(), path);
    QVERIFY(desk.Window()->CurrentTab()->IsDirty());
    QCOMPARE(BytesOf(path), before);
    const int bookmarks = desk.View()->GDocument()->GetBookmarkRoot()->SubNodeCount();
    QVERIFY(desk.Window()->OpenFile(copy));
    QCOMPARE(desk.View()->GDocument()->GetBookmarkRoot()->SubNodeCount(), bookmarks);
    desk.Window()->ActivateTab(0);
    desk.View()->UndoStack()->setClean();
}

void TestReaderPlaces::aCopyOverTheDocumentItselfIsRefused()
{
    ReaderDesk desk(false);
    const QString path = LongFile(desk);
    const QByteArray before = BytesOf(path);
    QVERIFY(desk.Window()->OpenFile(path));
    desk.Context()->Answer(QMessageBox::Ok);
    QVERIFY(!desk.Window()->SaveTabCopy(desk.Window()->CurrentTab(), path));
    QCOMPARE(BytesOf(path), before);
}

void TestReaderPlaces::rotatingRightAndLeftReturns()
{
    ReaderDesk desk(false);
    QVERIFY(QTest::qWaitForWindowActive(desk.Window()));
    QVERIFY(desk.Window()->OpenFile(LongFile(desk)));
    QTest::keyClick(desk.View()->Widget(), Qt::Key_R, Qt::ControlModifier);
    QCOMPARE(desk.View()->Rotation(), 90);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(desk.View()->Rotation(), 0);
    QTest::keyClick(desk.View()->Widget(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(desk.View()->Rotation(), 270);
}

TETO_TEST_MAIN(TestReaderPlaces)
#include "test_reader_places.moc"
