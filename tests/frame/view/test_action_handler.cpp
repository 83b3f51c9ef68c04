// What a click on an entry runs: jumps, addresses, bookmarks, and what cannot be run.
#include <tests/support/event_probe.h>
#include <tests/support/opened_addresses.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/operation/event_manager.h>

#include <QSignalSpy>
#include <QtTest>

namespace {

constexpr int ok = 1024;
constexpr int cancel = 4194304;
constexpr int okAndCancel = 4195328;

const QString document = QStringLiteral("page 210 297\n").repeated(5) +
                         QStringLiteral("bookmark \"mark\" page=3 rect=0,0,100,50 zoom=1.5 mode=0\n");

} // namespace

class TestActionHandler : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fixture = std::make_unique<ViewFixture>(document);
        probe = std::make_unique<EventProbe>(fixture->Context()->EventMgr());
    }

    void cleanup()
    {
        probe.reset();
        fixture.reset();
    }

    void anAddressIsOpenedWhenTheUserAgrees()
    {
        Opened opened;
        fixture->Context()->Answer(ok);
        RunUri("https://example.org/a?b=c");
        const AskedBox box = fixture->Context()->LastAsked();
        QCOMPARE(box.kind, QStringLiteral("question"));
        QVERIFY(box.text.contains("https://example.org/a?b=c"));
        QCOMPARE(box.buttons, okAndCancel);
        QCOMPARE(box.defaultButton, cancel);
        QCOMPARE(opened.urls, QStringList{"https://example.org/a?b=c"});
        QVERIFY(probe->StatusTexts().isEmpty());
    }

    void anAddressIsNotOpenedWhenTheUserDeclines()
    {
        Opened opened;
        for (const int answer : {cancel, 2097152}) {
            fixture->Context()->Answer(answer);
            RunUri("https://example.org");
        }
        QVERIFY(opened.urls.isEmpty());
        QVERIFY(probe->StatusTexts().isEmpty());
    }

    void anAddressOfAnotherKindIsRefusedWithANote()
    {
        Opened opened;
        fixture->Context()->Answer(ok);
        RunUri("file:///etc/passwd");
        QVERIFY(opened.urls.isEmpty());
        QCOMPARE(probe->StatusTexts(), QStringList{"This address cannot be opened."});
    }

    void anEmptyAddressAsksNothing()
    {
        RunUri("");
        QVERIFY(fixture->Context()->Asked().isEmpty());
        QCOMPARE(probe->StatusTexts().size(), 1);
    }

    void aVeryLongAddressIsShownShortened()
    {
        fixture->Context()->Answer(cancel);
        RunUri("https://example.org/" + QByteArray(10000, 'x'));
        QVERIFY(fixture->Context()->LastAsked().text.size() < 500);
    }

    void aJumpByWayOfABookmarkGoesWhereTheBookmarkIsNow()
    {
        G_ActionGoto jump;
        jump.bookmarkName = "mark";
        jump.dest->pageIndex = 1; // where it was when the document was read
        Run({&jump});
        QCOMPARE(fixture->View()->CurrentPageIndex(), 2);
        auto* moved = new G_Bookmark;
        moved->name = "mark";
        moved->dest->pageIndex = 4;
        fixture->Document()->GetBookmarkRoot()->SubNode(0)->SetNodeData(moved);
        Run({&jump});
        QCOMPARE(fixture->View()->CurrentPageIndex(), 4);
    }

    void aJumpToABookmarkThatIsGoneStaysAndSaysSo()
    {
        G_ActionGoto jump;
        jump.bookmarkName = "mark";
        jump.dest->pageIndex = 2;
        fixture->Document()->GetBookmarkRoot()->RemoveSubNode(0);
        Run({&jump});
        QCOMPARE(fixture->View()->CurrentPageIndex(), 0);
        QCOMPARE(probe->StatusTexts(), QStringList{"The bookmark “mark” does not exist."});
    }

    void aJumpToABookmarkInADocumentWithoutAnySaysSo()
    {
        fixture->Open("page 210 297\n");
        G_ActionGoto jump;
        jump.bookmarkName = "mark";
        CCA_ArrayTemplate<G_Action*> actions;
        actions.Add(&jump);
        fixture->Context()->ActionHandler()->DoActions(actions, fixture->Context()->CurrentDocView()->GDocument(), 3);
        QCOMPARE(probe->StatusTexts().size(), 1);
    }

    void aJumpToAPageThatIsNotThereStaysAndSaysSo_data()
    {
        QTest::addColumn<int>("pageId");
        QTest::addColumn<int>("pageIndex");
        QTest::newRow("unknown id") << 99 << 1;
        QTest::newRow("index behind the last") << 0 << 5;
        QTest::newRow("negative index") << 0 << -1;
    }

    void aJumpToAPageThatIsNotThereStaysAndSaysSo()
    {
        QFETCH(int, pageId);
        QFETCH(int, pageIndex);
        G_ActionGoto jump;
        jump.dest->pageId = pageId;
        jump.dest->pageIndex = pageIndex;
        Run({&jump});
        QCOMPARE(fixture->View()->CurrentPageIndex(), 0);
        QCOMPARE(probe->StatusTexts(), QStringList{"This page does not exist."});
    }

    void aJumpToACornerGoesThereWhateverIsLeftOut_data()
    {
        QTest::addColumn<float>("left");
        QTest::addColumn<float>("top");
        QTest::newRow("top alone, as most do") << 0.0F << 120.0F;
        QTest::newRow("left and top") << 60.0F << 120.0F;
        QTest::newRow("left alone") << 60.0F << 0.0F;
    }

    void aJumpToACornerGoesThereWhateverIsLeftOut()
    {
        QFETCH(float, left);
        QFETCH(float, top);
        fixture->View()->SetZoom(300, false); // so that the page is larger than the view
        G_ActionGoto jump;
        jump.dest->pageIndex = 2;
        jump.dest->left = left;
        jump.dest->top = top;
        Run({&jump});
        int page = -1;
        const QPoint corner = fixture->View()->VisibleSceneRect().topLeft();
        const CCA_GPoint place = fixture->View()->DocPointFromScenePoint({corner.x(), corner.y()}, &page);
        QCOMPARE(fixture->View()->CurrentPageIndex(), 2);
        QVERIFY(qAbs(place.x - left) < 1 || left == 0);
        QVERIFY(qAbs(place.y - top) < 1 || top == 0);
    }

    void allActionsRunInOrderAndEachKindOfFailureIsToldOnce()
    {
        G_Action unknown;
        G_Action another;
        G_ActionGoto first;
        first.dest->pageIndex = 3;
        G_ActionGoto nowhere;
        nowhere.dest->pageIndex = -1;
        G_ActionGoto second;
        second.dest->pageIndex = 1;
        QSignalSpy pages(fixture->Context()->EventMgr(), &G_EventMgr::PageChange);
        Run({&unknown, &first, nullptr, &nowhere, &another, &second});
        QCOMPARE(pages.count(), 2);
        QCOMPARE(fixture->View()->CurrentPageIndex(), 1);
        QCOMPARE(probe->StatusTexts(),
                 (QStringList{"This kind of action is not supported.", "This page does not exist."}));
    }

    void theRecordMayBeReplacedWhileAQuestionIsUp()
    {
        Opened opened;
        auto uri = std::make_unique<G_ActionUri>();
        uri->uri = "https://example.org/1";
        auto jump = std::make_unique<G_ActionGoto>();
        jump->dest->pageIndex = 3;
        fixture->Context()->Answer(ok);
        fixture->Context()->SetWhileOpen([&](const AskedBox&) {
            uri.reset();
            jump.reset();
        });
        CCA_ArrayTemplate<G_Action*> actions;
        actions.Add(uri.get());
        actions.Add(jump.get());
        fixture->Context()->ActionHandler()->DoActions(actions, fixture->Document(), 3);
        QCOMPARE(opened.urls, QStringList{"https://example.org/1"});
        QCOMPARE(fixture->View()->CurrentPageIndex(), 3);
    }

    void theRestIsNotRunWhenAnotherDocumentBecameCurrentMeanwhile()
    {
        Opened opened;
        OpenTab* other = fixture->Open(document);
        fixture->SetCurrent(fixture->View());
        fixture->Context()->Answer(ok);
        fixture->Context()->SetWhileOpen([&](const AskedBox&) { fixture->SetCurrent(other->view.get()); });
        G_ActionUri uri;
        uri.uri = "https://example.org";
        G_ActionGoto jump;
        jump.dest->pageIndex = 3;
        Run({&uri, &jump});
        QCOMPARE(fixture->View()->CurrentPageIndex(), 0);
        QCOMPARE(other->view->CurrentPageIndex(), 0);
    }

private:
    void Run(const QList<G_Action*>& list)
    {
        CCA_ArrayTemplate<G_Action*> actions;
        for (G_Action* action : list)
            actions.Add(action);
        fixture->Context()->ActionHandler()->DoActions(actions, fixture->Document(), 3);
    }

    void RunUri(const QByteArray& address)
    {
        G_ActionUri uri;
        uri.uri = address;
        Run({&uri});
    }

    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
};

TETO_TEST_MAIN(TestActionHandler)
#include "test_action_handler.moc"
