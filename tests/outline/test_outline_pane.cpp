#include "outline_gestures.h"
#include "outline_records.h"

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <frame/operation/event_manager.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_pane.h>
#include <outline/outline_rename.h>
#include <outline/outline_tree.h>
#include <tests/support/editing_states.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QToolButton>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr int selectableAndEnabled = 33;
constexpr int editableToo = 35;

void PressMenu(const OutlineTab* tab, const QString& title)
{
    const QPoint place = Gesture::AsSibling(tab, title);
    QContextMenuEvent request(QContextMenuEvent::Mouse, place, tab->Tree()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(tab->Tree()->viewport(), &request);
}

} // namespace

class TestOutlinePane : public UnscaledTest
{
    Q_OBJECT
private slots:
    // The page and the tree
    void thePageSaysWhatItIs();
    void theTreeIsBuiltAsThePaneNeedsIt();
    void rowsAnswerTitlesPagesDepthsAndTooltips();
    void onlyBlanksAreTrimmedAndATitleOfBlanksIsShownEmpty();
    void whatIsSetOnARowStandsOverWhatTheEntrySays();
    void entriesWithoutADestinationShowThreeDotsEverywhere();
    void theLastGoToActionGivesThePageShown();
    void onlyATopLevelEntryFallsBackOnTheStoredPageIndex();
    void nodesAreNumberedInPreOrder();
    void rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed_data();
    void rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed();
    void aNullDocumentLeavesAnEmptyWidget();
    void aNodeWithoutARecordHasARowTooAndAClickOnItGoesNowhere();
    // Buttons
    void buttonsAreOnWhereEditingIsAllowedAndWhereThereAreEntries_data();
    void buttonsAreOnWhereEditingIsAllowedAndWhereThereAreEntries();
    void everyControlHasAnAccessibleNameAndTakesTheKeyboard();
    void theAddButtonAddsBehindTheCurrentEntryAndOpensItsEditor();
    void theAddButtonsMenuOpensTheBatchDialog();
    void theDeleteButtonAsksAndDeletes();
    void inAReadOnlyDocumentWrapExpandAndCollapseStayUsable();
    // Menu
    void theMenuOfOneEntryInAnEditableDocument();
    void theMenuOfOneEntryInAReadOnlyDocument();
    void theMenuOfSeveralEntries();
    void noMenuOpensWithoutASelection();
};

void TestOutlinePane::thePageSaysWhatItIs()
{
    const NaviPageOutline page;
    QCOMPARE(page.objectName(), QStringLiteral("Catalog"));
    QCOMPARE(page.Title(), QStringLiteral("Catalog"));
    QCOMPARE(page.Tooltip(), QStringLiteral("View the document directory (Alt+Shift+1)"));
    QCOMPARE(page.IconPath(), QStringLiteral(":/core/res/icons/navi/vn_outline"));
    QCOMPARE(page.PaneId(), Core::Id("ui.navis.outline"));
    QCOMPARE(page.Position(), 10);
}

void TestOutlinePane::theTreeIsBuiltAsThePaneNeedsIt()
{
    OutlineDesk desk(SmallOutline());
    const CTreeWidget* tree = desk.First()->Tree();
    QCOMPARE(tree->parentWidget(), static_cast<QWidget*>(desk.First()->pane));
    QCOMPARE(tree->horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QCOMPARE(tree->selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(tree->frameStyle(), 0);
    QCOMPARE(tree->contextMenuPolicy(), Qt::CustomContextMenu);
    QVERIFY(tree->isHeaderHidden());
    QCOMPARE(tree->columnCount(), 2);
    QVERIFY(!tree->header()->stretchLastSection());
    QCOMPARE(tree->header()->sectionResizeMode(0), QHeaderView::Stretch);
    QCOMPARE(tree->header()->sectionResizeMode(1), QHeaderView::Fixed);
    QCOMPARE(tree->columnWidth(1), 64);
    QCOMPARE(tree->dragDropMode(), QAbstractItemView::InternalMove);
    QVERIFY(tree->acceptDrops() && tree->dragEnabled() && tree->showDropIndicator());
    QCOMPARE(tree->editTriggers(), QAbstractItemView::NoEditTriggers);
}

void TestOutlinePane::rowsAnswerTitlesPagesDepthsAndTooltips()
{
    OutlineDesk desk(QStringLiteral("page 210 297\npage 210 297\noutline \"  Chapter one \" page=2\n"
                                    "  outline \"Section\""));
    const OutlineTab* tab = desk.First();
    const QTreeWidgetItem* item = tab->Item(QList<int>{0});
    QCOMPARE(item->text(0), QStringLiteral("Chapter one"));
    QCOMPARE(item->text(1), QStringLiteral("2"));
    QCOMPARE(item->data(0, Qt::UserRole).toInt(), 1);
    QCOMPARE(item->data(1, Qt::UserRole).toInt(), 1);
    QCOMPARE(item->data(2, Qt::UserRole).toString(), QStringLiteral("  Chapter one "));
    QCOMPARE(item->toolTip(0), QStringLiteral("  Chapter one "));
    QCOMPARE(item->toolTip(1), QStringLiteral("2"));
    const QTreeWidgetItem* below = tab->Item(QList<int>{0, 0});
    QCOMPARE(below->data(0, Qt::UserRole).toInt(), 2);
    QCOMPARE(below->text(1), QStringLiteral("..."));
    QCOMPARE(below->toolTip(1), QStringLiteral("..."));
}

void TestOutlinePane::onlyBlanksAreTrimmedAndATitleOfBlanksIsShownEmpty()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"   \"\noutline \"a  b\"\n"
                                    "outline \"\u00a0x\u3000\"\noutline \" y\"\noutline \"\"\n"));
    QCOMPARE(desk.First()->Rows(), QStringLiteral("\na  b\n\u00a0x\u3000\ny\n\n"));
}

