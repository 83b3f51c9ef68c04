// Pages of the navigation bar and when their panes are made.
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/base/log.h>
#include <frame/navigation/icore.h>
#include <frame/navigation/id.h>
#include <frame/navigation/iplugin.h>
#include <frame/navigation/navigation_page.h>
#include <frame/navigation/pane_maker.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/registry.h>

#include <QPointer>
#include <QPushButton>
#include <QSet>
#include <QTimer>
#include <QUndoStack>
#include <QtTest>

using Core::G_NavigationPage;
using Core::G_PaneMaker;

namespace {

const QString pages = QStringLiteral("page 210 297\n").repeated(3);

class PaneInterceptor : public G_OperationInterceptor
{
public:
    bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, "d_touch"); }
    bool PrepareDataHandle(G_Operation* /*op*/, int /*flag*/) override
    {
        ++asked;
        return true;
    }
    int asked = 0;
};

// A pane as panes are: an interceptor of its own, and tied for life to the stack of the view that was current.
class ProbePane : public QWidget
{
public:
    explicit ProbePane(G_UIContext* context)
        : stackView(context ? context->CurrentDocView() : nullptr)
    {
    }
    PaneInterceptor interceptor;
    G_DocView* stackView;
};

class ProbePage : public G_NavigationPage
{
public:
    ProbePage(const char* name, int place)
    {
        setObjectName(QString::fromLatin1(name));
        id = Core::Id(name);
        position = place;
    }
    QWidget* CreateWidget(IG_Document* document) override
    {
        order.append(objectName());
        asked.append(document);
        hadContext = Context() != nullptr;
        if (givesNothing)
            return nullptr;
        auto* pane = new ProbePane(Context());
        if (performs)
            Context()->PerformOperation("d_touch", QString());
        return pane;
    }
    ProbePane* Pane(IG_Document* document) const { return dynamic_cast<ProbePane*>(WidgetFor(document)); }
    QList<IG_Document*> asked;
    bool givesNothing = false;
    bool performs = false;
    bool hadContext = false;
    static QStringList order; // of making, all pages
};
QStringList ProbePage::order;

class TouchOperation : public G_Operation
{
public:
    G_Operation* Clone() const override
    {
        auto* copy = new TouchOperation;
        copy->CopyFrom(this);
        return copy;
    }
    const char* Name() const override { return "d_touch"; }
    bool DoAction() override { return true; }
};

// Pages, an operation and a maker over an open document, wired as the reader's window does.
struct Bar
{
    Bar()
        : fixture(pages)
        , maker(fixture.Context())
    {
        ProbePage::order.clear();
        touch.RegisterToGlobal();
        fixture.Context()->SetPaneMaker([this](IG_Document* document) { maker.MakeAll(document); });
    }
    ~Bar()
    {
        fixture.Context()->SetPaneMaker({});
        maker.DocumentClosing(fixture.Document());
    }
    TouchOperation touch;
    ProbePage third{"ui.navis.third", 30};
    ProbePage first{"ui.navis.first", 10};
    ProbePage second{"ui.navis.second", 20};
    ViewFixture fixture;
    G_PaneMaker maker;
};

class TestNavigation : public QObject
{
    Q_OBJECT
private slots:
    void pagesAreListedInOrderOfCreationAndLeaveWhenDestroyed();
    void pagesAreShownInOrderOfPosition();
    void titleButtonsBelongToTheirPane();
    void aPageHasNoActionBarOfItsOwn();
    void idsCompareByName();
    void theCoreKnowsTheContextAndItsDialogParent();
    void panesWaitForTheFirstPaintedPageAndComeOneATurn();
    void panesOfAViewThatIsNotCurrentWait();
    void anOperationMakesMissingPanesFirst();
    void twoDocumentsHaveTwoPanesWithSeparateInterceptorsAndStacks();
    void anOperationMeetsOnlyTheInterceptorsOfItsDocument();
    void aPaneOfAnotherDocumentIsAFrameError();
    void aPaneIsMadeOnce();
    void aPageThatGivesNoPaneIsNotAskedForEver();
    void anOperationDuringTheMakingMakesNoPaneTwice();
    void aPaneIsHiddenAndWithoutParentWhenItIsMade();
    void closingADocumentDeletesItsPanesOnly();
    void aPaneThatDiedIsMadeAgain();
};

