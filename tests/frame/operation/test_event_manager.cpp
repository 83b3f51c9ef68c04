#include "operation_fakes.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <tests/support/test_main.h>

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <thread>

namespace {

// An event that tells when and where it is deleted.
class WatchedEvent : public G_Event
{
public:
    WatchedEvent(unsigned short type, int* deleted, G_DocView* view = nullptr, QThread** where = nullptr)
        : G_Event(type)
        , deleted(deleted)
        , view(view)
        , where(where)
    {
    }
    ~WatchedEvent() override
    {
        ++*deleted;
        if (where)
            *where = QThread::currentThread();
    }
    G_DocView* View() const override { return view; }

private:
    int* deleted;    // not owned
    G_DocView* view; // not owned
    QThread** where; // not owned
};

// Runs the call on a thread of its own and waits for it.
void RunOnWorker(const std::function<void()>& call)
{
    std::thread(call).join();
}

} // namespace

class TestEventManager : public QObject
{
    Q_OBJECT

    std::unique_ptr<G_EventMgr> manager;
    QStringList journal;

signals:
    void AllDelivered();

private slots:
    void init()
    {
        journal.clear();
        manager = std::make_unique<G_EventMgr>();
        connect(manager.get(), SIGNAL(EventFired(G_Event*)), this, SLOT(Note(G_Event*)));
    }

    void cleanup() { manager.reset(); }

    void onTheMainThreadAnEventIsDeliveredAtOnceAndThenDeleted()
    {
        int deleted = 0;
        manager->Deliver(new WatchedEvent(173, &deleted));
        QCOMPARE(journal, QStringList({"173"}));
        QCOMPARE(deleted, 1);
    }

    void aNullEventIsIgnored()
    {
        manager->Deliver(nullptr);
        RunOnWorker([this] { manager->Deliver(nullptr); });
        TurnEventLoop();
        QVERIFY(journal.isEmpty());
    }

    void theTypesCarryTheirArguments()
    {
        const G_DocumentChangedEvent changed(FakeView(1), EventType::DocumentChanged, 0);
        QCOMPARE(int(changed.TypeEnum()), 110);
        QCOMPARE(changed.SubType(), 0);
        QCOMPARE(changed.View(), FakeView(1));
        const G_DocViewEvent zoomed(FakeView(2), EventType::ViewZoomChanged);
        QCOMPARE(int(zoomed.TypeEnum()), 152);
        QCOMPARE(zoomed.View(), FakeView(2));
        const G_AnnotationEvent annotation(FakeDocument(1), nullptr, EventType::AnnotChanged);
        QCOMPARE(int(annotation.TypeEnum()), 111);
        QCOMPARE(annotation.Document(), FakeDocument(1));
        QVERIFY(!annotation.Annot() && !annotation.View());
        const G_StringEvent text(QStringLiteral("Undo failed"), EventType::StatusText);
        QCOMPARE(int(text.TypeEnum()), 173);
        QCOMPARE(text.Text(), QStringLiteral("Undo failed"));
        const G_UpdateSubScreenEvent screens(EventType::SubScreensChanged);
        QCOMPARE(int(screens.TypeEnum()), 332);
        CommandBarSettingData data;
        data.names = QStringList{QStringLiteral("t_handtool")};
        data.value = true;
        const G_CommandBarOpChangedEvent bar(data);
        QCOMPARE(int(bar.TypeEnum()), 260);
        QCOMPARE(bar.Data().names, data.names);
        QCOMPARE(bar.Data().kind, 7);
        QVERIFY(bar.Data().value);
    }

    void anEventFiredInsideAListenerIsDeliveredAtOnce()
    {
        const auto nest = [this](G_Event* event) {
            if (event->TypeEnum() == 1000) {
                manager->Deliver(new G_Event(110));
                journal.append("end of 1000");
            }
        };
        connect(manager.get(), &G_EventMgr::EventFired, this, nest);
        manager->Deliver(new G_Event(1000));
        QCOMPARE(journal, QStringList({"1000", "110", "end of 1000"}));
    }

    void fromAWorkerEventsArePostedAndArriveInOrder()
    {
        int deleted = 0;
        QThread* where = nullptr;
        RunOnWorker([&] {
            for (unsigned short type = 1; type <= 100; ++type)
                manager->Deliver(new WatchedEvent(type, &deleted, nullptr, &where));
        });
        QVERIFY(journal.isEmpty()); // not before the main thread is back in its event loop
        QCOMPARE(deleted, 0);
        TurnEventLoop();
        QStringList expected;
        for (int type = 1; type <= 100; ++type)
            expected.append(QString::number(type));
        QCOMPARE(journal, expected);
        QCOMPARE(deleted, 100);
        QCOMPARE(where, QThread::currentThread());
    }

