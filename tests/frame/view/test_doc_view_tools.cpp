// Tools: prototypes, clones, which of them gets an event, and the hand.
#include <tests/support/drag.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/document/ig_annot.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/registry.h>
#include <frame/view/host_tools.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

QStringList calls; // what tools were asked, in order

// Writes down what it is asked and takes what it is told to take.
class ProbeTool : public GT_Base
{
public:
    explicit ProbeTool(const QByteArray& name = "t_probe")
        : name(name)
    {
    }
    ~ProbeTool() override { calls.append(QStringLiteral("deleted")); }
    G_ToolHandler* Clone() override
    {
        ++clones;
        return new ProbeTool(name);
    }
    CCA_String Name() override { return name; }
    void OnDestroy() override { calls.append(DocView() ? "destroy in view" : "destroy"); }
    void OnActivate() override { calls.append(QStringLiteral("activate")); }
    void OnDeactivate() override { calls.append(QStringLiteral("deactivate")); }
    int OnLButtonDown(unsigned flags, CCA_Point point) override { return Note("left down", flags, point); }
    int OnLButtonUp(unsigned flags, CCA_Point point) override { return Note("left up", flags, point); }
    int OnLButtonDblClk(unsigned flags, CCA_Point point) override { return Note("left double", flags, point); }
    int OnMButtonDown(unsigned flags, CCA_Point point) override { return Note("middle down", flags, point); }
    int OnMButtonUp(unsigned flags, CCA_Point point) override { return Note("middle up", flags, point); }
    int OnMButtonDblClk(unsigned flags, CCA_Point point) override { return Note("middle double", flags, point); }
    int OnRButtonDown(unsigned flags, CCA_Point point) override { return Note("right down", flags, point); }
    int OnRButtonUp(unsigned flags, CCA_Point point) override { return Note("right up", flags, point); }
    int OnRButtonDblClk(unsigned flags, CCA_Point point) override { return Note("right double", flags, point); }
    int OnMouseMove(unsigned flags, CCA_Point point) override { return Note("move", flags, point); }
    int OnWheel(unsigned flags, int delta, CCA_Point point) override
    {
        lastDelta = delta;
        return Note("wheel", flags, point);
    }
    int OnKeyDown(int key, unsigned flags) override
    {
        lastKey = key;
        return Note("key down", flags, {});
    }
    int OnKeyUp(int key, unsigned flags) override
    {
        lastKey = key;
        return Note("key up", flags, {});
    }
    int OnEnter() override { return Note("enter", 0, {}); }
    int OnLeave() override { return Note("leave", 0, {}); }
    IG_Annot* Simulated() const { return simulatedAnnot; }

    bool takes = true;
    unsigned lastFlags = 0;
    CCA_Point lastPoint;
    int lastDelta = 0;
    int lastKey = 0;
    int clones = 0;

private:
    int Note(const char* what, unsigned flags, CCA_Point point)
    {
        calls.append(QString::fromLatin1(what));
        lastFlags = flags;
        lastPoint = point;
        return takes ? 1 : 0;
    }
    QByteArray name;
};

const QString pages = QStringLiteral("page 210 297\n").repeated(20);

QWidget* Viewport(const ViewFixture& fixture)
{
    return ViewFixture::Viewport(fixture.View());
}

void Wheel(QWidget* viewport, int delta, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent wheel(QPointF(200, 150), viewport->mapToGlobal(QPoint(200, 150)), QPoint(), QPoint(0, delta),
                      Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(viewport, &wheel);
}

class TestDocViewTools : public QObject
{
    Q_OBJECT
private slots:
    void init() { calls.clear(); }
    void eachViewMakesOneCloneWhenItIsFirstAskedFor();
    void anUnknownToolIsNull();
    void aPrototypeHasNoViewAndIsNeverActivated();
    void theHandIsAViewsFirstTool();
    void changingTheToolTellsListenersOnceAndBothTools();
    void aDyingViewDestroysItsClonesButNoPrototype();
    void aToolThatDiesWhileItIsCurrentLeavesTheHand();
    void aPrototypeOrAnotherViewsToolIsRefused();
    void aCallersToolServesTheViewWhileItIsCurrent();
    void aDestroyedPrototypeLeavesTheRegistryUnlessItWasReplaced();
    void mouseEventsReachTheCurrentToolInSceneUnits();
    void doubleClicksAndOtherButtonsHaveTheirOwnFunctions();
    void whatTheToolTakesDoesNothingElse();
    void theWheelScrollsAndZoomsWhenNoToolTakesIt();
    void theHandDragsThePages();
    void theBaseTakesNothingAndSimulationNamesTheAnnotation();
    void theContextFindsTheClonesOfItsCurrentView();
};

void TestDocViewTools::eachViewMakesOneCloneWhenItIsFirstAskedFor()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    QCOMPARE(prototype.clones, 0);
    G_ToolHandler* first = fixture.View()->ToolHandlerByName("t_probe");
    QVERIFY(first && first != &prototype);
    QCOMPARE(fixture.View()->ToolHandlerByName("t_probe"), first);
    G_ToolHandler* other = second->view->ToolHandlerByName("t_probe");
    QVERIFY(other && other != first);
    QCOMPARE(prototype.clones, 2);
    QCOMPARE(first->DocView(), fixture.View());
    QCOMPARE(first->GDocument(), static_cast<IG_Document*>(fixture.Document()));
    QCOMPARE(first->UIContext(), static_cast<G_UIContext*>(fixture.Context()));
    QCOMPARE(other->DocView(), second->view.get());
    QVERIFY(dynamic_cast<GT_Base*>(first));
}

