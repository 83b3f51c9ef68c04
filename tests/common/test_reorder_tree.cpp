#include "plain_reorder_tree.h"

#include <frame/operation/event.h>
#include <frame/operation/event_manager.h>
#include <tests/support/drag.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QDrag>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QtTest>

#include <memory>

namespace {

class NamedTool : public GT_Base
{
public:
    explicit NamedTool(const char* name)
        : name(name)
    {
    }
    G_ToolHandler* Clone() override { return new NamedTool(name); }
    CCA_String Name() override { return name; }

private:
    const char* name;
};

// Counts how often Qt asks for a row's size.
class CountingDelegate : public QStyledItemDelegate
{
public:
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        ++asked;
        return QStyledItemDelegate::sizeHint(option, index);
    }
    mutable int asked = 0;
};

class EmptyDelegate : public QStyledItemDelegate
{
public:
    void paint(QPainter*, const QStyleOptionViewItem&, const QModelIndex&) const override {}
};

} // namespace

// The drag-and-drop base of the panes' trees.
class TestReorderTree : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        hand = std::make_unique<NamedTool>("t_handtool");
        signature = std::make_unique<NamedTool>("d_electronicsignature");
        hand->RegisterHandlerToGlobal();
        signature->RegisterHandlerToGlobal();
        fixture = std::make_unique<ViewFixture>("page 210 297\n");
        fixture->View()->SetCurrentToolHandler(fixture->View()->ToolHandlerByName("t_handtool"));
        tree = std::make_unique<PlainReorderTree>(fixture->View());
        for (int row = 0; row < 5; ++row)
            tree->addTopLevelItem(new QTreeWidgetItem({QStringLiteral("row %1").arg(row)}));
        tree->resize(300, 300);
        tree->show();
        ViewFixture::Settle();
    }

    void cleanup()
    {
        ReorderTree::SetDragRunner({});
        tree.reset();
        fixture.reset();
        hand.reset();
        signature.reset();
    }

    void aNewTreeDragsRowsWithinItselfAndWaitsForNothing()
    {
        QVERIFY(tree->dragEnabled());
        QVERIFY(tree->acceptDrops());
        QCOMPARE(tree->dragDropMode(), QAbstractItemView::InternalMove);
        QVERIFY(tree->canDrop);
        QVERIFY(!tree->isDragging && !tree->leftView && !tree->dropAtTop);
        QVERIFY(!tree->pendingNode);
        QCOMPARE(tree->pendingRow, -1);
        QVERIFY(tree->line.isNull());
    }

    void aDragCarriesTheFirstSelectedItemsAddressForTheMoveAction()
    {
        Select({1, 2});
        QByteArray carried;
        ReorderTree::SetDragRunner([&](QDrag* drag) {
            carried = drag->mimeData()->data("Test/Row");
            return Qt::MoveAction;
        });
        Drag::MouseDrag(tree->viewport(), Centre(1), Centre(3));
        QCOMPARE(carried, QByteArray::number(reinterpret_cast<quintptr>(tree->selectedItems().first())));
    }

    void nothingIsDraggedWhenTheTreeMayNot()
    {
        Select({1});
        tree->mayDrag = false;
        bool wasRun = false;
        ReorderTree::SetDragRunner([&](QDrag*) {
            wasRun = true;
            return Qt::IgnoreAction;
        });
        Drag::MouseDrag(tree->viewport(), Centre(1), Centre(3));
        QVERIFY(!wasRun);
        QVERIFY(!tree->isDragging);
    }

    void foreignDataIsNotLetIn()
    {
        QMimeData text;
        text.setText(QStringLiteral("hello"));
        Select({0});
        const Drag::Outcome outcome = Drag::DropAt(tree->viewport(), &text, {Centre(2)});
        QVERIFY(!outcome.wasEntered);
        QVERIFY(tree->dropTargets.isEmpty());
    }

    void anAddressThatIsNoSelectedRowsIsRefused()
    {
        Select({0});
        QMimeData data;
        data.setData("Test/Row", QByteArray::number(quintptr(0xdeadbeef)));
        QVERIFY(!tree->SourceItem(&data));
        QVERIFY(!Drag::DropAt(tree->viewport(), &data, {Centre(2)}).wasMoved);
        data.setData("Test/Row", "0");
        QVERIFY(!Drag::DropAt(tree->viewport(), &data, {Centre(2)}).wasMoved);
        QVERIFY(!tree->canDrop);
    }

    void overARowTheIndicatorRunsAlongItsBottom()
    {
        const auto data = BeginDrag({0});
        const Drag::Outcome outcome = Drag::HoverAt(tree->viewport(), data.get(), {Centre(2)});
        QVERIFY(outcome.wasMoved);
        const QRect row = RowRect(2);
        QCOMPARE(tree->line, QLine(row.left() + 6, row.bottom(), row.right() - 4, row.bottom()));
        QVERIFY(!tree->dropAtTop);
    }

    void inTheTopZoneTheIndicatorStandsBelowTheRowsTop_data()
    {
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("isTop");
        QTest::newRow("first pixel row") << 0 << true;
        QTest::newRow("last of the zone") << 4 << true;
        QTest::newRow("below the zone") << 5 << false;
    }

    void inTheTopZoneTheIndicatorStandsBelowTheRowsTop()
    {
        QFETCH(int, y);
        QFETCH(bool, isTop);
        const auto data = BeginDrag({3});
        Drag::HoverAt(tree->viewport(), data.get(), {QPoint(50, y)});
        const QRect row = RowRect(0);
        QCOMPARE(tree->dropAtTop, isTop);
        const int lineY = isTop ? row.top() + 4 : row.bottom();
        QCOMPARE(tree->line, QLine(row.left() + 6, lineY, row.right() - 4, lineY));
    }

    void overASelectedRowTheIndicatorVanishesAndTheMoveIsRefused()
    {
        const auto data = BeginDrag({0, 2});
        const Drag::Outcome outcome = Drag::HoverAt(tree->viewport(), data.get(), {Centre(1), Centre(2)});
        QVERIFY(!outcome.wasMoved);
        QVERIFY(!tree->canDrop);
        QVERIFY(tree->line.isNull());
    }

    void besideTheRowsTheMoveIsRefused()
    {
        const auto data = BeginDrag({0});
        QVERIFY(!Drag::HoverAt(tree->viewport(), data.get(), {QPoint(50, 290)}).wasMoved);
    }

    void leavingTheViewIsRememberedUntilTheNextEnter()
    {
        const auto data = BeginDrag({0});
        Drag::HoverAt(tree->viewport(), data.get(), {Centre(2)});
        QVERIFY(tree->leftView);
        QVERIFY(tree->isDragging); // on purpose: a drag that ends outside clears nothing else
        QDragEnterEvent enter(Centre(2), Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree->viewport(), &enter);
        QVERIFY(!tree->leftView);
    }

    void theIndicatorIsPaintedOnlyDuringADragInsideTheView()
    {
        const auto data = BeginDrag({0});
        tree->clearSelection();
        tree->line = QLine(10, 60, 200, 60);
        const QImage withLine = tree->viewport()->grab().toImage();
        QVERIFY(withLine.pixelColor(101, 60) == QColor(100, 101, 106) ||
                withLine.pixelColor(103, 60) == QColor(100, 101, 106));
        QCOMPARE(withLine.pixelColor(7, 60), QColor(100, 101, 106)); // inside the arrowhead
        tree->leftView = true;
        QVERIFY(tree->viewport()->grab().toImage().pixelColor(7, 60) != QColor(100, 101, 106));
        tree->leftView = false;
        tree->isDragging = false;
        QVERIFY(tree->viewport()->grab().toImage().pixelColor(7, 60) != QColor(100, 101, 106));
    }

    void aDropOnARowEndsTheDragAndAsksTheTree()
    {
        const auto data = BeginDrag({0});
        const Drag::Outcome outcome = Drag::DropAt(tree->viewport(), data.get(), {Centre(3)});
        QVERIFY(outcome.wasDropped);
        QVERIFY(!tree->isDragging);
        QCOMPARE(tree->dropTargets, QList<QTreeWidgetItem*>{tree->topLevelItem(3)});
    }

    void aDropWithoutTheFormatMovesNoItem()
    {
        QMimeData text;
        text.setText(QStringLiteral("hello"));
        QDropEvent drop(Centre(3), Qt::MoveAction, &text, Qt::LeftButton, Qt::NoModifier);
        tree->isDragging = true;
        tree->dropEvent(&drop); // by hand: what was not let in is not dropped either
        QVERIFY(!drop.isAccepted());
        QVERIFY(!tree->isDragging);
        QVERIFY(tree->dropTargets.isEmpty());
        QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("row 0"));
    }

    void theFirstMoveOverTheListEndsTheSignatureTool()
    {
        fixture->View()->SetCurrentToolHandler(fixture->View()->ToolHandlerByName("d_electronicsignature"));
        QList<QPair<QStringList, bool>> buttons;
        connect(fixture->Context()->EventMgr(), &G_EventMgr::EventFired, tree.get(), [&](G_Event* event) {
            if (const auto* bar = dynamic_cast<G_CommandBarOpChangedEvent*>(event))
                buttons.append({bar->Data().names, bar->Data().value});
        });
        const auto data = BeginDrag({0});
        Drag::HoverAt(tree->viewport(), data.get(), {Centre(2), Centre(3)});
        QVERIFY(fixture->View()->CurrentToolHandler()->Name() == "t_handtool");
        const QList<QPair<QStringList, bool>> expected{{{"t_handtool"}, true}, {{"d_electronicsignature"}, false}};
        QCOMPARE(buttons, expected);
    }

    void inTheTopZoneTheSignatureToolStays()
    {
        fixture->View()->SetCurrentToolHandler(fixture->View()->ToolHandlerByName("d_electronicsignature"));
        const auto data = BeginDrag({3});
        QVERIFY(Drag::HoverAt(tree->viewport(), data.get(), {QPoint(50, 2)}).wasMoved);
        QVERIFY(fixture->View()->CurrentToolHandler()->Name() == "d_electronicsignature");
    }

    void aResizeIsToldAndRowsAreMeasuredAgainAtAnotherWidth()
    {
        CountingDelegate delegate;
        tree->setItemDelegate(&delegate);
        ViewFixture::Settle();
        const int resized = tree->resizeCount;
        delegate.asked = 0;
        tree->resize(280, 300);
        ViewFixture::Settle();
        QCOMPARE(tree->resizeCount, resized + 1);
        QVERIFY(delegate.asked >= 5);
        delegate.asked = 0;
        tree->RemeasureRows();
        ViewFixture::Settle();
        QVERIFY(delegate.asked >= 5);
        QCOMPARE(tree->size(), QSize(280, 300));
        tree->setItemDelegate(nullptr);
    }

    void aDeadViewStopsAMoveAndCrashesNothing()
    {
        PlainReorderTree lone(nullptr);
        lone.addTopLevelItem(new QTreeWidgetItem({"a"}));
        lone.addTopLevelItem(new QTreeWidgetItem({"b"}));
        lone.resize(200, 200);
        lone.topLevelItem(0)->setSelected(true);
        const std::unique_ptr<QMimeData> data(lone.PrepareDrag());
        Drag::HoverAt(lone.viewport(), data.get(), {QPoint(50, 30)});
        QVERIFY(lone.line.isNull());
    }

    void theKeysRowIsFramedWhenItIsNotSelected()
    {
        EmptyDelegate delegate;
        tree->setItemDelegate(&delegate);
        tree->show();
        QVERIFY(QTest::qWaitForWindowActive(tree.get()));
        tree->setFocus();
        tree->setCurrentItem(tree->topLevelItem(1));
        QVERIFY(!IsFramed(1));
        QTest::keyClick(tree.get(), Qt::Key_Down, Qt::ControlModifier); // goes on without selecting
        QVERIFY(!tree->topLevelItem(2)->isSelected());
        QVERIFY(IsFramed(2) && !IsFramed(1));
        QTest::keyClick(tree.get(), Qt::Key_Space, Qt::ControlModifier);
        QVERIFY(tree->topLevelItem(2)->isSelected());
        QVERIFY(!IsFramed(2));
        tree->clearSelection();
        QVERIFY(IsFramed(2));
        tree->clearFocus();
        QVERIFY(!IsFramed(2));
        tree->setItemDelegate(new QStyledItemDelegate(tree.get()));
    }

private:
    bool IsFramed(int row) const
    {
        const QImage picture = tree->viewport()->grab().toImage();
        const qreal scale = picture.devicePixelRatioF();
        const QRect box = RowRect(row);
        const auto isBlue = [&](const QPoint& place) {
            return picture.pixelColor(place * scale).blue() > 0xD0 && picture.pixelColor(place * scale).red() < 0x40;
        };
        return isBlue(box.topLeft()) && isBlue(box.bottomRight());
    }

    void Select(const QList<int>& rows)
    {
        tree->clearSelection();
        for (const int row : rows)
            tree->topLevelItem(row)->setSelected(true);
    }

    std::unique_ptr<QMimeData> BeginDrag(const QList<int>& rows)
    {
        Select(rows);
        return std::unique_ptr<QMimeData>(tree->PrepareDrag());
    }

    QRect RowRect(int row) const { return tree->visualItemRect(tree->topLevelItem(row)); }
    QPoint Centre(int row) const { return RowRect(row).center(); }

    std::unique_ptr<NamedTool> hand;
    std::unique_ptr<NamedTool> signature;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<PlainReorderTree> tree;
};

TETO_TEST_MAIN(TestReorderTree)
#include "test_reorder_tree.moc"
