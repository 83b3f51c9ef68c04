#include "outline_gestures.h"

#include <outline/batch_add_dialog.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/test_main.h>
#include <tests/support/unscaled_test.h>

#include <frame/base/converters.h>
#include <frame/document/payloads.h>
#include <frame/operation/event_manager.h>

#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

G_OutlineItem* NewEntry(const QString& title)
{
    auto* entry = new G_OutlineItem;
    entry->text = GQ_ToCAS(title);
    entry->title = entry->text;
    return entry;
}

G_ActionGoto* AddJump(G_OutlineItem* entry, int pageId)
{
    auto* jump = new G_ActionGoto;
    jump->dest->pageId = pageId;
    entry->actions.Add(jump);
    return jump;
}

// Walks through what a user does with a pane: every state is painted, every key pressed.
void UseThePane(OutlineDesk& desk)
{
    const OutlineTab* tab = desk.First();
    desk.Context()->AnswerAllWith(1024);
    QVERIFY(!tab->pane->grab().isNull());
    tab->Tree()->setFocus();
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Return, Qt::Key_Down, Qt::Key_End, Qt::Key_Return, Qt::Key_Up})
        QTest::keyClick(tab->Tree(), key);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(desk.Perform("d_outline_wordwrap"));
        tab->pane->expandButton->click();
        QVERIFY(!tab->pane->grab().isNull());
    }
    for (int page = 0; page < tab->document->GetPageCount(); ++page)
        tab->view->GoToPage(tab->view, page, CCA_GRect(), false);
    tab->pane->SyncExpandStates();
    QCOMPARE(tab->Rows().count('\n'), tab->Names().count('\n'));
}

} // namespace

// Outlines that nobody would write by hand.
class TestOutlineHostile : public UnscaledTest
{
    Q_OBJECT
private slots:
    void destinationsToNowhereAreShownAndHarmless();
    void emptyTitlesAreRowsLikeOthers();
    void aTitleOfTenThousandCharactersIsCutOnlyByARename();
    void titlesOfOddCharactersAreShownAndKept();
    void aCutDoesNotHalveACharacter();
    void anOutlineThousandsOfLevelsDeepIsShownAndChanged();
    void anEntryWithAHundredThousandChildrenIsShownAndUndone();
    void aHundredThousandSelectedEntriesAreDeletedInOneStep();
    void recordsOfAnotherKindAreRowsWithoutATitle();
};

void TestOutlineHostile::destinationsToNowhereAreShownAndHarmless()
{
    OutlineDesk desk(QStringLiteral("page 210 297\npage 210 297\noutline \"seed\"\n"));
    const OutlineTab* tab = desk.First();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float huge = std::numeric_limits<float>::max();
    const int ids[] = {0, -1, 99, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 1, 2};
    int row = 0;
    for (const int id : ids) {
        for (const float place : {nan, huge, -huge, INFINITY, 5.0F}) {
            auto* entry = NewEntry(QString::number(row));
            G_Dest* dest = AddJump(entry, id)->dest;
            dest->left = dest->top = place;
            dest->zoom = place;
            dest->zoomMode = row;
            dest->pageIndex = row % 2 == 0 ? std::numeric_limits<int>::max() : -5;
            QVERIFY(tab->Node({})->AddSubNode(row++, entry));
        }
    }
    tab->pane->UpdateOutline(0);
    UseThePane(desk);
    for (int i = 0; i < row; ++i) {
        QTreeWidgetItem* item = tab->Tree()->topLevelItem(i);
        QVERIFY(!item->text(1).isEmpty());
        tab->pane->OnClickItem(item, 0);
        const int page = tab->view->CurrentPageIndex();
        QVERIFY(page == 0 || page == 1);
    }
    // An index that is shown as a number although no such page exists: one more than the largest is no overflow.
    QCOMPARE(tab->Tree()->topLevelItem(0)->text(1), QStringLiteral("2147483648"));
}