void TestDocViewTools::anUnknownToolIsNull()
{
    ViewFixture fixture(pages);
    QCOMPARE(fixture.View()->ToolHandlerByName("t_nothing"), nullptr);
    QCOMPARE(fixture.View()->ToolHandlerByName(nullptr), nullptr);
}

void TestDocViewTools::aPrototypeHasNoViewAndIsNeverActivated()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    QCOMPARE(prototype.DocView(), nullptr);
    QCOMPARE(prototype.UIContext(), nullptr);
    QCOMPARE(prototype.GDocument(), nullptr);
    ViewFixture fixture(pages);
    QVERIFY(calls.isEmpty());
}

void TestDocViewTools::theHandIsAViewsFirstTool()
{
    ViewFixture fixture(pages);
    QVERIFY(fixture.View()->CurrentToolHandler());
    QVERIFY(fixture.View()->CurrentToolHandler()->Name() == "t_handtool");
    QVERIFY(fixture.View()->ToolHandlerByName("t_textselect"));
}

void TestDocViewTools::changingTheToolTellsListenersOnceAndBothTools()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::ToolHandlerChange);
    G_ToolHandler* tool = fixture.View()->ToolHandlerByName("t_probe");
    fixture.View()->SetCurrentToolHandler(tool);
    QCOMPARE(calls, QStringList{"activate"});
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<G_ToolHandler*>(), tool);
    fixture.View()->SetCurrentToolHandler(tool);
    QCOMPARE(spy.count(), 1);
    fixture.View()->SetCurrentToolHandler(fixture.View()->ToolHandlerByName("t_handtool"));
    QCOMPARE(calls, (QStringList{"activate", "deactivate"}));
    QCOMPARE(spy.count(), 2);
}

void TestDocViewTools::aDyingViewDestroysItsClonesButNoPrototype()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    {
        ViewFixture fixture(pages);
        fixture.View()->SetCurrentToolHandler(fixture.View()->ToolHandlerByName("t_probe"));
        calls.clear();
    }
    QCOMPARE(calls, (QStringList{"deactivate", "destroy in view", "deleted"}));
    QCOMPARE(G_ToolRegistry::Instance().Find("t_probe"), static_cast<G_ToolHandler*>(&prototype));
}

void TestDocViewTools::aToolThatDiesWhileItIsCurrentLeavesTheHand()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    G_ToolHandler* tool = fixture.View()->ToolHandlerByName("t_probe");
    fixture.View()->SetCurrentToolHandler(tool);
    delete tool; // its module goes without having closed the view
    QVERIFY(fixture.View()->CurrentToolHandler()->Name() == "t_handtool");
    QTest::mouseClick(Viewport(fixture), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    QVERIFY(fixture.View()->ToolHandlerByName("t_probe"));
    QCOMPARE(prototype.clones, 2);
}

void TestDocViewTools::aPrototypeOrAnotherViewsToolIsRefused()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    G_ToolHandler* hand = fixture.View()->CurrentToolHandler();
    fixture.View()->SetCurrentToolHandler(&prototype);
    fixture.View()->SetCurrentToolHandler(G_ToolRegistry::Instance().Find("t_handtool"));
    fixture.View()->SetCurrentToolHandler(second->view->ToolHandlerByName("t_probe"));
    QCOMPARE(fixture.View()->CurrentToolHandler(), hand);
    QVERIFY(calls.isEmpty());
}

