#include "pane_desk.h"

#include <bookmark/bookmark_events.h>
#include <bookmark/bookmark_item.h>
#include <bookmark/bookmark_jump.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>
#include <frame/utils/dpi.h>
#include <frame/utils/no_content.h>
#include <frame/view/settings.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QUndoCommand>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int selectableAndEnabled = 33;
constexpr int editableToo = 35;

void Click(const DeskTab* tab, int row)
{
    QTest::mouseClick(tab->Tree()->viewport(), Qt::LeftButton, {}, tab->RowPoint(row));
}

void DoubleClick(const DeskTab* tab, int row)
{
    Click(tab, row);
    QTest::mouseDClick(tab->Tree()->viewport(), Qt::LeftButton, {}, tab->RowPoint(row));
}

// A document with one bookmark whose destination is given, on the second of three pages.
QString OneBookmark(const QString& destination)
{
    return QStringLiteral("page 210 297\npage 210 297\npage 210 297\nbookmark \"A\" page=2 %1\n").arg(destination);
}

int FlagBits(const DeskTab* tab, int row)
{
    return tab->Tree()->topLevelItem(row)->flags() & editableToo;
}

} // namespace

class TestBookmarkPane : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    // The list
    void rowsAnswerTheNameTheDestinationTheStoredNameAndTheTooltip();
    void onlyBlanksAreTrimmedAndANameOfBlanksIsShownEmpty();
    void whatIsSetOnARowStandsOverWhatTheBookmarkSays();
    void rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed_data();
    void rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed();
    void theListIsAFlatOneColumnListWithoutHeaderFrameOrIndentation();
    void aNodeWithoutABookmarkHasARowTooAndAClickOnItGoesNowhere();
    void theModelKeepsItsPromisesOverRefills();
    void aNullDocumentLeavesAnEmptyWidget();
    void aDocumentWithoutARootHasAnEmptyListAndAPicture();
    // Buttons
    void buttonsAreOnWhereEditingIsAllowedAndTheDeleteButtonNeedsRows_data();
    void buttonsAreOnWhereEditingIsAllowedAndTheDeleteButtonNeedsRows();
    void everyControlHasAnAccessibleNameAndTheButtonsTakeTheKeyboard();
    void theAddButtonAddsNamesAndOpensTheEditorOfTheNewRow();
    void theDeleteButtonDeletesTheSelectionAndTellsWhenThereIsNone();
    // Clicks
    void aClickOnAnotherPagesBookmarkDoesNotChangeTheSelectionWhenThePageChangeArrives();
    void pagingByHandSelectsTheFirstOfSeveralVisibleBookmarks();
    void aPageChangeOfAnotherDocumentSelectsNothing();
    void withKeepZoomOnlyThePageChanges();
    void withoutKeepZoomTheModeTheZoomAndTheEventFollowTheBookmark();
    void zoomIsTakenOverOnlyWithinItsRange_data();
    void zoomIsTakenOverOnlyWithinItsRange();
    void zoomModesMapToTheViewsModes_data();
    void zoomModesMapToTheViewsModes();
    void aPageIdWinsOverThePageIndex();
    // Refills
    void undoOfAnyEntryRebuildsTheListAndStillOpensThePendingRename();
    void theListGetsThePictureWithItsLastRowAndLosesItWithTheFirst();
    void thePictureIsPlacedAnewOnAResize();
    void aPageStructureChangeRefillsOnlyWhenThePaneIsShown();
    void onlyTheAdditionToThisDocumentMakesARow();
    void anAdditionWithoutARootLeavesTheSignalsBlockedUntilTheNextRefill();
    void aRefillKeepsTheCurrentRowAndThePlaceScrolledTo();
    void theDeleteButtonComesBackWithTheRows();
    // Menus and rename
    void theContextMenuNamesTheToolAndTheStateOfWordWrap();
    void noMenuOpensBesideARowOrWhereEditingIsNotAllowed_data();
    void noMenuOpensBesideARowOrWhereEditingIsNotAllowed();
    void aDoubleClickOpensTheEditorAndEnterRenames();
    void onAReadOnlyDocumentADoubleClickOpensNoEditor();
    void afterARenameTheRowGoesToTheBookmarksNewRecord();
    // Two documents
    void twoDocumentsHaveTheirOwnPanesInterceptorsAndStacks();
    void deletingActsOnTheCurrentDocumentOnly();
    void renamingResettingAndWrappingActOnTheCurrentDocumentOnly();
    void deletingAllAsksOnceAndActsOnTheCurrentDocumentOnly();
};

void TestBookmarkPane::init()
{
    Utils::OVDpi::Instance()->OverrideScale(1); // whatever screen this runs on
}