void TestOutlinePane::whatIsSetOnARowStandsOverWhatTheEntrySays()
{
    OutlineDesk desk(SmallOutline());
    QTreeWidgetItem* item = desk.First()->Item("B");
    qRegisterMetaType<QTreeWidgetItem*>("QTreeWidgetItem*");
    delete desk.First()->pane->renameHandler; // or it would rename the entry
    desk.First()->pane->renameHandler = nullptr;
    QSignalSpy changes(desk.First()->Tree(), &QTreeWidget::itemChanged);
    item->setText(0, QStringLiteral("B"));
    QCOMPARE(changes.count(), 0); // nothing new
    item->setText(0, QStringLiteral("Z"));
    QCOMPARE(changes.count(), 1);
    item->setText(1, QStringLiteral("77"));
    item->setToolTip(0, QStringLiteral("tip"));
    item->setData(2, Qt::UserRole, QStringLiteral("stored"));
    const std::unique_ptr<QTreeWidgetItem> copy(item->clone());
    for (const QTreeWidgetItem* same : {item, copy.get()}) {
        QCOMPARE(same->text(0), QStringLiteral("Z"));
        QCOMPARE(same->text(1), QStringLiteral("77"));
        QCOMPARE(same->toolTip(0), QStringLiteral("tip"));
        QCOMPARE(same->data(2, Qt::UserRole).toString(), QStringLiteral("stored"));
        QCOMPARE(same->data(0, Qt::UserRole).toInt(), 1);
    }
}

void TestOutlinePane::entriesWithoutADestinationShowThreeDotsEverywhere()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\"\n  outline \"B\" uri=https://example.org\n"
                                    "outline \"C\" page=99\n  outline \"D\" page=99\n"));
    QStringList places;
    for (QTreeWidgetItemIterator it(desk.First()->Tree()); *it; ++it)
        places.append((*it)->text(1));
    QCOMPARE(places, (QStringList{"...", "...", "...", "..."}));
}

void TestOutlinePane::theLastGoToActionGivesThePageShown()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    G_OutlineItem* record = Record(tab, {0});
    const auto add = [record](G_Action* action, int pageId) {
        if (auto* jump = dynamic_cast<G_ActionGoto*>(action))
            jump->dest->pageId = pageId;
        record->actions.Add(action);
    };
    add(new G_ActionGoto, 3);
    add(new G_ActionUri, 0);
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Item("A")->text(1), QStringLiteral("3"));
    add(new G_ActionGoto, 44); // leads nowhere, so the one before it counts
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Item("A")->text(1), QStringLiteral("3"));
    add(nullptr, 0);
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Item("A")->text(1), QStringLiteral("3"));
}

void TestOutlinePane::onlyATopLevelEntryFallsBackOnTheStoredPageIndex()
{
    OutlineDesk desk(QStringLiteral("page 210 297\npage 210 297\npage 210 297\noutline \"A\" index=2\n"
                                    "  outline \"B\" index=2\n"));
    QCOMPARE(desk.First()->Item("A")->text(1), QStringLiteral("3"));
    QCOMPARE(desk.First()->Item("B")->text(1), QStringLiteral("..."));
}

