#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <frame/navigation/iplugin.h>
#include <frame/navigation/navigation_page.h>
#include <frame/navigation/pane_maker.h>
#include <frame/operation/registry.h>
#include <frame/view/tool_handler.h>

#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QTranslator>
#include <QTreeWidget>
#include <QUndoStack>
#include <QtTest>

using Core::G_NavigationPage;
using ExtensionSystem::IPlugin;

namespace {

const char* const pluginInterface = "com.orvane.OFD.PcApp";
constexpr int changesDocument = 1;

QStringList PageNames()
{
    QStringList names;
    for (const G_NavigationPage* page : G_NavigationPage::allNaviPages())
        names.append(page->objectName());
    return names;
}

G_NavigationPage* PageOf(const char* paneId)
{
    for (G_NavigationPage* page : G_NavigationPage::allNaviPages()) {
        if (page->PaneId() == Core::Id(paneId))
            return page;
    }
    return nullptr;
}

struct PaneWords
{
    const char* id;
    const char* className; // of the page; the context of its texts
    const char* title;     // and the object name
    const char* tooltip;
    const char* icon;
    int position;
};

const PaneWords panes[] = {
    {"ui.navis.outline", "NaviPageOutline", "Catalog", "View the document directory (Alt+Shift+1)",
     ":/core/res/icons/navi/vn_outline", 10},
    {"ui.navis.bookmark", "NaviBookmark", "Bookmark", "View document bookmarks (Alt+Shift+4)",
     ":/core/res/icons/navi/vn_bookmark", 40},
};

void AddPaneRows()
{
    QTest::addColumn<PaneWords>("pane");
    for (const PaneWords& pane : panes)
        QTest::newRow(pane.title) << pane;
}

// Every text translated is its source with a mark, so that a text that skips translation shows.
class MarkingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return QStringLiteral("[%1] %2").arg(QLatin1String(context), QLatin1String(source));
    }
};

} // namespace
Q_DECLARE_METATYPE(PaneWords)

class TestPluginModule : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void metadataNamesTheInterfaceTheClassAndTheVendor();
    void instanceIsOneObjectUntilItIsDeletedAndThenAFreshOne();
    void initializeIsTrueWhateverTheState();
    void nothingIsRegisteredBeforeExtensionsReady();
    void operationsAreRegisteredInTheirOrder();
    void everyRegisteredNameIsMadeByNameAndCloned();
    void operationsThatChangeTheDocumentSaySo();
    void aSecondExtensionsReadyMakesNothing();
    void pagesCarryTheirWordsIconIdAndPosition_data();
    void pagesCarryTheirWordsIconIdAndPosition();
    void titleAndTooltipGoThroughThePagesOwnContext_data();
    void titleAndTooltipGoThroughThePagesOwnContext();
    void pagesAreShownByPositionNotByCreation();
    void teardownTakesTheNamesOutInItsOwnOrder();
    void aPluginDestroyedBeforeExtensionsReadyFreesNothingAndFailsOnNothing();
    void registriesAreEmptyAfterTeardownAndFullAgainAfterAReload();
    void twoDocumentsGetTwoPanesWithSeparateInterceptorsAndAStackEach_data();
    void twoDocumentsGetTwoPanesWithSeparateInterceptorsAndAStackEach();
    void openingOperationWithoutAViewIsFalseAndOpensNothing();

private:
    IPlugin* Instance() { return qobject_cast<IPlugin*>(loader->instance()); }
    std::unique_ptr<QPluginLoader> loader;
};

void TestPluginModule::init()
{
    G_OperationRegistry::Instance().TakeDeregistrationLog();
    loader = std::make_unique<QPluginLoader>(QStringLiteral(MODULE_PATH));
    QVERIFY2(loader->load(), qPrintable(loader->errorString()));
    QVERIFY(Instance());
}

void TestPluginModule::cleanup()
{
    delete loader->instance();
    loader.reset();
    QVERIFY(G_NavigationPage::allNaviPages().isEmpty());
}

void TestPluginModule::metadataNamesTheInterfaceTheClassAndTheVendor()
{
    const QJsonObject record = loader->metaData();
    QCOMPARE(record.value(QStringLiteral("IID")).toString(), QLatin1String(pluginInterface));
    QCOMPARE(record.value(QStringLiteral("className")).toString(), QStringLiteral("NavigatiosPlugin"));
    const QJsonObject own = record.value(QStringLiteral("MetaData")).toObject();
    QCOMPARE(own.value(QStringLiteral("Vendor")).toString(), QStringLiteral("Orvane"));
    QVERIFY(own.value(QStringLiteral("Url")).toString().startsWith(QLatin1String("https://")));
}