void TestBookmarkPane::cleanup()
{
    Utils::OVDpi::Instance()->OverrideScale(0);
}

void TestBookmarkPane::rowsAnswerTheNameTheDestinationTheStoredNameAndTheTooltip()
{
    PaneDesk desk(QStringLiteral("page 210 297\nbookmark \"  Chapter one \" page=1 rect=1,2,3,4 zoom=1.5 mode=0"));
    const DeskTab* tab = desk.First();
    const QTreeWidgetItem* item = tab->Tree()->topLevelItem(0);
    QCOMPARE(item->text(0), QStringLiteral("Chapter one"));
    QCOMPARE(item->data(2, Qt::UserRole).toString(), QStringLiteral("  Chapter one "));
    QCOMPARE(item->toolTip(0), QStringLiteral("  Chapter one "));
    const QVariant dest = item->data(0, Qt::UserRole);
    QCOMPARE(dest.userType(), qMetaTypeId<G_Dest*>());
    QCOMPARE(dest.value<G_Dest*>(), static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(0)->data)->dest);
}

void TestBookmarkPane::onlyBlanksAreTrimmedAndANameOfBlanksIsShownEmpty()
{
    PaneDesk desk(QStringLiteral("page 210 297\nbookmark \"   \" page=1\nbookmark \"a  b\" page=1\n"
                                 "bookmark \"\u00a0x\u3000\" page=1\nbookmark \" y\" page=1"));
    QCOMPARE(desk.First()->Rows(),
             (QStringList{QString(), QStringLiteral("a  b"), QStringLiteral("\u00a0x\u3000"), QStringLiteral("y")}));
}

void TestBookmarkPane::whatIsSetOnARowStandsOverWhatTheBookmarkSays()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    QTreeWidgetItem* item = desk.First()->Tree()->topLevelItem(0);
    qRegisterMetaType<QTreeWidgetItem*>("QTreeWidgetItem*");
    QSignalSpy changes(desk.First()->Tree(), &QTreeWidget::itemChanged);
    item->setText(0, QStringLiteral("A"));
    QCOMPARE(changes.count(), 0); // nothing new
    item->setText(0, QStringLiteral("B"));
    QCOMPARE(changes.count(), 1);
    item->setToolTip(0, QStringLiteral("tip"));
    G_Dest other;
    item->setData(0, Qt::UserRole, QVariant::fromValue(&other));
    item->setData(2, Qt::UserRole, QStringLiteral("stored"));
    QCOMPARE(item->text(0), QStringLiteral("B"));
    QCOMPARE(item->toolTip(0), QStringLiteral("tip"));
    QCOMPARE(item->data(0, Qt::UserRole).value<G_Dest*>(), &other);
    QCOMPARE(item->data(2, Qt::UserRole).toString(), QStringLiteral("stored"));
    const std::unique_ptr<QTreeWidgetItem> copy(item->clone());
    QCOMPARE(copy->text(0), QStringLiteral("B"));
    QCOMPARE(copy->data(2, Qt::UserRole).toString(), QStringLiteral("stored"));
}

void TestBookmarkPane::rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<int>("bits");
    QTest::newRow("plain") << QString() << editableToo;
    QTest::newRow("permissions that allow editing") << "rights edit=yes\n" << editableToo;
    QTest::newRow("permissions that forbid editing") << "rights edit=no\n" << selectableAndEnabled;
    QTest::newRow("read-only") << "readonly\n" << selectableAndEnabled;
}

void TestBookmarkPane::rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed()
{
    QFETCH(QString, state);
    QFETCH(int, bits);
    PaneDesk desk(state + DocumentWithBookmarks(2));
    QCOMPARE(FlagBits(desk.First(), 1), bits);
    QVERIFY(desk.First()->Tree()->topLevelItem(1)->flags() & Qt::ItemIsDragEnabled);
    desk.First()->pane->UpdateBookmark(0);
    QCOMPARE(FlagBits(desk.First(), 1), bits);
    QVERIFY(desk.First()->Tree()->topLevelItem(1)->flags() & Qt::ItemIsDragEnabled);
}

