#include "pane_desk.h"

#include <bookmark/bookmark_events.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <tests/support/editing_states.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>
#include <frame/utils/dpi.h>
#include <frame/utils/no_content.h>

#include <QAbstractItemModelTester>
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

int FlagBits(const DeskTab* tab, int row)
{
    return tab->Tree()->topLevelItem(row)->flags() & editableToo;
}

} // namespace

class TestBookmarkPane : public UnscaledTest
{
    Q_OBJECT
private slots:
    // The list
    void rowsAnswerTheNameTheDestinationTheStoredNameAndTheTooltip();
    void onlyBlanksAreTrimmedAndANameOfBlanksIsShownEmpty();
    void whatIsSetOnARowStandsOverWhatTheBookmarkSays();
    void rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed_data();
    void rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed();
    void theListIsAFlatOneColumnListWithoutHeaderFrameOrIndentation();
    void buttonsLineAndListStandAtTheirDistances_data();
    void buttonsLineAndListStandAtTheirDistances();
    void rightsThatForbadeEditingAtTheStartKeepRowsFromBeingEdited();
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
    // Refills
    void undoOfAnyEntryRebuildsTheListAndStillOpensThePendingRename();
    void theListGetsThePictureWithItsLastRowAndLosesItWithTheFirst();
    void thePictureIsPlacedAnewOnAResize();
    void aPageStructureChangeRefillsOnlyWhenThePaneIsShown();
    void onlyTheAdditionToThisDocumentMakesARow();
    void anAdditionWithoutARootLeavesTheSignalsBlockedUntilTheNextRefill();
    void aRefillKeepsTheCurrentRowAndThePlaceScrolledTo();
    void theDeleteButtonComesBackWithTheRows();
};

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
    AddEditingStates<int>("bits", editableToo, selectableAndEnabled);
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

void TestBookmarkPane::buttonsLineAndListStandAtTheirDistances_data()
{
    QTest::addColumn<int>("scale");
    QTest::newRow("plain") << 1;
    QTest::newRow("twice") << 2;
}

void TestBookmarkPane::buttonsLineAndListStandAtTheirDistances()
{
    QFETCH(int, scale);
    Utils::OVDpi::Instance()->OverrideScale(scale);
    PaneDesk desk(DocumentWithBookmarks(1));
    const NaviBookmarkWidget* pane = desk.First()->pane;
    const QRect add = pane->addButton->geometry();
    const QRect remove = pane->deleteButton->geometry();
    const QRect line = pane->separator->geometry();
    QCOMPARE(add, QRect(14 * scale, 4 * scale, 24 * scale, 24 * scale)); // 6 of the pane, 8 of the row
    QCOMPARE(remove, add.translated(36 * scale, 0));
    QCOMPARE(line.topLeft(), QPoint(6 * scale, 36 * scale));
    QCOMPARE(line.height(), 1);
    QCOMPARE(pane->tree->geometry().topLeft(), QPoint(6 * scale, 44 * scale + 1));
    QCOMPARE(pane->tree->geometry().bottomRight(), pane->rect().bottomRight());
    QCOMPARE(
        pane->separator->styleSheet(),
        QStringLiteral("background:#E4E6EB;border-radius: %1px;margin-right:%2px;").arg(2 * scale).arg(10 * scale));
    QCOMPARE(pane->tree->styleSheet(),
             QStringLiteral("QTreeView{color:#36425A; background:#F5F7F9; outline:0px;}"
                            "QTreeView::item{padding-left:8px; padding-right:8px; height:25px;}"));
    QVERIFY(pane->addButton->styleSheet().contains(QLatin1String(":/nodeQrc/image/btn_add_normal.svg")));
    QVERIFY(pane->deleteButton->styleSheet().contains(QLatin1String(":/nodeQrc/image/btn_del_normal.svg")));
}

void TestBookmarkPane::rightsThatForbadeEditingAtTheStartKeepRowsFromBeingEdited()
{
    PaneDesk desk(QStringLiteral("rights edit=no\n") + DocumentWithBookmarks(1));
    QVERIFY(desk.First()->pane->restricted);
    desk.First()->document->SetRights(true, true, true, true);
    desk.First()->pane->UpdateBookmark(0);
    QCOMPARE(FlagBits(desk.First(), 0), selectableAndEnabled);
    PaneDesk free(DocumentWithBookmarks(1));
    QVERIFY(!free.First()->pane->restricted);
}

void TestBookmarkPane::aNodeWithoutABookmarkHasARowTooAndAClickOnItGoesNowhere()
{
    PaneDesk desk(DocumentWithBookmarks(2));
    const DeskTab* tab = desk.First();
    QVERIFY(tab->document->GetBookmarkRoot()->AddSubNode(1, nullptr));
    tab->pane->UpdateBookmark(0);
    QCOMPARE(tab->Rows(), (QStringList{"A", QString(), "B"}));
    const int page = tab->view->CurrentPageIndex();
    tab->Click(1);
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
    auto* empty = qobject_cast<NaviBookmarkWidget*>(pane.get());
    QVERIFY(empty);
    for (int call = 0; call < 2; ++call) // the first page change is swallowed
        empty->pageChangeSlot(desk.First()->view);
    empty->onClickItem(nullptr, 0);
    empty->popMenu(QPoint(5, 5));
    empty->UpdateBookmark(0);
    empty->UpdateNoContent();
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
    VerifyPicturePlaces(tab->pane, tab->Tree(), tab->pane->noContent);
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

TETO_TEST_MAIN(TestBookmarkPane)
#include "test_bookmark_pane.moc"