void TestPluginModule::instanceIsOneObjectUntilItIsDeletedAndThenAFreshOne()
{
    using MakeInstance = QObject* (*)();
    const auto makeInstance =
        reinterpret_cast<MakeInstance>(QLibrary::resolve(QStringLiteral(MODULE_PATH), "qt_plugin_instance"));
    QVERIFY(makeInstance);
    const QPointer<QObject> first(makeInstance());
    QVERIFY(first);
    QCOMPARE(makeInstance(), first.data());
    QCOMPARE(loader->instance(), first.data());
    delete first;
    const QPointer<QObject> second(makeInstance());
    QVERIFY(first.isNull());
    QVERIFY(second);
    QCOMPARE(makeInstance(), second.data());
    QCOMPARE(QByteArray(second->metaObject()->className()), QByteArray("NavigatiosPlugin"));
}

void TestPluginModule::initializeIsTrueWhateverTheState()
{
    QVERIFY(Instance()->Initialize());
    Instance()->ExtensionsReady();
    QVERIFY(Instance()->Initialize());
    delete loader->instance();
    QVERIFY(Instance()->Initialize());
}

void TestPluginModule::nothingIsRegisteredBeforeExtensionsReady()
{
    QVERIFY(Instance()->Initialize());
    QCOMPARE(G_OperationRegistry::Instance().Names(), QStringList());
    QCOMPARE(PageNames(), QStringList());
}

void TestPluginModule::operationsAreRegisteredInTheirOrder()
{
    Instance()->ExtensionsReady();
    const QStringList expected{"vn_outline",
                               "d_addoutline",
                               "vn_bookmark",
                               "d_addbookmark",
                               "d_bookmarkresetposition",
                               "d_bookmarkrename",
                               "d_bookmarkwrap",
                               "d_bookmarkdelete",
                               "d_bookmarkdeleteall",
                               "d_outline_resetpos",
                               "d_outline_add",
                               "d_outline_addsub",
                               "d_outline_rename",
                               "d_outline_wordwrap",
                               "d_outline_expandsub",
                               "d_outline_del",
                               "d_outline_delall",
                               "d_outline_batchadd",
                               "d_outline_expandorcollapse"};
    QCOMPARE(G_OperationRegistry::Instance().Names(), expected);
    QCOMPARE(PageNames(), (QStringList{"Catalog", "Bookmark"}));
}

void TestPluginModule::everyRegisteredNameIsMadeByNameAndCloned()
{
    Instance()->ExtensionsReady();
    ViewFixture fixture(QStringLiteral("page 210 297"));
    const QStringList names = G_OperationRegistry::Instance().Names();
    QVERIFY(!names.isEmpty());
    for (const QString& name : names) {
        const G_Operation* prototype = G_OperationRegistry::Instance().Find(name.toUtf8());
        G_Operation* copy = fixture.Context()->CreateOperationByName(name.toUtf8(), QString());
        QVERIFY2(copy, qPrintable(name));
        QVERIFY(copy != prototype);
        QCOMPARE(QString::fromUtf8(copy->Name()), name);
        QCOMPARE(name, name.toLower());
        QCOMPARE(copy->DocView(), fixture.View());
        QVERIFY(!prototype->DocView());
        copy->Params->Add("row", 3);
        const std::unique_ptr<G_Operation> clone(copy->Clone());
        QVERIFY(typeid(*clone) == typeid(*prototype));
        QCOMPARE(clone->Params->GetInt32("row"), 3);
        QCOMPARE(clone->Result, 0);
        copy->DeleteLater();
    }
}

void TestPluginModule::operationsThatChangeTheDocumentSaySo()
{
    Instance()->ExtensionsReady();
    QStringList displayOnly;
    for (const QString& name : G_OperationRegistry::Instance().Names()) {
        const int authority = G_OperationRegistry::Instance().Find(name.toUtf8())->AuthorityType();
        if (authority == 0)
            displayOnly.append(name);
        else
            QVERIFY2(authority == changesDocument, qPrintable(name));
    }
    QCOMPARE(displayOnly, (QStringList{"vn_outline", "vn_bookmark", "d_bookmarkwrap", "d_outline_wordwrap",
                                       "d_outline_expandsub", "d_outline_expandorcollapse"}));
}

void TestPluginModule::aSecondExtensionsReadyMakesNothing()
{
    Instance()->ExtensionsReady();
    const QStringList names = G_OperationRegistry::Instance().Names();
    const QList<G_NavigationPage*> pages = G_NavigationPage::allNaviPages();
    Instance()->ExtensionsReady();
    QCOMPARE(G_OperationRegistry::Instance().Names(), names);
    QCOMPARE(G_NavigationPage::allNaviPages(), pages);
}