void TestBookmarkPane::theListIsAFlatOneColumnListWithoutHeaderFrameOrIndentation()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const CBookmarkTreeWidget* tree = desk.First()->Tree();
    QCOMPARE(tree->parentWidget(), static_cast<QWidget*>(desk.First()->pane));
    QCOMPARE(tree->selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(tree->columnCount(), 1);
    QVERIFY(tree->isHeaderHidden());
    QCOMPARE(tree->frameShape(), QFrame::NoFrame);
    QCOMPARE(tree->contextMenuPolicy(), Qt::CustomContextMenu);
    QCOMPARE(tree->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(tree->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QCOMPARE(tree->indentation(), 0);
    QCOMPARE(tree->dragDropMode(), QAbstractItemView::InternalMove);
}

void TestBookmarkPane::aNodeWithoutABookmarkHasARowTooAndAClickOnItGoesNowhere()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    QVERIFY(tab->document->GetBookmarkRoot()->AddSubNode(1, nullptr));
    tab->pane->UpdateBookmark(0);
    QCOMPARE(tab->Rows(), (QStringList{"A", QString(), "B"}));
    const int page = tab->view->CurrentPageIndex();
    Click(tab, 1);
    QCOMPARE(tab->view->CurrentPageIndex(), page);
}

void TestBookmarkPane::theModelKeepsItsPromisesOverRefills()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    const QAbstractItemModelTester tester(tab->Tree()->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    desk.Perform("d_addbookmark");
    tab->Select({0, 2});
    tab->pane->DelBookmark();
    tab->Stack()->undo();
    tab->Stack()->undo();
    tab->Stack()->redo();
    QCOMPARE(tab->Rows(), (QStringList{"A", "B", "C", "new bookmark"}));
}

void TestBookmarkPane::aNullDocumentLeavesAnEmptyWidget()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const std::unique_ptr<QWidget> pane(desk.page.CreateWidget(nullptr));
    QVERIFY(pane);
    QVERIFY(pane->findChildren<QWidget*>().isEmpty());
    pane->show();
    pane->resize(300, 300);
    desk.Perform("d_addbookmark"); // its event reaches the empty pane too
    QVERIFY(pane->findChildren<QWidget*>().isEmpty());
}

void TestBookmarkPane::aDocumentWithoutARootHasAnEmptyListAndAPicture()
{
    PaneDesk desk(QStringLiteral("page 210 297"));
    QVERIFY(!desk.First()->document->GetBookmarkRoot());
    QCOMPARE(desk.First()->Rows(), QStringList());
    QVERIFY(desk.First()->pane->noContent);
    QVERIFY(!desk.First()->pane->deleteButton->isEnabled());
    desk.First()->pane->UpdateBookmark(0);
    QVERIFY(desk.First()->pane->noContent);
    QVERIFY(!desk.First()->Tree()->signalsBlocked());
}

void TestBookmarkPane::buttonsAreOnWhereEditingIsAllowedAndTheDeleteButtonNeedsRows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("canAdd");
    QTest::addColumn<bool>("canDelete");
    QTest::newRow("rows") << DocumentWithBookmarks(2) << true << true;
    QTest::newRow("no rows") << DocumentWithBookmarks(0) << true << false;
    QTest::newRow("read-only") << "readonly\n" + DocumentWithBookmarks(2) << false << false;
    QTest::newRow("no right") << "rights edit=no\n" + DocumentWithBookmarks(2) << false << false;
}

void TestBookmarkPane::buttonsAreOnWhereEditingIsAllowedAndTheDeleteButtonNeedsRows()
{
    QFETCH(QString, text);
    QFETCH(bool, canAdd);
    QFETCH(bool, canDelete);
    PaneDesk desk(text);
    QCOMPARE(desk.First()->pane->addButton->isEnabled(), canAdd);
    QCOMPARE(desk.First()->pane->deleteButton->isEnabled(), canDelete);
}

void TestBookmarkPane::everyControlHasAnAccessibleNameAndTheButtonsTakeTheKeyboard()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const DeskTab* tab = desk.First();
    QCOMPARE(tab->pane->addButton->toolTip(), QStringLiteral("add bookmark"));
    QCOMPARE(tab->pane->deleteButton->toolTip(), QStringLiteral("delete bookmark"));
    for (const QWidget* control :
         std::initializer_list<QWidget*>{tab->pane->addButton, tab->pane->deleteButton, tab->Tree()}) {
        QVERIFY(!control->accessibleName().isEmpty());
        QVERIFY(control->focusPolicy() & Qt::TabFocus);
    }
    tab->pane->addButton->setFocus();
    QTest::keyClick(tab->pane->addButton, Qt::Key_Space);
    QCOMPARE(tab->Names(), (QStringList{"A", "new bookmark"}));
    QVERIFY(tab->Editor());
    QVERIFY(!tab->Editor()->accessibleName().isEmpty());
}