void TestOutlineHostile::emptyTitlesAreRowsLikeOthers()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"\" page=1\n  outline \"\"\noutline \"  \"\n"));
    const OutlineTab* tab = desk.First();
    UseThePane(desk);
    tab->Tree()->setCurrentItem(tab->Item(QList<int>{0, 0}));
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QVERIFY(tab->Editor());
    QTest::keyClicks(tab->Editor(), QStringLiteral("named"));
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QStringLiteral("\n  named\n  \n"));
    tab->Stack()->undo();
    QCOMPARE(tab->Names(), QStringLiteral("\n  \n  \n"));
    const QList<int> rows{1};
    tab->pane->MoveOutlineNodes({tab->Node(rows)}, tab->Node({0}), true);
    QCOMPARE(tab->Names(), QStringLiteral("\n    \n  \n"));
    tab->Stack()->undo();
    QCOMPARE(tab->Names(), QStringLiteral("\n  \n  \n"));
}

void TestOutlineHostile::aTitleOfTenThousandCharactersIsCutOnlyByARename()
{
    const QString title(10000, QLatin1Char('x'));
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"%1\" page=1\noutline \"B\"\n").arg(title));
    const OutlineTab* tab = desk.First();
    UseThePane(desk);
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({0})->NodeText()), title);
    tab->pane->MoveOutlineNodes({tab->Node({0})}, tab->Node({1}), true);
    tab->Stack()->undo();
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({0})->NodeText()), title);
    tab->Tree()->setCurrentItem(tab->Item(QList<int>{0}));
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QCOMPARE(tab->Editor()->toPlainText(), title);
    QTest::keyClick(tab->Editor(), Qt::Key_Escape);
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({0})->NodeText()), title);
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    QTest::keyClick(tab->Editor(), Qt::Key_Return); // also unchanged, what is too long is cut and saved
    ViewFixture::Settle();
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({0})->NodeText()), title.left(100));
    tab->Stack()->undo();
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({0})->NodeText()), title);
}

void TestOutlineHostile::titlesOfOddCharactersAreShownAndKept()
{
    const QStringList titles{QStringLiteral("tab\there"),
                             QStringLiteral("line\nfeed"),
                             QString(QChar(0x2028)) + "separator",
                             QString(QChar(0x202E)) + "backwards",
                             QStringLiteral("\u0627\u0644\u0639\u0631\u0628\u064a\u0629"),
                             QString::fromUtf8("\xF0\x9F\x98\x80\xF0\x9F\x98\x80"),
                             QStringLiteral("e") + QString(200, QChar(0x0301)),
                             QStringLiteral("<img src='file:///etc/passwd'>"),
                             QStringLiteral("&amp; %1 %n \\0")};
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"seed\"\n"));
    const OutlineTab* tab = desk.First();
    int row = 0;
    for (const QString& title : titles)
        QVERIFY(tab->Node({})->AddSubNode(row++, NewEntry(title)));
    auto* broken = new G_OutlineItem;
    broken->text = CCA_String("\xFF\xFE\x80 not UTF-8");
    QVERIFY(tab->Node({})->AddSubNode(row, broken));
    tab->pane->UpdateOutline(0);
    QVERIFY(!tab->pane->grab().isNull());
    for (int i = 0; i < titles.size(); ++i) {
        QCOMPARE(tab->Tree()->topLevelItem(i)->text(0), titles.at(i));
        QCOMPARE(tab->Tree()->topLevelItem(i)->data(2, Qt::UserRole).toString(), titles.at(i));
    }
    desk.Perform("d_outline_wordwrap");
    QVERIFY(!tab->pane->grab().isNull());
}

void TestOutlineHostile::aCutDoesNotHalveACharacter()
{
    const QString face = QString::fromUtf8("\xF0\x9F\x98\x80"); // two code units
    const QString title = QString(99, QLatin1Char('x')) + face + QStringLiteral("tail");
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\"\n"));
    const OutlineTab* tab = desk.First();
    tab->MakeCurrent("A");
    QTest::keyClick(tab->Tree(), Qt::Key_F2);
    tab->Editor()->setPlainText(title);
    QTest::keyClick(tab->Editor(), Qt::Key_Return);
    ViewFixture::Settle();
    QCOMPARE(tab->Names(), QString(99, QLatin1Char('x')) + '\n');
    desk.Perform("d_outline_batchadd");
    BatchAddOutlineDlg* dialog = tab->pane->batchAddHandler->Dialog();
    dialog->findChild<QTextEdit*>()->setPlainText(title);
    dialog->AddOutline();
    QCOMPARE(tab->Names(), (QString(99, QLatin1Char('x')) + '\n').repeated(2));
}