void TestOutlinePane::nodesAreNumberedInPreOrder()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    const NaviOutlineWidget* pane = tab->pane;
    QCOMPARE(pane->nodeOrder.value(tab->Node({})), 0);
    int number = 0;
    for (const char* title : {"A", "A1", "A1a", "A2", "B", "C", "C1"}) {
        QTreeWidgetItem* item = tab->Item(QString(title));
        G_TreeNode* node = pane->NodeOf(item);
        QCOMPARE(GQ_ToQStringFromUtf8(node->NodeText()), QString(title));
        QCOMPARE(pane->nodeOrder.value(node, -1), ++number);
        QCOMPARE(pane->ItemOf(node), item);
    }
    QCOMPARE(pane->nextOrder, number + 1);
    QCOMPARE(pane->nodeOrder.size(), number + 1);
    QCOMPARE(pane->itemToNode.size(), number);
    QVERIFY(!pane->NodeOf(nullptr));
    QVERIFY(!pane->ItemOf(nullptr));
    QVERIFY(!pane->ItemOf(tab->Node({})));
}

void TestOutlinePane::rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed_data()
{
    AddEditingStates<int>("bits", editableToo, selectableAndEnabled);
}

void TestOutlinePane::rowsKeepTheirDragFlagAndAreEditableOnlyWhereEditingIsAllowed()
{
    QFETCH(QString, state);
    QFETCH(int, bits);
    OutlineDesk desk(state + SmallOutline());
    for (int round = 0; round < 2; ++round) {
        for (const char* title : {"A", "A1a"}) {
            const Qt::ItemFlags flags = desk.First()->Item(QString(title))->flags();
            QCOMPARE(int(flags) & editableToo, bits);
            QVERIFY(flags & Qt::ItemIsDragEnabled);
        }
        desk.First()->pane->UpdateOutline(0);
    }
}

void TestOutlinePane::aNullDocumentLeavesAnEmptyWidget()
{
    OutlineDesk desk(SmallOutline());
    const std::unique_ptr<QWidget> widget(desk.page.CreateWidget(nullptr));
    auto* pane = qobject_cast<NaviOutlineWidget*>(widget.get());
    QVERIFY(pane);
    QVERIFY(pane->findChildren<QWidget*>().isEmpty());
    pane->show();
    pane->resize(300, 300);
    desk.Perform("d_addoutline"); // its events reach the empty pane too
    emit desk.Context()->EventMgr()->PageStructChanged(desk.First()->document);
    emit desk.Context()->EventMgr()->PageChange(desk.First()->view);
    emit desk.Context()->EventMgr()->PageChange(desk.First()->view);
    pane->hide();
    pane->show();
    pane->UpdateOutline(0);
    pane->RecordExpandState();
    pane->ExpandSubOutline();
    pane->SyncExpandStates();
    QVERIFY(pane->findChildren<QWidget*>().isEmpty());
}

void TestOutlinePane::aNodeWithoutARecordHasARowTooAndAClickOnItGoesNowhere()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    QVERIFY(tab->Node({})->AddSubNode(1, nullptr));
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->Item(QList<int>{1})->text(0), QString());
    QCOMPARE(tab->Item(QList<int>{1})->text(1), QStringLiteral("..."));
    const int page = tab->view->CurrentPageIndex();
    tab->pane->OnClickItem(tab->Item(QList<int>{1}), 0);
    QCOMPARE(tab->view->CurrentPageIndex(), page);
    tab->pane->RecordExpandState();
    tab->pane->SyncExpandStates(); // passes it over
    QVERIFY(!tab->Node({1})->data);
}

void TestOutlinePane::buttonsAreOnWhereEditingIsAllowedAndWhereThereAreEntries_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("canAdd");
    QTest::addColumn<bool>("canDelete");
    QTest::addColumn<bool>("canExpand");
    QTest::newRow("entries") << SmallOutline() << true << true << true;
    QTest::newRow("no entries") << "page 210 297" << true << false << false;
    QTest::newRow("read-only") << "readonly\n" + SmallOutline() << false << false << true;
    QTest::newRow("no right") << "rights edit=no\n" + SmallOutline() << false << false << true;
    QTest::newRow("encrypted") << "encrypted\n" + SmallOutline() << true << true << false;
}

void TestOutlinePane::buttonsAreOnWhereEditingIsAllowedAndWhereThereAreEntries()
{
    QFETCH(QString, text);
    QFETCH(bool, canAdd);
    QFETCH(bool, canDelete);
    QFETCH(bool, canExpand);
    OutlineDesk desk(text);
    QCOMPARE(desk.First()->pane->addButton->isEnabled(), canAdd);
    QCOMPARE(desk.First()->pane->delButton->isEnabled(), canDelete);
    QCOMPARE(desk.First()->pane->expandButton->isEnabled(), canExpand);
}