void TestBookmarkPane::theAddButtonAddsNamesAndOpensTheEditorOfTheNewRow()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    QTest::mouseClick(tab->pane->addButton, Qt::LeftButton);
    QCOMPARE(tab->Rows(), (QStringList{"A", "B", "new bookmark"}));
    QCOMPARE(tab->Tree()->currentIndex().row(), 2);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("new bookmark"));
    QCOMPARE(tab->Editor()->textCursor().selectedText(), QStringLiteral("new bookmark"));
    QVERIFY(tab->pane->isRenaming);
    QVERIFY(!tab->Tree()->pendingRoot);
    QCOMPARE(tab->Tree()->pendingRow, -1);
    QCOMPARE(tab->Stack()->count(), 1);
    QCOMPARE(DeskNavigation::opened.size(), 1);
    QVERIFY(DeskNavigation::opened.first().contains(QLatin1String("ui.navis.bookmark")));
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), (QStringList{"A", "B"}));
    tab->Stack()->redo();
    QCOMPARE(tab->Rows(), (QStringList{"A", "B", "new bookmark"}));
    QVERIFY(!tab->Editor()); // only a fresh bookmark opens it
}

void TestBookmarkPane::theDeleteButtonDeletesTheSelectionAndTellsWhenThereIsNone()
{
    PaneDesk desk(DocumentWithBookmarks(5));
    const DeskTab* tab = desk.First();
    tab->Select({4, 1, 2});
    QTest::mouseClick(tab->pane->deleteButton, Qt::LeftButton);
    QCOMPARE(tab->Rows(), (QStringList{"A", "D"}));
    QCOMPARE(tab->Stack()->count(), 1);
    tab->Tree()->clearSelection();
    desk.Context()->Answer(1024);
    QTest::mouseClick(tab->pane->deleteButton, Qt::LeftButton);
    QCOMPARE(desk.Context()->LastAsked().text, QStringLiteral("Please select a bookmark first."));
    QCOMPARE(tab->Rows(), (QStringList{"A", "D"}));
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), (QStringList{"A", "B", "C", "D", "E"}));
}

void TestBookmarkPane::aClickOnAnotherPagesBookmarkDoesNotChangeTheSelectionWhenThePageChangeArrives()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                 "bookmark \"first of three\" page=3 rect=0,0,10,10 zoom=1\n"
                                 "bookmark \"second of three\" page=3 rect=0,0,10,10 zoom=1"));
    const DeskTab* tab = desk.First();
    tab->SwallowPageChange();
    QVERIFY(!tab->pane->clickedByUser);
    QSignalSpy pageChanges(desk.Context()->EventMgr(), &G_EventMgr::PageChange);
    Click(tab, 1); // the first row would match the page as well
    ViewFixture::Settle();
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
    QCOMPARE(pageChanges.count(), 1);
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    QCOMPARE(tab->SelectedRows(), QList<int>{1});
    QVERIFY(!tab->pane->clickedByUser);
}

void TestBookmarkPane::pagingByHandSelectsTheFirstOfSeveralVisibleBookmarks()
{
    PaneDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\n"
                                 "bookmark \"far below\" page=2 rect=0,290,10,297 zoom=1\n"
                                 "bookmark \"one\" page=2 rect=10,5,20,20 zoom=1\n"
                                 "bookmark \"two\" page=2 rect=10,5,20,20 zoom=1\n"
                                 "bookmark \"by index\" index=2 rect=10,5,20,20 zoom=1"));
    const DeskTab* tab = desk.First();
    tab->SwallowPageChange();
    tab->view->SetZoom(200, false);
    tab->view->GoToPage(tab->view, 1, CCA_GRect(), false);
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    tab->view->GoToPage(tab->view, 2, CCA_GRect(), false);
    QCOMPARE(tab->Tree()->currentIndex().row(), 3);
}

void TestBookmarkPane::aPageChangeOfAnotherDocumentSelectsNothing()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(2));
    desk.First()->SwallowPageChange(); // swallowed by both panes
    desk.First()->Tree()->setCurrentItem(nullptr);
    QVERIFY(!other->pane->clickedByUser);
    emit desk.Context()->EventMgr()->PageChange(other->view);
    QCOMPARE(desk.First()->Tree()->currentIndex().row(), -1);
    QCOMPARE(other->Tree()->currentIndex().row(), 0);
}

void TestBookmarkPane::withKeepZoomOnlyThePageChanges()
{
    PaneDesk desk(OneBookmark(QStringLiteral("rect=0,0,50,50 zoom=3 mode=0")));
    const DeskTab* tab = desk.First();
    G_SettingMgr::Instance()->SetConfigValue(QStringLiteral("read.keepcurrentzoom"), true);
    tab->view->SetZoomMode(G_Preferences::FitWidth);
    const float zoom = tab->view->GetZoom();
    const EventProbe probe(desk.Context()->EventMgr());
    Click(tab, 0);
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
    QCOMPARE(tab->view->GetZoom(), zoom);
    QCOMPARE(tab->view->ZoomMode(), G_Preferences::FitWidth);
    QCOMPARE(probe.Count(152), 0);
}

