// The context: boxes, notes, rights, events, life of views, actions.
#include "note_of_view.h"

#include <frame/operation/event_manager.h>
#include <frame/operation/interceptor.h>
#include <frame/view/settings.h>
#include <frame/view/status_note.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QMessageBox>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>
#include <QUndoStack>
#include <QtTest>

namespace {

// An operation of a given authority that counts its runs.
class CountingOperation : public G_Operation
{
public:
    explicit CountingOperation(int authority = Authority::Any)
        : authority(authority)
    {
    }
    G_Operation* Clone() const override
    {
        auto* copy = new CountingOperation(authority);
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return "d_count"; }
    int AuthorityType() const override { return authority; }
    bool DoAction() override
    {
        ++runs;
        lastText = Params->GetQString("key");
        lastView = DocView();
        return true;
    }
    static int runs;
    static QString lastText;
    static G_DocView* lastView;

private:
    int authority;
};
int CountingOperation::runs = 0;
QString CountingOperation::lastText;
G_DocView* CountingOperation::lastView = nullptr;

class ChangeTool : public GP_ChangeHandler
{
public:
    G_Operation* Clone() const override
    {
        auto* copy = new ChangeTool;
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return "t_change"; }
};

// Counts how often it is asked to prepare.
class CountingInterceptor : public G_OperationInterceptor
{
public:
    bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, "d_count"); }
    bool PrepareDataHandle(G_Operation* /*op*/, int /*flag*/) override
    {
        ++asked;
        return true;
    }
    int asked = 0;
};

class TestUiContext : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        CountingOperation::runs = 0;
        CountingOperation::lastView = nullptr;
    }
    void rightsRefuseBeforeInterceptorsWithOneNote_data();
    void rightsRefuseBeforeInterceptorsWithOneNote();
    void anOperationWithoutAViewRunsAndSeesNone();
    void operationsAreMadeForTheCurrentViewAndReadTheirText();
    void anUnknownOperationIsNull();
    void panesAreMadeBeforeAnOperationRuns();
    void makingAViewCurrentTellsListeners();
    void aDyingCurrentViewLeavesNone();
    void aWorkingCopyOutlivesItsViewWithoutIt();
    void eventsOfADeadViewAreDropped();
    void anAnnotationEventIsFollowedByAnnotModify();
    void eventsFromAnotherThreadAreDeliveredHere();
    void theZoomEventTellsTheViewsZoom();
    void undoRunsOnTheCurrentViewsStackOnly();
    void changingTheToolByOperation();
    void actionsGoInOrderOnTheirDocumentOnly();
    void unsupportedActionsLeaveOneNote();
    void aViewMayOutliveItsContext();
};

void TestUiContext::rightsRefuseBeforeInterceptorsWithOneNote_data()
{
    QTest::addColumn<int>("authority");
    QTest::addColumn<QString>("rights");
    QTest::addColumn<bool>("runs");
    const QString all;
    QTest::newRow("edit, all rights") << 1 << all << true;
    QTest::newRow("edit, forbidden") << 1 << "rights edit=no\n" << false;
    QTest::newRow("edit, read-only") << 1 << "readonly\n" << false;
    QTest::newRow("edit, only export forbidden") << 1 << "rights export=no\n" << true;
    QTest::newRow("annotate, forbidden") << 2 << "rights annot=no\n" << false;
    QTest::newRow("annotate, read-only") << 2 << "readonly\n" << false;
    QTest::newRow("annotate, editing forbidden") << 2 << "rights edit=no\n" << true;
    QTest::newRow("export, forbidden") << 4 << "rights export=no\n" << false;
    QTest::newRow("export, read-only") << 4 << "readonly\n" << true;
    QTest::newRow("any, all forbidden") << 0 << "rights edit=no annot=no export=no\nreadonly\n" << true;
    QTest::newRow("display, all forbidden") << 16384 << "rights edit=no annot=no export=no\nreadonly\n" << true;
}

void TestUiContext::rightsRefuseBeforeInterceptorsWithOneNote()
{
    QFETCH(int, authority);
    QFETCH(QString, rights);
    QFETCH(bool, runs);
    CountingOperation prototype(authority);
    prototype.RegisterToGlobal();
    CountingInterceptor interceptor;
    ViewFixture fixture(pages + rights);
    QCOMPARE(fixture.Context()->PerformOperation("d_count", QString()), runs);
    QCOMPARE(CountingOperation::runs, runs ? 1 : 0);
    QCOMPARE(interceptor.asked, runs ? 1 : 0);
    const G_StatusNote* note = NoteOf(fixture.View());
    QCOMPARE(note != nullptr, !runs);
    QVERIFY(runs || (note->isVisible() && !note->text().isEmpty() && note->Waiting().isEmpty()));
}

void TestUiContext::anOperationWithoutAViewRunsAndSeesNone()
{
    CountingOperation prototype(Authority::EditDocument);
    prototype.RegisterToGlobal();
    ScriptedContext context;
    QVERIFY(context.PerformOperation("d_count", QString()));
    QCOMPARE(CountingOperation::lastView, nullptr);
}