void TestOutlinePane::everyControlHasAnAccessibleNameAndTakesTheKeyboard()
{
    OutlineDesk desk(SmallOutline());
    const NaviOutlineWidget* pane = desk.First()->pane;
    QCOMPARE(pane->addButton->toolTip(), QStringLiteral("Add outline"));
    QCOMPARE(pane->delButton->toolTip(), QStringLiteral("Del outline"));
    QCOMPARE(pane->expandButton->toolTip(), QStringLiteral("Collapse all outline"));
    QCOMPARE(pane->addButton->size(), QSize(34, 24));
    QCOMPARE(pane->delButton->size(), QSize(24, 24));
    QCOMPARE(pane->expandButton->size(), QSize(24, 24));
    for (const QWidget* control :
         std::initializer_list<QWidget*>{pane->addButton, pane->delButton, pane->expandButton, pane->tree}) {
        QVERIFY(!control->accessibleName().isEmpty());
        QVERIFY(control->focusPolicy() & Qt::TabFocus);
    }
    pane->expandButton->setFocus();
    QTest::keyClick(pane->expandButton, Qt::Key_Space);
    QCOMPARE(Expansion(desk.First()), AllOf(false));
    QCOMPARE(pane->expandButton->accessibleName(), QStringLiteral("Expand all outline"));
}

void TestOutlinePane::theAddButtonAddsBehindTheCurrentEntryAndOpensItsEditor()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A1");
    QTest::mouseClick(tab->pane->addButton, Qt::LeftButton, {}, QPoint(8, 12));
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  new outline\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Rows(), tab->Names());
    QCOMPARE(tab->Tree()->currentItem(), tab->Item("new outline"));
    QVERIFY(tab->Editor());
    QCOMPARE(tab->Editor()->textCursor().selectedText(), QStringLiteral("new outline"));
    QVERIFY(!tab->Tree()->pendingParent);
    QCOMPARE(tab->Tree()->pendingRow, -1);
    QTest::keyClicks(tab->Editor(), QStringLiteral("Typed"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("A\n  A1\n    A1a\n  Typed\n  A2\nB\nC\n  C1\n"));
    QCOMPARE(tab->Stack()->count(), 2);
    tab->Stack()->undo();
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
    tab->Stack()->redo();
    QVERIFY(!tab->Editor()); // only a fresh entry opens it
}

void TestOutlinePane::theAddButtonsMenuOpensTheBatchDialog()
{
    OutlineDesk desk(SmallOutline());
    const NaviOutlineWidget* pane = desk.First()->pane;
    QCOMPARE(pane->addButton->popupMode(), QToolButton::MenuButtonPopup);
    const QList<QAction*> actions = pane->addButton->menu()->actions();
    QCOMPARE(actions.size(), 1);
    QCOMPARE(actions.first()->text(), QStringLiteral("Batch add"));
    actions.first()->trigger();
    QVERIFY(pane->batchAddHandler->Dialog());
}

void TestOutlinePane::theDeleteButtonAsksAndDeletes()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Select({"C", "A1"});
    desk.Context()->Answer(4194304); // cancel
    QTest::mouseClick(tab->pane->delButton, Qt::LeftButton);
    QCOMPARE(tab->Stack()->count(), 0);
    desk.Context()->Answer(1024);
    QTest::mouseClick(tab->pane->delButton, Qt::LeftButton);
    QCOMPARE(tab->Rows(), QStringLiteral("A\n  A2\nB\n"));
    QCOMPARE(tab->Stack()->count(), 1);
    tab->Stack()->undo();
    QCOMPARE(tab->Rows(), QStringLiteral("A\n  A1\n    A1a\n  A2\nB\nC\n  C1\n"));
}

void TestOutlinePane::inAReadOnlyDocumentWrapExpandAndCollapseStayUsable()
{
    OutlineDesk desk("readonly\n" + SmallOutline());
    const OutlineTab* tab = desk.First();
    QVERIFY(!tab->pane->addButton->isEnabled());
    QVERIFY(!tab->pane->delButton->isEnabled());
    QVERIFY(desk.Perform("d_outline_wordwrap"));
    QVERIFY(!tab->pane->wordWrap);
    QTest::mouseClick(tab->pane->expandButton, Qt::LeftButton);
    QCOMPARE(Expansion(tab), AllOf(false));
    QTest::mouseClick(tab->pane->expandButton, Qt::LeftButton);
    QCOMPARE(Expansion(tab), AllOf(true));
    tab->Item("C")->setExpanded(false);
    tab->MakeCurrent("C");
    QVERIFY(desk.Perform("d_outline_expandsub"));
    QVERIFY(tab->Item("C")->isExpanded());
    Gesture::DoubleClick(tab, "A");
    QVERIFY(!tab->Editor());
    QCOMPARE(tab->Stack()->count(), 0);
}