void TestBookmarkPane::withoutKeepZoomTheModeTheZoomAndTheEventFollowTheBookmark()
{
    PaneDesk desk(OneBookmark(QStringLiteral("rect=0,0,50,50 zoom=1.5 mode=0")));
    const DeskTab* tab = desk.First();
    tab->view->SetZoomMode(G_Preferences::FitWidth);
    const EventProbe probe(desk.Context()->EventMgr());
    Click(tab, 0);
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
    QCOMPARE(tab->view->GetZoom(), 150.0F);
    QCOMPARE(tab->view->ZoomMode(), G_Preferences::Custom);
    QCOMPARE(probe.Count(152), 1);
}

void TestBookmarkPane::zoomIsTakenOverOnlyWithinItsRange_data()
{
    QTest::addColumn<float>("zoom");
    QTest::addColumn<int>("mode");
    QTest::addColumn<float>("taken"); // 0: left alone
    QTest::newRow("none") << 0.0F << 0 << 0.0F;
    QTest::newRow("below") << 0.0099F << 0 << 0.0F;
    QTest::newRow("smallest") << 0.01F << 0 << 0.01F;
    QTest::newRow("plain") << 2.5F << 0 << 2.5F;
    QTest::newRow("just below 64 is raised") << 63.99995F << 0 << 64.0F;
    QTest::newRow("well below 64 stays") << 63.99F << 0 << 63.99F;
    QTest::newRow("64") << 64.0F << 0 << 64.0F;
    QTest::newRow("just above 64 is out of range") << 64.00005F << 0 << 0.0F;
    QTest::newRow("far above") << 100.0F << 0 << 0.0F;
    QTest::newRow("other modes carry no zoom") << 2.5F << 2 << 0.0F;
}

void TestBookmarkPane::zoomIsTakenOverOnlyWithinItsRange()
{
    QFETCH(float, zoom);
    QFETCH(int, mode);
    QFETCH(float, taken);
    PaneDesk desk(OneBookmark(QStringLiteral("rect=0,0,50,50")));
    const DeskTab* tab = desk.First();
    G_Dest* dest = static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(0)->data)->dest;
    dest->zoom = zoom;
    dest->zoomMode = mode;
    tab->view->SetZoom(120, false);
    Click(tab, 0);
    if (mode == 0)
        QCOMPARE(tab->view->GetZoom(), taken > 0 ? taken * 100 : 120.0F);
    const BookmarkJump jump = JumpTo(*dest, *tab->document);
    QCOMPARE(jump.hasZoom, taken > 0);
    QCOMPARE(jump.zoomFactor, taken);
}

void TestBookmarkPane::zoomModesMapToTheViewsModes_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("shown");
    QTest::addColumn<bool>("fitRect");
    QTest::newRow("plain") << 0 << 0 << false;
    QTest::newRow("page") << 1 << 4 << false;
    QTest::newRow("width") << 2 << 2 << false;
    QTest::newRow("height") << 3 << 3 << false;
    QTest::newRow("rectangle") << 4 << 5 << true;
    QTest::newRow("unknown") << 7 << 0 << false;
    QTest::newRow("negative") << -1 << 0 << false;
}

void TestBookmarkPane::zoomModesMapToTheViewsModes()
{
    QFETCH(int, stored);
    QFETCH(int, shown);
    QFETCH(bool, fitRect);
    PaneDesk desk(OneBookmark(QStringLiteral("rect=10,20,50,60")));
    const DeskTab* tab = desk.First();
    G_Dest* dest = static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(0)->data)->dest;
    dest->zoomMode = stored;
    const BookmarkJump jump = JumpTo(*dest, *tab->document);
    QCOMPARE(jump.viewZoomMode, shown);
    QCOMPARE(jump.fitRect, fitRect);
    QCOMPARE(jump.rect, CCA_GRect(10, 20, 50, 60));
    Click(tab, 0);
    QCOMPARE(static_cast<int>(tab->view->ZoomMode()), shown);
    QCOMPARE(tab->view->CurrentPageIndex(), 1);
}

void TestBookmarkPane::aPageIdWinsOverThePageIndex()
{
    PaneDesk desk(QStringLiteral("page 210 297 id=7\npage 210 297 id=9\n"));
    G_Dest dest;
    dest.pageId = 9;
    dest.pageIndex = 0;
    QCOMPARE(JumpTo(dest, *desk.First()->document).pageIndex, 1);
    dest.pageId = 0;
    QCOMPARE(JumpTo(dest, *desk.First()->document).pageIndex, 0);
    dest.pageId = 8; // no such page
    QVERIFY(JumpTo(dest, *desk.First()->document).pageIndex < 0);
}