void TestNavigation::pagesAreListedInOrderOfCreationAndLeaveWhenDestroyed()
{
    const int before = G_NavigationPage::allNaviPages().size();
    {
        ProbePage first("a", 20);
        ProbePage second("b", 10);
        const QList<G_NavigationPage*> all = G_NavigationPage::allNaviPages();
        QCOMPARE(all.mid(before), (QList<G_NavigationPage*>{&first, &second}));
    }
    QCOMPARE(G_NavigationPage::allNaviPages().size(), before);
}

void TestNavigation::pagesAreShownInOrderOfPosition()
{
    ProbePage third("c", 30);
    ProbePage first("a", 10);
    ProbePage second("b", 20);
    QCOMPARE(G_PaneMaker::PagesByPosition(), (QList<G_NavigationPage*>{&first, &second, &third}));
    QCOMPARE(first.Position(), 10);
    QVERIFY(first.PaneId() == Core::Id("a"));
}

void TestNavigation::titleButtonsBelongToTheirPane()
{
    ProbePage page("a", 10);
    QPushButton add;
    QPushButton remove;
    auto pane = std::make_unique<QWidget>();
    QWidget other;
    page.AddTitleButtonList(pane.get(), {&add, &remove});
    QCOMPARE(page.TitleButtons(pane.get()), (QList<QPushButton*>{&add, &remove}));
    QVERIFY(page.TitleButtons(&other).isEmpty());
    const QWidget* address = pane.get();
    pane.reset();
    QVERIFY(page.TitleButtons(const_cast<QWidget*>(address)).isEmpty());
}

void TestNavigation::aPageHasNoActionBarOfItsOwn()
{
    ProbePage page("a", 10);
    QCOMPARE(page.CreateActionBar(), nullptr);
}

void TestNavigation::idsCompareByName()
{
    const Core::Id id("ui.navis.bookmark");
    QVERIFY(id == Core::Id::FromString("ui.navis.bookmark"));
    QVERIFY(id != Core::Id("ui.navis.layer"));
    QCOMPARE(id.ToString(), QStringLiteral("ui.navis.bookmark"));
    QVERIFY(!Core::Id().IsValid());
    QCOMPARE((QSet<Core::Id>{id, Core::Id("ui.navis.bookmark")}.size()), 1);
}

void TestNavigation::theCoreKnowsTheContextAndItsDialogParent()
{
    QCOMPARE(Core::ICore::dialogParent(), nullptr);
    QWidget window;
    {
        ScriptedContext context;
        context.SetDialogParent(&window);
        Core::ICore::SetContext(&context);
        QCOMPARE(Core::ICore::dialogParent(), &window);
        QCOMPARE(Core::ICore::context(), static_cast<G_UIContext*>(&context));
    }
    QCOMPARE(Core::ICore::context(), nullptr); // the window died
    QCOMPARE(Core::ICore::dialogParent(), nullptr);
}