void TestOutlineHostile::anOutlineThousandsOfLevelsDeepIsShownAndChanged()
{
    constexpr int depth = 3000;
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"top\"\n"));
    const OutlineTab* tab = desk.First();
    G_TreeNode* node = tab->Node({0});
    for (int level = 0; level < depth; ++level)
        node = node->AddSubNode(0, NewEntry(QString::number(level)));
    tab->pane->UpdateOutline(0);
    QCOMPARE(tab->pane->itemToNode.size(), depth + 1);
    QVERIFY(!tab->pane->grab().isNull());
    tab->pane->expandButton->click();
    QVERIFY(!tab->pane->grab().isNull());
    tab->pane->expandButton->click();
    QTreeWidgetItem* deepest = tab->pane->ItemOf(node);
    QVERIFY(deepest);
    tab->Tree()->setCurrentItem(deepest);
    QVERIFY(!tab->pane->grab().isNull());
    tab->pane->AddOutline();
    QCOMPARE(tab->pane->itemToNode.size(), depth + 2);
    tab->pane->MoveOutlineNodes({node}, tab->Node({0}), false);
    QCOMPARE(tab->Node({})->SubNodeCount(), 2);
    tab->Stack()->undo();
    tab->Stack()->undo();
    QCOMPARE(tab->pane->itemToNode.size(), depth + 1);
    tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(0));
    tab->pane->CollapseSubOutline();
    tab->pane->DelOutline();
    QVERIFY(!tab->pane->HasEntries());
    tab->Stack()->undo();
    QCOMPARE(tab->pane->itemToNode.size(), depth + 1);
}

void TestOutlineHostile::anEntryWithAHundredThousandChildrenIsShownAndUndone()
{
    constexpr int count = 100000;
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"top\"\n"));
    const OutlineTab* tab = desk.First();
    G_TreeNode* top = tab->Node({0});
    for (int i = 0; i < count; ++i)
        top->AddSubNode(i, NewEntry(QString::number(i)));
    tab->pane->UpdateOutline(0);
    QVERIFY(!tab->pane->grab().isNull());
    QTreeWidgetItem* last = tab->pane->ItemOf(top->SubNode(count - 1));
    QVERIFY(last);
    tab->Tree()->setCurrentItem(last);
    tab->pane->AddOutline();
    QCOMPARE(top->SubNodeCount(), count + 1);
    QVERIFY(tab->Editor());
    tab->Stack()->undo();
    QCOMPARE(tab->pane->itemToNode.size(), count + 1);
}

void TestOutlineHostile::aHundredThousandSelectedEntriesAreDeletedInOneStep()
{
    constexpr int count = 100000;
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"top\"\n"));
    const OutlineTab* tab = desk.First();
    for (int i = 0; i < count; ++i)
        tab->Node({})->AddSubNode(i, NewEntry(QString::number(i)));
    tab->pane->UpdateOutline(0);
    tab->Tree()->setFocus();
    QTest::keyClick(tab->Tree(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(tab->Tree()->selectedItems().size(), count + 1);
    tab->pane->DelOutline();
    QVERIFY(!tab->pane->HasEntries());
    QCOMPARE(tab->Stack()->count(), 1);
    tab->Stack()->undo();
    QCOMPARE(tab->pane->itemToNode.size(), count + 1);
    QCOMPARE(GQ_ToQStringFromUtf8(tab->Node({count - 1})->NodeText()), QString::number(count - 1));
}

void TestOutlineHostile::recordsOfAnotherKindAreRowsWithoutATitle()
{
    OutlineDesk desk(QStringLiteral("page 210 297\noutline \"A\"\n"));
    const OutlineTab* tab = desk.First();
    auto* foreign = new G_Bookmark;
    foreign->name = "a bookmark";
    QVERIFY(tab->Node({})->AddSubNode(0, foreign));
    tab->pane->UpdateOutline(0);
    QVERIFY(!tab->pane->grab().isNull());
    QCOMPARE(tab->Tree()->topLevelItem(0)->text(0), QString());
    QCOMPARE(tab->Tree()->topLevelItem(0)->text(1), QStringLiteral("..."));
    tab->pane->OnClickItem(tab->Tree()->topLevelItem(0), 0);
    tab->pane->RecordExpandState();
    tab->pane->SyncExpandStates();
    QCOMPARE(tab->Node({0})->data, static_cast<G_NodeData*>(foreign));
}

TETO_TEST_MAIN(TestOutlineHostile)
#include "test_outline_hostile.moc"