void TestBookmarkPane::undoOfAnyEntryRebuildsTheListAndStillOpensThePendingRename()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    tab->Stack()->push(new QUndoCommand(QStringLiteral("another pane's entry")));
    // The tree changes behind the pane: only a refill shows it.
    QVERIFY(tab->document->GetBookmarkRoot()->RemoveSubNode(0));
    QCOMPARE(tab->Rows().size(), 3);
    tab->Tree()->pendingRoot = tab->document->GetBookmarkRoot();
    tab->Tree()->pendingRow = 1;
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), (QStringList{"B", "C"}));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->toPlainText(), QStringLiteral("C"));
    QCOMPARE(tab->Tree()->currentIndex().row(), 1);
    QVERIFY(!tab->Tree()->pendingRoot);
    QCOMPARE(tab->Tree()->pendingRow, -1);
    QVERIFY(!tab->Tree()->signalsBlocked());
}

void TestBookmarkPane::theListGetsThePictureWithItsLastRowAndLosesItWithTheFirst()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const DeskTab* tab = desk.First();
    QVERIFY(!tab->pane->noContent);
    tab->Select({0});
    tab->pane->DelBookmark();
    const QPointer<OVPaintNoContent> picture(tab->pane->noContent);
    QVERIFY(picture);
    QCOMPARE(picture->parentWidget(), static_cast<QWidget*>(tab->Tree()));
    QVERIFY(picture->isVisible());
    QVERIFY(!tab->pane->deleteButton->isEnabled());
    QTest::mouseClick(tab->pane->addButton, Qt::LeftButton);
    QVERIFY(!tab->pane->noContent);
    QVERIFY(picture.isNull());
    QVERIFY(tab->pane->deleteButton->isEnabled());
}

void TestBookmarkPane::thePictureIsPlacedAnewOnAResize()
{
    PaneDesk desk(DocumentWithBookmarks(0));
    const DeskTab* tab = desk.First();
    QVERIFY(tab->pane->noContent);
    for (const QSize& size : {QSize(300, 500), QSize(420, 260)}) {
        tab->pane->resize(size);
        ViewFixture::Settle();
        const QRect place = tab->pane->noContent->PixRect();
        QCOMPARE(place.size(), QSize(120, 112));
        QCOMPARE(place.x(), (tab->Tree()->width() - 120) / 2);
        QCOMPARE(place.y(), (tab->Tree()->height() - 70 - 112) / 2);
    }
}

void TestBookmarkPane::aPageStructureChangeRefillsOnlyWhenThePaneIsShown()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    tab->pane->hide();
    emit desk.Context()->EventMgr()->PageStructChanged(tab->document);
    QVERIFY(tab->pane->needsRefresh);
    QVERIFY(tab->document->GetBookmarkRoot()->RemoveSubNode(0));
    QCOMPARE(tab->Rows().size(), 2);
    tab->pane->show();
    QCOMPARE(tab->Rows(), QStringList{"B"});
    QVERIFY(!tab->pane->needsRefresh);
    QVERIFY(tab->document->GetBookmarkRoot()->RemoveSubNode(0));
    tab->pane->hide();
    tab->pane->show();
    QCOMPARE(tab->Rows(), QStringList{"B"}); // nothing was marked
}

void TestBookmarkPane::onlyTheAdditionToThisDocumentMakesARow()
{
    PaneDesk desk(DocumentWithBookmarks(1));
    const DeskTab* tab = desk.First();
    const QString key = GQ_ToQStringFromUtf8(tab->document->GetDocumentKey());
    const auto fire = [&](G_Event* event) { desk.Context()->FireEvent(event); };
    fire(new G_BookmarkAddEvent(QStringLiteral("d_addbookmark"), key + QLatin1Char('x'), 1000));
    fire(new G_BookmarkAddEvent(QStringLiteral("D_ADDBOOKMARK"), key, 1000));
    fire(new G_BookmarkAddEvent(QStringLiteral("d_outline_add"), key, 1000));
    fire(new G_BookmarkAddEvent(QStringLiteral("d_addbookmark"), key, 1001));
    fire(new G_StringEvent(QStringLiteral("d_addbookmark"), 1000));
    QCOMPARE(tab->Stack()->count(), 0);
    tab->pane->UpdateBookmarkAll(nullptr);
    QCOMPARE(tab->Stack()->count(), 0);
    fire(new G_BookmarkAddEvent(QStringLiteral("d_addbookmark"), key, 1000));
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(tab->Editor()); // of the last row
}

void TestBookmarkPane::anAdditionWithoutARootLeavesTheSignalsBlockedUntilTheNextRefill()
{
    PaneDesk desk(QStringLiteral("page 210 297"));
    const DeskTab* tab = desk.First();
    desk.Context()->FireEvent(new G_BookmarkAddEvent(QStringLiteral("d_addbookmark"),
                                                     GQ_ToQStringFromUtf8(tab->document->GetDocumentKey()), 1000));
    QVERIFY(tab->Tree()->signalsBlocked());
    tab->pane->UpdateBookmark(0);
    QVERIFY(!tab->Tree()->signalsBlocked());
}