void TestNavigation::panesWaitForTheFirstPaintedPageAndComeOneATurn()
{
    Bar bar;
    bar.maker.ViewOpened(bar.fixture.View());
    ViewFixture::Settle();
    // The fixture's view was painted before it was watched, so nothing is due until the signal comes.
    QVERIFY(ProbePage::order.isEmpty());
    // Something that is queued when a pane was made is delivered before the next pane comes.
    int turn = 0;
    QList<int> turns;
    connect(&bar.maker, &G_PaneMaker::PaneMade, &bar.maker, [&] {
        turns.append(turn);
        QTimer::singleShot(0, &bar.maker, [&turn] { ++turn; });
    });
    emit bar.fixture.View()->FirstPagePainted();
    QVERIFY(turns.isEmpty());
    QTRY_COMPARE(turns.size(), 3);
    QCOMPARE(turns, (QList<int>{0, 1, 2}));
    QCOMPARE(ProbePage::order, (QStringList{"ui.navis.first", "ui.navis.second", "ui.navis.third"}));
    QVERIFY(bar.first.hadContext);
    QCOMPARE(bar.first.Context(), static_cast<G_UIContext*>(bar.fixture.Context()));
    QCOMPARE(bar.first.Pane(bar.fixture.Document())->stackView, bar.fixture.View());
    ViewFixture::Settle();
    QCOMPARE(turns.size(), 3);
}

void TestNavigation::panesOfAViewThatIsNotCurrentWait()
{
    Bar bar;
    OpenTab* tab = bar.fixture.Open(pages);
    bar.maker.ViewOpened(bar.fixture.View());
    emit bar.fixture.View()->FirstPagePainted(); // the second tab is current
    ViewFixture::Settle();
    QVERIFY(ProbePage::order.isEmpty());
    bar.fixture.SetCurrent(bar.fixture.View());
    QTRY_COMPARE(ProbePage::order.size(), 3);
    QCOMPARE(bar.first.asked, QList<IG_Document*>{bar.fixture.Document()});
    bar.fixture.Close(tab);
}

void TestNavigation::anOperationMakesMissingPanesFirst()
{
    Bar bar;
    QVERIFY(bar.fixture.Context()->PerformOperation("d_touch", QString()));
    QCOMPARE(ProbePage::order, (QStringList{"ui.navis.first", "ui.navis.second", "ui.navis.third"}));
    QCOMPARE(bar.first.Pane(bar.fixture.Document())->interceptor.asked, 1); // it took part already
}

void TestNavigation::twoDocumentsHaveTwoPanesWithSeparateInterceptorsAndStacks()
{
    Bar bar;
    const int before = G_OperationRegistry::Instance().InterceptorCount();
    bar.maker.MakeAll(bar.fixture.Document());
    OpenTab* tab = bar.fixture.Open(pages);
    bar.maker.MakeAll(tab->document.get());
    ProbePane* first = bar.first.Pane(bar.fixture.Document());
    ProbePane* second = bar.first.Pane(tab->document.get());
    QVERIFY(first && second && first != second);
    QCOMPARE(first->interceptor.Tag(), static_cast<IG_Document*>(bar.fixture.Document()));
    QCOMPARE(second->interceptor.Tag(), static_cast<IG_Document*>(tab->document.get()));
    QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), before + 6);
    QVERIFY(first->stackView->UndoStack() != second->stackView->UndoStack());
    bar.maker.DocumentClosing(tab->document.get());
    bar.fixture.Close(tab);
}

void TestNavigation::anOperationMeetsOnlyTheInterceptorsOfItsDocument()
{
    Bar bar;
    bar.maker.MakeAll(bar.fixture.Document());
    OpenTab* tab = bar.fixture.Open(pages);
    bar.maker.MakeAll(tab->document.get());
    bar.fixture.Context()->PerformOperation("d_touch", QString());
    QCOMPARE(bar.first.Pane(bar.fixture.Document())->interceptor.asked, 0);
    QCOMPARE(bar.first.Pane(tab->document.get())->interceptor.asked, 1);
    bar.maker.DocumentClosing(tab->document.get());
    bar.fixture.Close(tab);
}

void TestNavigation::aPaneOfAnotherDocumentIsAFrameError()
{
    Bar bar;
    OpenTab* tab = bar.fixture.Open(pages);
    QList<QByteArray> lines;
    SetFrameLogListener([&](const QByteArray& line) { lines.append(line); });
    QCOMPARE(bar.maker.PaneFor(&bar.first, bar.fixture.Document()), nullptr);
    SetFrameLogListener({});
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().contains("ui.navis.first"));
    bar.maker.MakeAll(bar.fixture.Document());
    QVERIFY(ProbePage::order.isEmpty());
    bar.maker.MakeAll(nullptr);
    QVERIFY(ProbePage::order.isEmpty());
    bar.fixture.Close(tab);
}