void TestOutlinePane::theMenuOfOneEntryInAnEditableDocument()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A");
    PressMenu(tab, "A");
    QCOMPARE(desk.menu->shown, QStringList{"vn_outline"});
    const auto state = [&](const char* operation) { return desk.menu->lastStates.value(operation); };
    QCOMPARE(desk.menu->lastStates.keys(),
             (QStringList{"d_outline_add", "d_outline_addsub", "d_outline_expandsub", "d_outline_rename",
                          "d_outline_resetpos", "d_outline_wordwrap"}));
    for (const char* operation : {"d_outline_add", "d_outline_addsub", "d_outline_rename", "d_outline_resetpos"}) {
        QVERIFY(state(operation).enabled && state(operation).visible);
        QVERIFY(!state(operation).checked && !state(operation).hasIcon);
        QCOMPARE(state(operation).reservedNumber, 0);
    }
    QVERIFY(state("d_outline_expandsub").enabled && state("d_outline_expandsub").visible);
    QVERIFY(state("d_outline_wordwrap").checked && state("d_outline_wordwrap").hasIcon);
    QVERIFY(state("d_outline_wordwrap").enabled && state("d_outline_wordwrap").visible);
    QCOMPARE(state("d_outline_wordwrap").iconPath, QStringLiteral(":/nodeQrc/image/select.svg"));
    desk.Perform("d_outline_wordwrap");
    tab->MakeCurrent("B"); // has no children
    PressMenu(tab, "B");
    QVERIFY(!state("d_outline_expandsub").enabled && state("d_outline_expandsub").visible);
    QVERIFY(!state("d_outline_wordwrap").checked && state("d_outline_wordwrap").hasIcon);
    QCOMPARE(state("d_outline_wordwrap").iconPath, QStringLiteral(":/nodeQrc/image/unselect.svg"));
}

void TestOutlinePane::theMenuOfOneEntryInAReadOnlyDocument()
{
    OutlineDesk desk("readonly\n" + SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A");
    PressMenu(tab, "A");
    QCOMPARE(desk.menu->shown, QStringList{"vn_outline"});
    for (const char* operation : {"d_outline_add", "d_outline_addsub", "d_outline_rename", "d_outline_resetpos",
                                  "d_outline_del", "d_outline_delall"}) {
        const ContextMenuItemState state = desk.menu->lastStates.value(operation);
        QVERIFY2(!state.enabled && state.visible, operation);
    }
    QVERIFY(desk.menu->lastStates.value("d_outline_expandsub").enabled);
    QVERIFY(desk.menu->lastStates.value("d_outline_wordwrap").enabled);
}

void TestOutlinePane::theMenuOfSeveralEntries()
{
    for (const char* state : {"", "readonly\n"}) {
        OutlineDesk desk(state + SmallOutline());
        const OutlineTab* tab = desk.First();
        tab->Select({"A", "B"});
        PressMenu(tab, "A");
        QCOMPARE(desk.menu->lastStates.keys(),
                 (QStringList{"d_outline_add", "d_outline_addsub", "d_outline_expandsub", "d_outline_rename",
                              "d_outline_resetpos", "d_outline_wordwrap"}));
        for (const char* operation :
             {"d_outline_add", "d_outline_addsub", "d_outline_rename", "d_outline_resetpos", "d_outline_expandsub"})
            QVERIFY2(!desk.menu->lastStates.value(operation).visible, operation);
        QVERIFY(desk.menu->lastStates.value("d_outline_wordwrap").visible);
    }
}

void TestOutlinePane::noMenuOpensWithoutASelection()
{
    OutlineDesk desk(SmallOutline());
    const OutlineTab* tab = desk.First();
    tab->Tree()->clearSelection();
    tab->pane->PopRequestMenu(Gesture::AsSibling(tab, "A"));
    QCOMPARE(desk.menu->shown, QStringList());
    tab->Tree()->setCurrentItem(nullptr);
    tab->Item("A")->setSelected(true);
    tab->pane->PopRequestMenu(Gesture::AsSibling(tab, "A"));
    QCOMPARE(desk.menu->shown, QStringList());
}

TETO_TEST_MAIN(TestOutlinePane)
#include "test_outline_pane.moc"