void TestBookmarkPane::aRefillKeepsTheCurrentRowAndThePlaceScrolledTo()
{
    PaneDesk desk(DocumentWithBookmarks(40));
    const DeskTab* tab = desk.First();
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(35));
    tab->Tree()->verticalScrollBar()->setValue(20);
    const int place = tab->Tree()->verticalScrollBar()->value();
    QVERIFY(place > 0);
    tab->pane->UpdateBookmark(0);
    QCOMPARE(tab->Tree()->currentIndex().row(), 35);
    QCOMPARE(tab->SelectedRows(), QList<int>());
    QCOMPARE(tab->Tree()->verticalScrollBar()->value(), place);
}

void TestBookmarkPane::theDeleteButtonComesBackWithTheRows()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    desk.Context()->Answer(1024);
    QVERIFY(desk.Perform("d_bookmarkdeleteall"));
    QVERIFY(!tab->pane->deleteButton->isEnabled());
    tab->Stack()->undo();
    QVERIFY(tab->pane->deleteButton->isEnabled());
    QCOMPARE(tab->Rows(), (QStringList{"A", "B"}));
}

void TestBookmarkPane::theContextMenuNamesTheToolAndTheStateOfWordWrap()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    QContextMenuEvent request(QContextMenuEvent::Mouse, tab->RowPoint(1),
                              tab->Tree()->viewport()->mapToGlobal(tab->RowPoint(1)));
    QApplication::sendEvent(tab->Tree()->viewport(), &request);
    QCOMPARE(desk.menu->shown, QStringList{"vn_bookmark"});
    ContextMenuItemState state = desk.menu->lastStates.value(QStringLiteral("d_bookmarkwrap"));
    QVERIFY(state.checked && state.enabled && state.visible && state.hasIcon && !state.reserved);
    QCOMPARE(state.iconPath, QStringLiteral(":/nodeQrc/image/select.svg"));
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    tab->pane->popMenu(tab->RowPoint(0));
    state = desk.menu->lastStates.value(QStringLiteral("d_bookmarkwrap"));
    QVERIFY(!state.checked && state.enabled && state.visible && state.hasIcon && !state.reserved);
    QCOMPARE(state.iconPath, QStringLiteral(":/nodeQrc/image/unselect.svg"));
    QCOMPARE(desk.menu->lastStates.size(), 1);
}

void TestBookmarkPane::noMenuOpensBesideARowOrWhereEditingIsNotAllowed_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("besideRows");
    QTest::newRow("beside the rows") << QString() << true;
    QTest::newRow("read-only document") << "readonly\n" << false;
    QTest::newRow("no right to edit") << "rights edit=no\n" << false;
}

