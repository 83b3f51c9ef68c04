#include "reader_desk.h"

#include <tests/support/drag.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>

#include <frame/document/ig_document.h>
#include <frame/navigation/navigation_page.h>
#include <frame/view/doc_view.h>

#include <QAbstractScrollArea>
#include <QMimeData>
#include <QTextEdit>
#include <QTreeWidget>
#include <QUndoStack>
#include <QtTest>

namespace {

constexpr char bookmarkPane[] = "ui.navis.bookmark";

// A drag as a user makes it, up to what the offscreen platform leaves out: the mouse starts it, the platform's drag
// returns at once, and the events it would send follow by hand.
Drag::Outcome DragRow(QTreeWidget* tree, int row, const QPoint& target)
{
    const QRect rect = tree->visualItemRect(tree->topLevelItem(row));
    QWidget* viewport = tree->viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, Qt::NoModifier, rect.center());
    // No release: a drag takes it, and without one it would count as a click on the ground.
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, rect.center());
    for (int step : {1, 2}) {
        const QPoint place = rect.center() - QPoint(0, 2 * step * QApplication::startDragDistance());
        QMouseEvent move(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(viewport, &move);
    }
    QMimeData data;
    data.setData("BookmarkMoveDstItem", QByteArray::number(quintptr(tree->selectedItems().value(0))));
    return Drag::DropAt(viewport, &data, {rect.center(), (rect.center() + target) / 2, target});
}

} // namespace

// One user's road through the whole system, with the events that a user makes.
class TestReaderScenario : public QObject
{
    Q_OBJECT
private slots:
    void aBookmarkIsAddedRenamedDraggedUndoneRedoneSavedAndFoundAgain();

private:
    static QTreeWidget* Tree(ReaderDesk& desk)
    {
        for (Core::G_NavigationPage* page : Core::G_NavigationPage::allNaviPages()) {
            if (page->PaneId().ToString() == bookmarkPane)
                return page->WidgetFor(desk.View()->GDocument())->findChild<QTreeWidget*>();
        }
        return nullptr;
    }
    static QStringList Names(ReaderDesk& desk)
    {
        QStringList names;
        G_TreeNode* root = desk.View()->GDocument()->GetBookmarkRoot();
        for (int i = 0; root && i < root->SubNodeCount(); ++i)
            names << QString::fromUtf8(root->SubNode(i)->NodeText().Bytes());
        return names;
    }
    static QString Dump(ReaderDesk& desk) { return DumpTree(desk.View()->GDocument()->GetBookmarkRoot()); }
    static void SelectSomeText(ReaderDesk& desk);
};

// By the mouse: over the first line of text of the second page.
void TestReaderScenario::SelectSomeText(ReaderDesk& desk)
{
    G_DocView* view = desk.View();
    view->SetCurrentToolHandler(view->ToolHandlerByName("t_textselect"));
    IG_Page* page = view->GDocument()->GetPage(1);
    QVERIFY(page && page->Load());
    IG_TextPage* text = page->GetTextPage();
    QVERIFY(text && (text->IsParsed() || text->Parse(0)));
    const QList<G_TextRun> runs = text->AllRuns();
    QVERIFY(!runs.isEmpty());
    view->SetZoomMode(G_Preferences::ActualSize);
    view->GoToPage(view, 1, runs.first().rect, false);
    const CCA_Rect rect = view->SceneRectFromDocRect(runs.first().rect, 1);
    view->GDocument()->ReleasePage(1, 0);
    const QPoint shift = view->VisibleSceneRect().topLeft();
    const int y = (rect.top + rect.bottom) / 2;
    QWidget* viewport = qobject_cast<QAbstractScrollArea*>(view->Widget())->viewport();
    QVERIFY(viewport);
    const QPoint from = QPoint(rect.left + 1, y) - shift;
    const QPoint to = QPoint(rect.right - 1, y) - shift;
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    QVERIFY(!view->SelectHighLightText().isEmpty());
}

void TestReaderScenario::aBookmarkIsAddedRenamedDraggedUndoneRedoneSavedAndFoundAgain()
{
    ReaderDesk desk;
    const QString path = desk.Sample("tour.ofd");
    QVERIFY(desk.Window()->OpenFile(path));
    QVERIFY(QTest::qWaitForWindowExposed(desk.Window()));
    QVERIFY(desk.WaitForPanes());
    const QString dumpBefore = Dump(desk);
    const int countBefore = Names(desk).size();

    SelectSomeText(desk);
    QVERIFY(desk.Context()->PerformOperation("d_addbookmark", QString()));
    QCOMPARE(desk.Window()->CurrentPaneId(), QString(bookmarkPane));
    QCOMPARE(Names(desk).size(), countBefore + 1);
    QVERIFY(!Names(desk).last().startsWith("new bookmark"));

    QTreeWidget* tree = Tree(desk);
    auto* editor = tree->findChild<QTextEdit*>();
    QVERIFY2(editor, "the new row opens in its editor");
    QTRY_VERIFY2(editor->width() > tree->viewport()->width() * 9 / 10, "it has grown with the pane that was hidden");
    QTest::keyClicks(editor, "From the tour");
    desk.View()->FinishRendering();
    Screens::SaveScreen(desk.Window(), "reader-bookmark-in-edit");
    QTest::keyClick(editor, Qt::Key_Return);
    QCOMPARE(Names(desk).last(), QString("From the tour"));

    const Drag::Outcome outcome = DragRow(tree, countBefore, tree->visualItemRect(tree->topLevelItem(0)).center());
    QVERIFY(outcome.wasDropped);
    QCOMPARE(Names(desk).indexOf("From the tour"), 1);
    const QString dumpAfter = Dump(desk);
    desk.View()->FinishRendering();
    Screens::SaveScreen(desk.Window(), "reader-bookmark-dragged");

    QUndoStack* stack = desk.View()->UndoStack();
    QCOMPARE(stack->count(), 3);
    while (stack->canUndo())
        QTest::keyClick(desk.Window(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(Dump(desk), dumpBefore);
    while (stack->canRedo())
        QTest::keyClick(desk.Window(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(Dump(desk), dumpAfter);

    const QStringList names = Names(desk);
    QTest::keyClick(desk.Window(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!desk.Window()->CurrentTab()->IsDirty());
    QVERIFY(desk.Window()->CloseTab(0));
    QVERIFY(desk.Window()->OpenFile(path));
    QCOMPARE(Names(desk), names);
}

TETO_TEST_MAIN(TestReaderScenario)
#include "test_reader_scenario.moc"