void TestPluginModule::pagesCarryTheirWordsIconIdAndPosition_data()
{
    AddPaneRows();
}

void TestPluginModule::pagesCarryTheirWordsIconIdAndPosition()
{
    QFETCH(PaneWords, pane);
    Instance()->ExtensionsReady();
    const G_NavigationPage* page = PageOf(pane.id);
    QVERIFY(page);
    QVERIFY(!page->parent());
    QCOMPARE(page->objectName(), QLatin1String(pane.title));
    QCOMPARE(page->Title(), QLatin1String(pane.title));
    QCOMPARE(page->Tooltip(), QLatin1String(pane.tooltip));
    QCOMPARE(page->IconPath(), QLatin1String(pane.icon));
    QCOMPARE(page->Position(), pane.position);
}

void TestPluginModule::titleAndTooltipGoThroughThePagesOwnContext_data()
{
    AddPaneRows();
}

void TestPluginModule::titleAndTooltipGoThroughThePagesOwnContext()
{
    QFETCH(PaneWords, pane);
    MarkingTranslator translator;
    QCoreApplication::installTranslator(&translator);
    Instance()->ExtensionsReady();
    QCoreApplication::removeTranslator(&translator);
    const G_NavigationPage* page = PageOf(pane.id);
    QVERIFY(page);
    const QString mark = QStringLiteral("[%1] ").arg(QLatin1String(pane.className));
    QCOMPARE(page->Title(), mark + pane.title);
    QCOMPARE(page->Tooltip(), mark + pane.tooltip);
    QCOMPARE(page->objectName(), QLatin1String(pane.title));
}

void TestPluginModule::pagesAreShownByPositionNotByCreation()
{
    // A page made ahead of the plugin's that belongs behind them, and one made after that belongs in front.
    struct OtherPage : G_NavigationPage
    {
        explicit OtherPage(int at) { position = at; }
        QWidget* CreateWidget(IG_Document*) override { return new QWidget; }
    };
    const OtherPage last(90);
    Instance()->ExtensionsReady();
    const OtherPage first(5);
    G_NavigationPage* outline = PageOf("ui.navis.outline");
    G_NavigationPage* bookmark = PageOf("ui.navis.bookmark");
    auto* const lastPage = static_cast<const G_NavigationPage*>(&last);
    auto* const firstPage = static_cast<const G_NavigationPage*>(&first);
    const auto listed = [](const QList<G_NavigationPage*>& pages) {
        return QList<const G_NavigationPage*>(pages.cbegin(), pages.cend());
    };
    QCOMPARE(listed(G_NavigationPage::allNaviPages()),
             (QList<const G_NavigationPage*>{lastPage, outline, bookmark, firstPage}));
    QCOMPARE(listed(Core::G_PaneMaker::PagesByPosition()),
             (QList<const G_NavigationPage*>{firstPage, outline, bookmark, lastPage}));
}

void TestPluginModule::teardownTakesTheNamesOutInItsOwnOrder()
{
    Instance()->ExtensionsReady();
    QStringList registeredAtPageDeath;
    QObject::connect(PageOf("ui.navis.bookmark"), &QObject::destroyed,
                     [&] { registeredAtPageDeath = G_OperationRegistry::Instance().Names(); });
    QCOMPARE(G_OperationRegistry::Instance().TakeDeregistrationLog(), QStringList());
    delete loader->instance();
    const QStringList expected{"vn_outline",
                               "d_addoutline",
                               "vn_bookmark",
                               "d_addbookmark",
                               "d_bookmarkresetposition",
                               "d_bookmarkrename",
                               "d_bookmarkwrap",
                               "d_bookmarkdelete",
                               "d_bookmarkdeleteall",
                               "d_outline_add",
                               "d_outline_resetpos",
                               "d_outline_addsub",
                               "d_outline_rename",
                               "d_outline_wordwrap",
                               "d_outline_expandsub",
                               "d_outline_del",
                               "d_outline_delall",
                               "d_outline_batchadd",
                               "d_outline_expandorcollapse"};
    QCOMPARE(G_OperationRegistry::Instance().TakeDeregistrationLog(), expected);
    // The page goes between the opening operations and those that change the document.
    QVERIFY(!registeredAtPageDeath.contains(QStringLiteral("vn_bookmark")));
    QVERIFY(registeredAtPageDeath.contains(QStringLiteral("d_addbookmark")));
}

void TestPluginModule::aPluginDestroyedBeforeExtensionsReadyFreesNothingAndFailsOnNothing()
{
    delete loader->instance();
    QCOMPARE(G_OperationRegistry::Instance().TakeDeregistrationLog(), QStringList());
}