void TestBookmarkPane::noMenuOpensBesideARowOrWhereEditingIsNotAllowed()
{
    QFETCH(QString, state);
    QFETCH(bool, besideRows);
    PaneDesk desk(state + DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    const QPoint place = besideRows ? QPoint(20, tab->Tree()->viewport()->height() - 5) : tab->RowPoint(0);
    QContextMenuEvent request(QContextMenuEvent::Mouse, place, tab->Tree()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(tab->Tree()->viewport(), &request);
    QCOMPARE(desk.menu->shown, QStringList());
}

void TestBookmarkPane::aDoubleClickOpensTheEditorAndEnterRenames()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    const DeskTab* tab = desk.First();
    DoubleClick(tab, 1);
    QVERIFY(tab->Editor());
    QCOMPARE(tab->pane->previousName, QStringLiteral("B"));
    QTest::keyClicks(tab->Editor(), QStringLiteral("Beta"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QVERIFY(!tab->Editor());
    QCOMPARE(tab->Rows(), (QStringList{"A", "Beta", "C"}));
    QCOMPARE(tab->Names(), (QStringList{"A", "Beta", "C"}));
    QCOMPARE(tab->Stack()->count(), 1);
    QVERIFY(!tab->pane->isRenaming);
    QVERIFY(!tab->Tree()->signalsBlocked());
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkPane::onAReadOnlyDocumentADoubleClickOpensNoEditor()
{
    PaneDesk desk(QStringLiteral("readonly\n") + DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    DoubleClick(tab, 1);
    QVERIFY(!tab->Editor());
    QVERIFY(!tab->pane->isRenaming);
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestBookmarkPane::afterARenameTheRowGoesToTheBookmarksNewRecord()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    DoubleClick(tab, 0);
    QTest::keyClicks(tab->Editor(), QStringLiteral("Alpha"));
    QTest::keyClick(tab->Editor(), Qt::Key_Enter);
    ViewFixture::Settle();
    const auto destOfNode = [&](int row) {
        return static_cast<G_Bookmark*>(tab->document->GetBookmarkRoot()->SubNode(row)->data)->dest;
    };
    QCOMPARE(tab->Tree()->topLevelItem(0)->data(0, Qt::UserRole).value<G_Dest*>(), destOfNode(0));
    tab->view->GoToPage(tab->view, 2, CCA_GRect(), false);
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(1));
    QVERIFY(desk.Perform("d_bookmarkresetposition"));
    QCOMPARE(tab->Tree()->topLevelItem(1)->data(0, Qt::UserRole).value<G_Dest*>(), destOfNode(1));
    tab->view->GoToPage(tab->view, 0, CCA_GRect(), false);
    Click(tab, 1);
    QCOMPARE(tab->view->CurrentPageIndex(), 2);
}

void TestBookmarkPane::twoDocumentsHaveTheirOwnPanesInterceptorsAndStacks()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(3));
    QVERIFY(desk.First()->pane != other->pane);
    QVERIFY(desk.First()->pane->renameHandler != other->pane->renameHandler);
    QVERIFY(desk.First()->pane->deleteHandler != other->pane->deleteHandler);
    QVERIFY(desk.First()->Stack() != other->Stack());
    desk.Perform("d_addbookmark");
    QCOMPARE(other->Rows().size(), 4);
    QCOMPARE(desk.First()->Rows().size(), 2);
    desk.MakeCurrent(desk.First());
    desk.Perform("d_addbookmark");
    QCOMPARE(other->Rows().size(), 4);
    QCOMPARE(desk.First()->Rows().size(), 3);
    QCOMPARE(desk.First()->Stack()->count(), 1);
    QCOMPARE(other->Stack()->count(), 1);
}

void TestBookmarkPane::deletingActsOnTheCurrentDocumentOnly()
{
    PaneDesk desk(DocumentWithBookmarks(3));
    DeskTab* other = desk.Open(DocumentWithBookmarks(4));
    desk.First()->Select({0, 1});
    other->Select({3});
    other->pane->DelBookmark();
    QCOMPARE(other->Rows(), (QStringList{"A", "B", "C"}));
    QCOMPARE(desk.First()->Rows(), (QStringList{"A", "B", "C"}));
    desk.MakeCurrent(desk.First());
    desk.First()->pane->DelBookmark();
    QCOMPARE(desk.First()->Rows(), QStringList{"C"});
    QCOMPARE(other->Rows(), (QStringList{"A", "B", "C"}));
}

void TestBookmarkPane::renamingResettingAndWrappingActOnTheCurrentDocumentOnly()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(2));
    desk.First()->Select({0});
    other->Select({1});
    const QString untouched = desk.First()->Dump();
    DoubleClick(other, 1);
    QVERIFY(other->Editor());
    QVERIFY(!desk.First()->Editor());
    QTest::keyClicks(other->Editor(), QStringLiteral("Z"));
    QTest::keyClick(other->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(other->Rows(), (QStringList{"A", "Z"}));
    other->view->GoToPage(other->view, 1, CCA_GRect(), false);
    other->Select({0});
    QVERIFY(desk.Perform("d_bookmarkresetposition"));
    QCOMPARE(static_cast<G_Bookmark*>(other->document->GetBookmarkRoot()->SubNode(0)->data)->dest->pageIndex, 1);
    QVERIFY(desk.Perform("d_bookmarkwrap"));
    QVERIFY(!other->pane->wordWrap);
    QVERIFY(desk.First()->pane->wordWrap);
    QCOMPARE(desk.First()->Dump(), untouched);
    QCOMPARE(desk.First()->Stack()->count(), 0);
}

void TestBookmarkPane::deletingAllAsksOnceAndActsOnTheCurrentDocumentOnly()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    DeskTab* other = desk.Open(DocumentWithBookmarks(3));
    desk.Context()->Answer(4194304); // cancel
    QVERIFY(!desk.Perform("d_bookmarkdeleteall"));
    QCOMPARE(other->Rows().size(), 3);
    desk.Context()->Answer(1024);
    QVERIFY(desk.Perform("d_bookmarkdeleteall"));
    QCOMPARE(desk.Context()->Asked().size(), 2);
    QCOMPARE(other->Rows(), QStringList());
    QCOMPARE(desk.First()->Rows(), (QStringList{"A", "B"}));
    other->Stack()->undo();
    QCOMPARE(other->Rows(), (QStringList{"A", "B", "C"}));
}

TETO_TEST_MAIN(TestBookmarkPane)
#include "test_bookmark_pane.moc"