void TestDocViewTools::aCallersToolServesTheViewWhileItIsCurrent()
{
    ProbeTool own("t_own");
    {
        ViewFixture fixture(pages);
        fixture.View()->SetCurrentToolHandler(&own);
        QCOMPARE(own.DocView(), fixture.View());
        fixture.View()->SetCurrentToolHandler(nullptr);
        QCOMPARE(own.DocView(), nullptr);
        QCOMPARE(calls.filter("activate"), (QStringList{"activate", "deactivate"}));
        fixture.View()->SetCurrentToolHandler(&own);
    }
    QCOMPARE(own.DocView(), nullptr); // the view died, its caller's tool did not
    QVERIFY(!calls.contains("deleted"));
}

void TestDocViewTools::aDestroyedPrototypeLeavesTheRegistryUnlessItWasReplaced()
{
    G_OperationRegistry::Instance().TakeDeregistrationLog();
    auto first = std::make_unique<ProbeTool>();
    first->RegisterHandlerToGlobal();
    auto second = std::make_unique<ProbeTool>();
    second->RegisterHandlerToGlobal();
    QCOMPARE(G_ToolRegistry::Instance().Find("t_probe"), static_cast<G_ToolHandler*>(second.get()));
    first.reset();
    QCOMPARE(G_ToolRegistry::Instance().Find("t_probe"), static_cast<G_ToolHandler*>(second.get()));
    QVERIFY(G_OperationRegistry::Instance().TakeDeregistrationLog().isEmpty());
    second.reset();
    QCOMPARE(G_ToolRegistry::Instance().Find("t_probe"), nullptr);
    QCOMPARE(G_OperationRegistry::Instance().TakeDeregistrationLog(), QStringList{"t_probe"});
}

void TestDocViewTools::mouseEventsReachTheCurrentToolInSceneUnits()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    fixture.View()->GoToPage(fixture.View(), 3, CCA_GRect(), false);
    auto* tool = dynamic_cast<ProbeTool*>(fixture.View()->ToolHandlerByName("t_probe"));
    fixture.View()->SetCurrentToolHandler(tool);
    calls.clear();
    QTest::mousePress(Viewport(fixture), Qt::LeftButton, Qt::ShiftModifier, QPoint(120, 80));
    QCOMPARE(calls, QStringList{"left down"});
    const QPoint expected = fixture.View()->VisibleSceneRect().topLeft() + QPoint(120, 80);
    QCOMPARE(QPoint(tool->lastPoint.x, tool->lastPoint.y), expected);
    QCOMPARE(fixture.View()->CursorPosition(), expected);
    QVERIFY((tool->lastFlags & Qt::ShiftModifier) != 0);
    QVERIFY((tool->lastFlags & Qt::LeftButton) != 0);
    QTest::mouseRelease(Viewport(fixture), Qt::LeftButton, Qt::NoModifier, QPoint(120, 80));
    QMouseEvent move(QEvent::MouseMove, QPoint(50, 60), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(Viewport(fixture), &move);
    QVERIFY(calls.contains(QStringLiteral("move")));
    QCOMPARE(fixture.View()->CursorPosition(), fixture.View()->VisibleSceneRect().topLeft() + QPoint(50, 60));
}

void TestDocViewTools::doubleClicksAndOtherButtonsHaveTheirOwnFunctions()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    fixture.View()->SetCurrentToolHandler(fixture.View()->ToolHandlerByName("t_probe"));
    calls.clear();
    QTest::mouseClick(Viewport(fixture), Qt::RightButton, Qt::NoModifier, QPoint(10, 10));
    QTest::mouseClick(Viewport(fixture), Qt::MiddleButton, Qt::NoModifier, QPoint(10, 10));
    QTest::mouseDClick(Viewport(fixture), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
    calls.removeAll(QStringLiteral("move"));
    QCOMPARE(calls.mid(0, 4), (QStringList{"right down", "right up", "middle down", "middle up"}));
    QVERIFY(calls.contains(QStringLiteral("left double")));
}

void TestDocViewTools::whatTheToolTakesDoesNothingElse()
{
    ProbeTool prototype;
    prototype.RegisterHandlerToGlobal();
    ViewFixture fixture(pages);
    auto* tool = dynamic_cast<ProbeTool*>(fixture.View()->ToolHandlerByName("t_probe"));
    fixture.View()->SetCurrentToolHandler(tool);
    const QRect before = fixture.View()->VisibleSceneRect();
    QTest::keyClick(fixture.View()->Widget(), Qt::Key_PageDown);
    Wheel(Viewport(fixture), -120, Qt::NoModifier);
    QCOMPARE(tool->lastDelta, -120);
    QCOMPARE(tool->lastKey, int(Qt::Key_PageDown));
    QCOMPARE(fixture.View()->VisibleSceneRect(), before);
    tool->takes = false;
    QTest::keyClick(fixture.View()->Widget(), Qt::Key_PageDown);
    QVERIFY(fixture.View()->VisibleSceneRect().top() > before.bottom() - 100);
}

