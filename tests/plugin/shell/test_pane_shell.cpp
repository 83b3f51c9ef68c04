#include <frame/utils/dpi.h>
#include <frame/utils/no_content.h>
#include <plugin/shell/navigation_open_operation.h>
#include <plugin/shell/no_content.h>
#include <plugin/shell/pane_widget.h>
#include <plugin/shell/style.h>
#include <plugin/shell/undo_stack.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QPushButton>
#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

class CountingPane : public PaneWidget
{
    Q_OBJECT
public:
    int refreshed = 0;
public slots:
    void StackMoved(int) { ++moved; }

public:
    int moved = 0;

protected:
    void RefreshStale() override { ++refreshed; }
};

class OpenTestPane : public NavigationOpenOperation
{
public:
    G_Operation* Clone() const override { return new OpenTestPane; }
    const char* Name() const override { return "vn_test"; }

protected:
    const char* PaneId() const override { return "ui.navis.test"; }
};

class NavigationDouble : public G_Operation
{
public:
    G_Operation* Clone() const override
    {
        auto* copy = new NavigationDouble;
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return "e_navigation"; }
    bool DoAction() override
    {
        opened.append(Params->GetQString("navi_params"));
        return true;
    }
    static QStringList opened;
};
QStringList NavigationDouble::opened;

} // namespace

// What all panes share.
class TestPaneShell : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        NavigationDouble::opened.clear();
        Utils::OVDpi::Instance()->OverrideScale(1);
    }

    void cleanup() { Utils::OVDpi::Instance()->OverrideScale(0); }

    void anOpeningOperationSendsItsPaneIdToTheHost()
    {
        OpenTestPane prototype;
        prototype.RegisterToGlobal();
        NavigationDouble navigation;
        navigation.RegisterToGlobal();
        ViewFixture fixture("page 210 297\n");
        QVERIFY(fixture.Context()->PerformOperation("vn_test", QString()));
        QCOMPARE(NavigationDouble::opened,
                 QStringList{R"({"navi_open_status":"1","navi_btn_checked":"ui.navis.test"})"});
    }

    void anOpeningOperationWithoutAViewOpensNothing()
    {
        OpenTestPane prototype;
        prototype.RegisterToGlobal();
        NavigationDouble navigation;
        navigation.RegisterToGlobal();
        ScriptedContext context;
        QVERIFY(!context.PerformOperation("vn_test", QString()));
        QVERIFY(NavigationDouble::opened.isEmpty());
        QVERIFY(!OpenNavigationPane(nullptr, "ui.navis.test"));
    }

    void pageChangesOnlyMarkAPaneAndTheNextShowRefills()
    {
        CountingPane pane;
        pane.show();
        QCOMPARE(pane.refreshed, 0);
        pane.PageStructChanged(nullptr);
        pane.PageStructChanged(nullptr);
        QVERIFY(pane.needsRefresh);
        QCOMPARE(pane.refreshed, 0); // a visible pane stays stale until its next show
        pane.hide();
        pane.show();
        QCOMPARE(pane.refreshed, 1);
        QVERIFY(!pane.needsRefresh);
        pane.hide();
        pane.show();
        QCOMPARE(pane.refreshed, 1);
    }

    void aPaneKnowsWhetherItsDocumentIsTheCurrentOne()
    {
        ViewFixture fixture("page 210 297\n");
        CountingPane pane;
        QVERIFY(!pane.IsCurrentDocument());
        pane.context = fixture.Context();
        QVERIFY(!pane.IsCurrentDocument());
        pane.document = fixture.Document();
        QVERIFY(pane.IsCurrentDocument());
        fixture.Open("page 210 297\n");
        QVERIFY(!pane.IsCurrentDocument());
    }

    void theUndoStackIsMadeOnceForAViewAndAllPanesOfItListen()
    {
        ViewFixture fixture("page 210 297\n");
        G_DocView bare(fixture.Context(), fixture.Document());
        CountingPane first;
        CountingPane second;
        QVERIFY(ConnectUndoStack(&bare, &first, SLOT(StackMoved(int))));
        QUndoStack* stack = bare.UndoStack();
        QVERIFY(stack);
        QVERIFY(ConnectUndoStack(&bare, &second, SLOT(StackMoved(int))));
        QCOMPARE(bare.UndoStack(), stack);
        QVERIFY(fixture.View()->UndoStack() != stack);
        stack->push(new QUndoCommand);
        QCOMPARE(first.moved, 1);
        QCOMPARE(second.moved, 1);
        QVERIFY(!EnsureUndoStack(nullptr));
        QVERIFY(!ConnectUndoStack(nullptr, &first, SLOT(StackMoved(int))));
    }

    void thePictureOfAnEmptyListComesMovesAndGoes()
    {
        QWidget list;
        list.resize(300, 400);
        OVPaintNoContent* picture = nullptr;
        UpdateNoContentPicture(picture, &list, true, "nocontent_bookmark.svg");
        QVERIFY(picture);
        QCOMPARE(picture->PixRect(), QRect((300 - 120) / 2, (400 - 70 - 112) / 2, 120, 112));
        OVPaintNoContent* const first = picture;
        list.resize(500, 600);
        UpdateNoContentPicture(picture, &list, true, "nocontent_bookmark.svg");
        QCOMPARE(picture, first);
        QCOMPARE(picture->PixRect(), QRect((500 - 120) / 2, (600 - 70 - 112) / 2, 120, 112));
        UpdateNoContentPicture(picture, &list, false, "nocontent_bookmark.svg");
        QVERIFY(!picture);
        QVERIFY(list.findChildren<OVPaintNoContent*>().isEmpty());
        UpdateNoContentPicture(picture, &list, false, "nocontent_bookmark.svg");
        QVERIFY(!picture);
    }

    void thePictureIsScaledToTheScreenAndItsRiseIsNot()
    {
        Utils::OVDpi::Instance()->OverrideScale(2);
        QCOMPARE(NoContentRect(QSize(600, 800)), QRect((600 - 240) / 2, (800 - 70 - 224) / 2, 240, 224));
    }

    void aToolButtonIsScaledNamedAndHasAPictureForEachState()
    {
        Utils::OVDpi::Instance()->OverrideScale(2);
        QPushButton button;
        PaneStyle::MakeToolButton(&button, "btn_add", "add something");
        QCOMPARE(button.size(), QSize(48, 48));
        QCOMPARE(button.toolTip(), QStringLiteral("add something"));
        QCOMPARE(button.accessibleName(), QStringLiteral("add something"));
        QVERIFY(button.styleSheet().contains(":/nodeQrc/image/btn_add_normal.svg"));
        QVERIFY(button.styleSheet().contains(":/nodeQrc/image/btn_add_disabled.svg"));
        QCOMPARE(PaneStyle::Scaled(8), 16);
    }
};

TETO_TEST_MAIN(TestPaneShell)
#include "test_pane_shell.moc"