void TestUiContext::operationsAreMadeForTheCurrentViewAndReadTheirText()
{
    CountingOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(pages);
    fixture.Open(pages);
    fixture.SetCurrent(fixture.View());
    QVERIFY(fixture.Context()->PerformOperation("d_count", QStringLiteral("{\"key\":\"value\"}")));
    QCOMPARE(CountingOperation::lastText, QStringLiteral("value"));
    QCOMPARE(CountingOperation::lastView, fixture.View());
}

void TestUiContext::anUnknownOperationIsNull()
{
    ViewFixture fixture(pages);
    QCOMPARE(fixture.Context()->CreateOperationByName("d_nothing", QString()), nullptr);
    QVERIFY(!fixture.Context()->PerformOperation("d_nothing", QString()));
}

void TestUiContext::panesAreMadeBeforeAnOperationRuns()
{
    CountingOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(pages);
    QList<IG_Document*> made;
    int runsThen = -1;
    fixture.Context()->SetPaneMaker([&](IG_Document* document) {
        made.append(document);
        runsThen = CountingOperation::runs;
    });
    fixture.Context()->PerformOperation("d_count", QString());
    QCOMPARE(made, QList<IG_Document*>{fixture.Document()});
    QCOMPARE(runsThen, 0);
    QCOMPARE(CountingOperation::runs, 1);
}

void TestUiContext::makingAViewCurrentTellsListeners()
{
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::SwitchDocView);
    QSignalSpy screens(fixture.Context()->EventMgr(), &G_EventMgr::ActivedScreenChanged);
    fixture.SetCurrent(fixture.View());
    fixture.SetCurrent(fixture.View());
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<G_DocView*>(), fixture.View());
    QCOMPARE(screens.count(), 0); // that is for another screen of the same document
    QCOMPARE(fixture.Context()->DocViews(), (QList<G_DocView*>{fixture.View(), second->view.get()}));
}

void TestUiContext::aDyingCurrentViewLeavesNone()
{
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::SwitchDocView);
    fixture.Close(second);
    QCOMPARE(fixture.Context()->CurrentDocView(), nullptr);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().value<G_DocView*>(), nullptr);
    QCOMPARE(fixture.Context()->DocViews(), QList<G_DocView*>{fixture.View()});
}

void TestUiContext::aWorkingCopyOutlivesItsViewWithoutIt()
{
    CountingOperation prototype;
    prototype.RegisterToGlobal();
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    G_Operation* op = fixture.Context()->CreateOperationByName("d_count", QString());
    QCOMPARE(op->DocView(), second->view.get());
    QCOMPARE(op->UIContext(), static_cast<G_UIContext*>(fixture.Context()));
    fixture.SetCurrent(fixture.View());
    QCOMPARE(op->DocView(), second->view.get()); // bound when it was made
    fixture.Close(second);
    QCOMPARE(op->DocView(), nullptr);
    QCOMPARE(op->GDocument(), nullptr);
    op->DeleteLater();
}

void TestUiContext::eventsOfADeadViewAreDropped()
{
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    fixture.TakeFiredEvents();
    G_DocView* dying = second->view.get();
    QThread* worker = QThread::create([&] {
        fixture.Context()->FireEvent(new G_DocumentChangedEvent(dying, EventType::DocumentChanged, 0));
        fixture.Context()->FireEvent(new G_DocumentChangedEvent(fixture.View(), EventType::DocumentChanged, 0));
    });
    worker->start();
    worker->wait();
    delete worker;
    QVERIFY(fixture.TakeFiredEvents().isEmpty()); // posted, not delivered yet
    second->view.reset();
    ViewFixture::Settle();
    QCOMPARE(fixture.TakeFiredEvents(), QList<int>{110});
}

void TestUiContext::anAnnotationEventIsFollowedByAnnotModify()
{
    ViewFixture fixture(pages + QStringLiteral("page 100 100\n  annot id=5 type=8 rect=10,10,40,20\n"));
    IG_Page* page = fixture.View()->Page(5);
    page->LoadAnnots();
    IG_Annot* annot = page->GetAnnotById(5);
    QVERIFY(annot);
    QStringList order;
    connect(fixture.Context()->EventMgr(), &G_EventMgr::EventFired, fixture.Context(),
            [&](G_Event* event) { order.append(QString::number(event->TypeEnum())); });
    connect(fixture.Context()->EventMgr(), &G_EventMgr::AnnotModify, fixture.Context(),
            [&](G_DocView* view, IG_Document* document) {
                order.append(QStringLiteral("modify"));
                QCOMPARE(view, fixture.View());
                QCOMPARE(document, static_cast<IG_Document*>(fixture.Document()));
            });
    fixture.Context()->FireEvent(new G_AnnotationEvent(fixture.Document(), annot, EventType::AnnotChanged));
    QCOMPARE(order, (QStringList{"111", "modify"}));
}