void TestDocViewTools::theWheelScrollsAndZoomsWhenNoToolTakesIt()
{
    ViewFixture fixture(pages);
    const int top = fixture.View()->VisibleSceneRect().top();
    Wheel(Viewport(fixture), -120, Qt::NoModifier);
    QVERIFY(fixture.View()->VisibleSceneRect().top() > top);
    QCOMPARE(fixture.View()->GetZoom(), 100.0F);
    int page = 0;
    const QPoint place = fixture.View()->VisibleSceneRect().topLeft() + QPoint(200, 150);
    const CCA_GPoint under = fixture.View()->DocPointFromScenePoint({place.x(), place.y()}, &page);
    for (int i = 0; i < 6; ++i)
        Wheel(Viewport(fixture), 120, Qt::ControlModifier);
    QVERIFY(fixture.View()->GetZoom() > 150);
    QCOMPARE(fixture.View()->ZoomMode(), G_Preferences::Custom);
    const QPoint now = fixture.View()->VisibleSceneRect().topLeft() + QPoint(200, 150);
    const CCA_GPoint after = fixture.View()->DocPointFromScenePoint({now.x(), now.y()}, &page);
    QVERIFY(std::abs(after.x - under.x) < 1.5); // what is under the mouse stays there
    QVERIFY(std::abs(after.y - under.y) < 1.5);
}

void TestDocViewTools::theHandDragsThePages()
{
    ViewFixture fixture(pages);
    fixture.View()->GoToPage(fixture.View(), 2, CCA_GRect(), false);
    const QPoint before = fixture.View()->VisibleSceneRect().topLeft();
    Drag::MouseDrag(Viewport(fixture), QPoint(300, 300), QPoint(300, 200));
    QCOMPARE(fixture.View()->VisibleSceneRect().topLeft(), before + QPoint(0, 100));
    // Without the button nothing moves.
    QMouseEvent move(QEvent::MouseMove, QPoint(10, 10), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(Viewport(fixture), &move);
    QCOMPARE(fixture.View()->VisibleSceneRect().topLeft(), before + QPoint(0, 100));
}

class PlainTool : public GT_Base
{
public:
    G_ToolHandler* Clone() override { return new PlainTool; }
    CCA_String Name() override { return "t_plain"; }
    IG_Annot* Simulated() const { return simulatedAnnot; }
};

void TestDocViewTools::theBaseTakesNothingAndSimulationNamesTheAnnotation()
{
    PlainTool tool;
    QCOMPARE(tool.OnLButtonDown(0, {}), 0);
    QCOMPARE(tool.OnRButtonUp(0, {}), 0);
    QCOMPARE(tool.OnMouseMove(0, {}), 0);
    QCOMPARE(tool.OnWheel(0, 120, {}), 0);
    QCOMPARE(tool.OnKeyDown(Qt::Key_A, 0), 0);
    QCOMPARE(tool.annotHandler, nullptr);
    MemoryDocument document;
    document.AddPage(100, 100);
    MemoryDocument::AnnotRecord record;
    record.id = 3;
    IG_Annot* annot = document.AddAnnot(0, record);
    tool.SimulateBegin(annot);
    QCOMPARE(tool.Simulated(), annot);
    tool.SimulateEnd();
    QCOMPARE(tool.Simulated(), nullptr);
    G_AnnotationHandler handler;
    handler.SetCurrentAnnot(annot);
    QCOMPARE(handler.CurrentAnnot(), annot);
    handler.SetCurrentAnnot(nullptr);
    QCOMPARE(handler.CurrentAnnot(), nullptr);
}

void TestDocViewTools::theContextFindsTheClonesOfItsCurrentView()
{
    ScriptedContext context;
    QCOMPARE(context.FindHandlerByName("t_handtool"), G_ToolRegistry::Instance().Find("t_handtool"));
    QCOMPARE(context.FindHandlerByName("t_none"), nullptr);
    ViewFixture fixture(pages);
    QCOMPARE(fixture.Context()->FindHandlerByName("t_handtool"), fixture.View()->ToolHandlerByName("t_handtool"));
}

} // namespace

TETO_TEST_MAIN(TestDocViewTools)
#include "test_doc_view_tools.moc"