void TestPluginModule::registriesAreEmptyAfterTeardownAndFullAgainAfterAReload()
{
    const QList<QByteArray> toolsBefore = G_ToolRegistry::Instance().Names();
    Instance()->ExtensionsReady();
    const QStringList names = G_OperationRegistry::Instance().Names();
    delete loader->instance();
    QCOMPARE(G_OperationRegistry::Instance().Names(), QStringList());
    QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), 0);
    QCOMPARE(G_ToolRegistry::Instance().Names(), toolsBefore);
    QVERIFY(G_NavigationPage::allNaviPages().isEmpty());
    loader->unload();
    loader = std::make_unique<QPluginLoader>(QStringLiteral(MODULE_PATH));
    QVERIFY(Instance());
    Instance()->ExtensionsReady();
    QCOMPARE(G_OperationRegistry::Instance().Names(), names);
    ViewFixture fixture(QStringLiteral("page 210 297"));
    QVERIFY(fixture.Context()->CreateOperationByName("d_addbookmark", QString()));
}

void TestPluginModule::twoDocumentsGetTwoPanesWithSeparateInterceptorsAndAStackEach_data()
{
    QTest::addColumn<QByteArray>("paneId");
    QTest::addColumn<QByteArray>("addition");
    QTest::addColumn<int>("interceptors");
    QTest::newRow("bookmarks") << QByteArray("ui.navis.bookmark") << QByteArray("d_addbookmark") << 5;
    QTest::newRow("outline") << QByteArray("ui.navis.outline") << QByteArray("d_outline_add") << 10;
}

void TestPluginModule::twoDocumentsGetTwoPanesWithSeparateInterceptorsAndAStackEach()
{
    QFETCH(QByteArray, paneId);
    QFETCH(QByteArray, addition);
    QFETCH(int, interceptors);
    Instance()->ExtensionsReady();
    ViewFixture fixture(QStringLiteral("page 210 297\nbookmark \"one\" page=1\noutline \"one\" page=1"));
    G_NavigationPage* page = PageOf(paneId);
    page->SetContext(fixture.Context());
    const auto makePane = [&](IG_Document* document) {
        return std::unique_ptr<QWidget>(fixture.MakePane(document, [&] { return page->CreateWidget(document); }));
    };
    std::unique_ptr<QWidget> first = makePane(fixture.Document());
    const int interceptorsOfOne = G_OperationRegistry::Instance().InterceptorCount();
    QCOMPARE(interceptorsOfOne, interceptors);
    OpenTab* other = fixture.Open(QStringLiteral("page 210 297\nbookmark \"two\" page=1\nbookmark \"three\" page=1\n"
                                                 "outline \"two\" page=1\noutline \"three\" page=1"));
    std::unique_ptr<QWidget> second = makePane(other->document.get());
    QVERIFY(first.get() != second.get());
    QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), 2 * interceptorsOfOne);
    QVERIFY(fixture.View()->UndoStack() != other->view->UndoStack());
    const auto rows = [](const std::unique_ptr<QWidget>& pane) {
        return pane->findChild<QTreeWidget*>()->topLevelItemCount();
    };
    QCOMPARE(rows(first), 1);
    QCOMPARE(rows(second), 2);
    fixture.Context()->PerformOperation(addition, QString());
    QCOMPARE(rows(first), 1);
    QCOMPARE(rows(second), 3);
    QCOMPARE(fixture.View()->UndoStack()->count(), 0);
    QCOMPARE(other->view->UndoStack()->count(), 1);
    first.reset();
    QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), interceptorsOfOne);
    second.reset();
    QCOMPARE(G_OperationRegistry::Instance().InterceptorCount(), 0);
}

void TestPluginModule::openingOperationWithoutAViewIsFalseAndOpensNothing()
{
    struct Navigation : G_Operation
    {
        explicit Navigation(int* runs)
            : runs(runs)
        {
        }
        G_Operation* Clone() const override { return new Navigation(runs); }
        const char* Name() const override { return "e_navigation"; }
        bool DoAction() override { return ++*runs > 0; }
        int* runs;
    };
    int runs = 0;
    Instance()->ExtensionsReady();
    Navigation navigation(&runs);
    navigation.RegisterToGlobal();
    ViewFixture fixture(QStringLiteral("page 210 297"));
    for (const char* name : {"vn_bookmark", "vn_outline"}) {
        runs = 0;
        fixture.SetCurrent(fixture.View());
        QVERIFY(fixture.Context()->PerformOperation(name, QString()));
        QCOMPARE(runs, 1);
        fixture.SetCurrent(nullptr);
        QVERIFY(!fixture.Context()->PerformOperation(name, QString()));
        QCOMPARE(runs, 1);
    }
}

TETO_TEST_MAIN(TestPluginModule)
#include "test_plugin_module.moc"