void TestUiContext::eventsFromAnotherThreadAreDeliveredHere()
{
    ViewFixture fixture(pages);
    QThread* seenOn = nullptr;
    connect(
        fixture.Context()->EventMgr(), &G_EventMgr::EventFired, fixture.Context(),
        [&](G_Event*) { seenOn = QThread::currentThread(); }, Qt::DirectConnection);
    QThread* worker = QThread::create([&] {
        fixture.Context()->FireEvent(new G_StringEvent(QStringLiteral("from a worker"), EventType::StatusText));
    });
    worker->start();
    worker->wait();
    delete worker;
    ViewFixture::Settle();
    QCOMPARE(seenOn, QThread::currentThread());
    QCOMPARE(NoteOf(fixture.View())->text(), QStringLiteral("from a worker"));
}

void TestUiContext::theZoomEventTellsTheViewsZoom()
{
    ViewFixture fixture(pages);
    fixture.View()->SetZoom(250, false);
    QSignalSpy spy(fixture.View(), &G_DocView::ZoomChanged);
    fixture.Context()->FireEvent(new G_DocViewEvent(fixture.View(), EventType::ViewZoomChanged));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toFloat(), 250.0F);
}

void TestUiContext::undoRunsOnTheCurrentViewsStackOnly()
{
    ViewFixture fixture(pages);
    OpenTab* second = fixture.Open(pages);
    fixture.View()->UndoStack()->push(new QUndoCommand);
    QVERIFY(!fixture.Context()->Undo()); // the second view is current and has nothing to undo
    second->view->UndoStack()->push(new QUndoCommand);
    QVERIFY(fixture.Context()->Undo());
    QCOMPARE(fixture.View()->UndoStack()->index(), 1);
    QCOMPARE(second->view->UndoStack()->index(), 0);
    QVERIFY(fixture.Context()->Redo());
    QVERIFY(!fixture.Context()->Redo());
    ScriptedContext empty;
    QVERIFY(!empty.Undo());
}

void TestUiContext::changingTheToolByOperation()
{
    ChangeTool prototype;
    prototype.RegisterToGlobal();
    ScriptedContext without;
    QVERIFY(!without.PerformOperation("t_change", QStringLiteral("{\"name\":\"t_textselect\"}")));
    ViewFixture fixture(pages);
    QVERIFY(!fixture.Context()->PerformOperation("t_change", QStringLiteral("{\"name\":\"t_nothing\"}")));
    QVERIFY(fixture.Context()->PerformOperation("t_change", QStringLiteral("{\"name\":\"t_textselect\"}")));
    QVERIFY(fixture.View()->CurrentToolHandler()->Name() == "t_textselect");
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::ToolHandlerChange);
    QVERIFY(fixture.Context()->PerformOperation("t_change", QStringLiteral("{\"name\":\"t_textselect\"}")));
    QCOMPARE(spy.count(), 0);
}

void TestUiContext::actionsGoInOrderOnTheirDocumentOnly()
{
    ViewFixture fixture(pages);
    G_ActionGoto first;
    first.dest->pageIndex = 3;
    G_ActionGoto second;
    second.dest->pageId = fixture.Document()->PageIdFromIndex(1);
    second.dest->pageIndex = 4; // the id counts
    second.dest->zoom = 1.5;
    CCA_ArrayTemplate<G_Action*> actions;
    actions.Add(&first);
    actions.Add(&second);
    MemoryDocument other;
    fixture.Context()->ActionHandler()->DoActions(actions, &other, 3);
    QCOMPARE(fixture.View()->CurrentPageIndex(), 0);
    QSignalSpy spy(fixture.Context()->EventMgr(), &G_EventMgr::PageChange);
    fixture.Context()->ActionHandler()->DoActions(actions, fixture.Document(), 3);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(fixture.View()->CurrentPageIndex(), 1);
    QCOMPARE(fixture.View()->GetZoom(), 150.0F);
    G_SettingMgr::Instance()->SetConfigValue(QStringLiteral("read.keepcurrentzoom"), true);
    second.dest->zoom = 3;
    fixture.Context()->ActionHandler()->DoActions(actions, fixture.Document(), 3);
    QCOMPARE(fixture.View()->GetZoom(), 150.0F);
}

void TestUiContext::unsupportedActionsLeaveOneNote()
{
    ViewFixture fixture(pages);
    G_Action unknown;
    G_ActionUri uri;
    CCA_ArrayTemplate<G_Action*> actions;
    actions.Add(&unknown);
    actions.Add(&uri);
    fixture.Context()->ActionHandler()->DoActions(actions, fixture.Document(), 3);
    const G_StatusNote* note = NoteOf(fixture.View());
    QVERIFY(note && note->isVisible());
    QVERIFY(note->Waiting().isEmpty());
}

void TestUiContext::aViewMayOutliveItsContext()
{
    const std::unique_ptr<MemoryDocument> document = MemoryDocument::FromText(pages);
    auto context = std::make_unique<ScriptedContext>();
    G_DocView view(context.get(), document.get());
    context.reset();
    QCOMPARE(view.UIContext(), nullptr);
    view.GoToPage(&view, 2, CCA_GRect(), false);
    view.SetCurrentToolHandler(view.ToolHandlerByName("t_textselect"));
    QCOMPARE(view.CurrentPageIndex(), 2);
}

} // namespace

TETO_TEST_MAIN(TestUiContext)
#include "test_ui_context.moc"