    void eventsOfAWorkerAreDeliveredBeforeTheSignalThatItSendsAfterThem()
    {
        connect(
            this, &TestEventManager::AllDelivered, this, [this] { journal.append("close"); }, Qt::QueuedConnection);
        RunOnWorker([this] {
            manager->Deliver(new G_Event(110));
            emit AllDelivered();
        });
        TurnEventLoop();
        disconnect(this, &TestEventManager::AllDelivered, nullptr, nullptr);
        QCOMPARE(journal, QStringList({"110", "close"}));
    }

    void aPostedEventOfAViewThatDiedIsDropped()
    {
        int deleted = 0;
        manager->KnowView(FakeView(1));
        manager->KnowView(FakeView(2));
        RunOnWorker([&] {
            manager->Deliver(new WatchedEvent(110, &deleted, FakeView(1)));
            manager->Deliver(new WatchedEvent(152, &deleted, FakeView(2)));
        });
        manager->ForgetView(FakeView(1));
        TurnEventLoop();
        QCOMPARE(journal, QStringList({"152"}));
        QCOMPARE(deleted, 2);
    }

    void aPostedEventIsNotGivenToALaterViewAtTheSameAddress()
    {
        manager->KnowView(FakeView(1));
        RunOnWorker([&] { manager->Deliver(new G_DocumentChangedEvent(FakeView(1), 110, 0)); });
        manager->ForgetView(FakeView(1));
        manager->KnowView(FakeView(1));
        TurnEventLoop();
        QVERIFY(journal.isEmpty());
        manager->Deliver(new G_DocumentChangedEvent(FakeView(1), 110, 0));
        QCOMPARE(journal, QStringList({"110"}));
    }

    void anEventOfAnUnknownViewIsDropped()
    {
        int deleted = 0;
        manager->Deliver(new WatchedEvent(110, &deleted, FakeView(3)));
        QVERIFY(journal.isEmpty());
        QCOMPARE(deleted, 1);
        manager->KnowView(FakeView(3));
        manager->KnowView(FakeView(3));
        manager->Deliver(new WatchedEvent(110, &deleted, FakeView(3)));
        QCOMPARE(journal, QStringList({"110"}));
    }

    void eventsStillPostedAreFreedWithTheManager()
    {
        int deleted = 0;
        RunOnWorker([&] { manager->Deliver(new WatchedEvent(110, &deleted)); });
        manager.reset();
        TurnEventLoop();
        QVERIFY(journal.isEmpty());
        QCOMPARE(deleted, 1);
    }

    void aListenerMayDestroyTheManager()
    {
        int deleted = 0;
        connect(manager.get(), &G_EventMgr::EventFired, this, [this] { manager.reset(); });
        manager->SetCurrentViewSource([] { return FakeView(1); });
        manager->Deliver(new WatchedEvent(111, &deleted));
        QVERIFY(!manager);
        QCOMPARE(deleted, 1);
    }

    void aChangedAnnotationIsFollowedByAnnotModifyForTheCurrentView()
    {
        connect(manager.get(), SIGNAL(AnnotModify(G_DocView*, IG_Document*)), this,
                SLOT(NoteModify(G_DocView*, IG_Document*)));
        manager->SetCurrentViewSource([] { return FakeView(4); });
        manager->Deliver(new G_AnnotationEvent(FakeDocument(2), nullptr, EventType::AnnotChanged));
        QCOMPARE(journal, QStringList({"111", "modify"}));
        manager->Deliver(new G_Event(110));
        QCOMPARE(journal, QStringList({"111", "modify", "110"}));
    }

    void signalsConnectByStringAndCrossQueuedConnections()
    {
        QSignalSpy spy(manager.get(), SIGNAL(EventFired(G_Event*)));
        QVERIFY(spy.isValid());
        QVERIFY(QMetaType::type("G_Event*") != QMetaType::UnknownType);
        QVERIFY(QMetaType::type("IG_Document*") != QMetaType::UnknownType);
        connect(manager.get(), SIGNAL(PageChange(G_DocView*)), this, SLOT(NoteView(G_DocView*)), Qt::QueuedConnection);
        emit manager->PageChange(FakeView(5));
        QVERIFY(journal.isEmpty());
        TurnEventLoop();
        QCOMPARE(journal, QStringList({"view"}));
    }

    void pageStructChangedConnectsByPointerToMember()
    {
        IG_Document* seen = nullptr;
        connect(manager.get(), &CRF_EventMgr::PageStructChanged, this, [&](IG_Document* document) { seen = document; });
        emit manager->PageStructChanged(FakeDocument(3));
        QCOMPARE(seen, FakeDocument(3));
    }

public slots:
    void Note(G_Event* event) { journal.append(QString::number(event->TypeEnum())); }
    void NoteModify(G_DocView* view, IG_Document* document)
    {
        journal.append(view == FakeView(4) && document == FakeDocument(2) ? "modify" : "wrong arguments");
    }
    void NoteView(G_DocView* view) { journal.append(view == FakeView(5) ? "view" : "wrong view"); }
};

TETO_TEST_MAIN(TestEventManager)
#include "test_event_manager.moc"