void TestNavigation::aPaneIsMadeOnce()
{
    Bar bar;
    QWidget* pane = bar.maker.PaneFor(&bar.second, bar.fixture.Document());
    QVERIFY(pane);
    QCOMPARE(bar.maker.PaneFor(&bar.second, bar.fixture.Document()), pane);
    bar.maker.MakeAll(bar.fixture.Document());
    bar.maker.MakeAll(bar.fixture.Document());
    QCOMPARE(ProbePage::order, (QStringList{"ui.navis.second", "ui.navis.first", "ui.navis.third"}));
}

void TestNavigation::aPageThatGivesNoPaneIsNotAskedForEver()
{
    Bar bar;
    bar.second.givesNothing = true;
    bar.maker.ViewOpened(bar.fixture.View());
    emit bar.fixture.View()->FirstPagePainted();
    QTRY_COMPARE(ProbePage::order.size(), 3);
    for (int i = 0; i < 10; ++i)
        ViewFixture::Settle();
    bar.maker.MakeAll(bar.fixture.Document());
    QCOMPARE(ProbePage::order.size(), 3);
    QCOMPARE(bar.second.WidgetFor(bar.fixture.Document()), nullptr);
}

void TestNavigation::anOperationDuringTheMakingMakesNoPaneTwice()
{
    Bar bar;
    bar.first.performs = true;
    bar.maker.MakeAll(bar.fixture.Document());
    QCOMPARE(ProbePage::order.count("ui.navis.first"), 1);
    QCOMPARE(ProbePage::order.count("ui.navis.second"), 1);
    QCOMPARE(ProbePage::order.count("ui.navis.third"), 1);
    QVERIFY(bar.first.Pane(bar.fixture.Document()));
}

void TestNavigation::aPaneIsHiddenAndWithoutParentWhenItIsMade()
{
    Bar bar;
    int seen = 0;
    connect(&bar.maker, &G_PaneMaker::PaneMade, &bar.maker,
            [&](G_NavigationPage* page, IG_Document* document, QWidget* pane) {
                ++seen;
                QVERIFY(!pane->isVisible());
                QCOMPARE(pane->parentWidget(), nullptr);
                QCOMPARE(page->WidgetFor(document), pane);
                QCOMPARE(G_InterceptorScope::Current(), nullptr);
            });
    bar.maker.MakeAll(bar.fixture.Document());
    QCOMPARE(seen, 3);
}

void TestNavigation::closingADocumentDeletesItsPanesOnly()
{
    Bar bar;
    bar.maker.MakeAll(bar.fixture.Document());
    OpenTab* tab = bar.fixture.Open(pages);
    bar.maker.MakeAll(tab->document.get());
    const QPointer<QWidget> kept(bar.first.WidgetFor(bar.fixture.Document()));
    const QPointer<QWidget> closed(bar.first.WidgetFor(tab->document.get()));
    const int before = G_OperationRegistry::Instance().InterceptorCount();
    bar.maker.DocumentClosing(tab->document.get());
    QVERIFY(kept);
    QVERIFY(!closed);
    QCOMPARE(bar.first.WidgetFor(tab->document.get()), nullptr);
    QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), before - 3);
    bar.fixture.Close(tab);
}

void TestNavigation::aPaneThatDiedIsMadeAgain()
{
    Bar bar;
    delete bar.maker.PaneFor(&bar.first, bar.fixture.Document());
    QCOMPARE(bar.first.WidgetFor(bar.fixture.Document()), nullptr);
    QVERIFY(bar.maker.PaneFor(&bar.first, bar.fixture.Document()));
}

} // namespace

TETO_TEST_MAIN(TestNavigation)
#include "test_navigation.moc"
