#include <bookmark/bookmark_events.h>
#include <bookmark/bookmark_node.h>
#include <bookmark/bookmark_operations.h>
#include <frame/base/converters.h>
#include <frame/base/log.h>
#include <frame/json/ovjson.h>
#include <frame/operation/event_manager.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/tree_dump.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

namespace {

// The host's operation that opens a pane, with what the others did before it.
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
        if (whenOpened)
            whenOpened();
        return true;
    }
    static QStringList opened;
    static std::function<void()> whenOpened;
};
QStringList NavigationDouble::opened;
std::function<void()> NavigationDouble::whenOpened;

struct BookmarkOperations
{
    BookmarkOperations()
    {
        for (G_Operation* operation : All())
            operation->RegisterToGlobal();
    }
    QList<G_Operation*> All() { return {&open, &add, &reset, &rename, &wrap, &remove, &removeAll}; }
    GP_BookmarkOperation open;
    GP_AddBookmark add;
    GP_BookmarkResetPosition reset;
    GP_BookmarkRename rename;
    GP_BookmarkWrap wrap;
    GP_BookmarkDelete remove;
    GP_BookmarkDeleteAll removeAll;
};

const char threeBookmarks[] = "page 210 297\n"
                              "page 210 297\n"
                              "bookmark \"A\" page=1 rect=0,0,10,10 zoom=1 mode=0\n"
                              "bookmark \"B\" page=1 rect=0,10,20,20 zoom=1.5 mode=2\n"
                              "bookmark \"C\" page=2 rect=0,20,30,30 zoom=2 mode=1\n";

G_HighLightItem Highlight(int pageIndex, int length)
{
    G_TextRun run;
    run.rect = CCA_GRect(20, 30, 20 + 2 * static_cast<float>(length), 34);
    G_HighLightItem item;
    item.pageIndex = pageIndex;
    item.runs = {run};
    return item;
}

QString PageWith(const QString& text)
{
    return QStringLiteral("page 600 297 id=7\n  text 20 30 %1\n").arg(text);
}

} // namespace

// The bookmark operations by name, on a document without a pane.
class TestBookmarkOperations : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        lines.clear();
        SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
        NavigationDouble::opened.clear();
        NavigationDouble::whenOpened = {};
        operations = std::make_unique<BookmarkOperations>();
        navigation = std::make_unique<NavigationDouble>();
        navigation->RegisterToGlobal();
    }

    void cleanup()
    {
        probe.reset();
        fixture.reset();
        operations.reset();
        navigation.reset();
        SetFrameLogListener({});
    }

    void eachOperationHasItsNameAndItsPermission_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("authority");
        QTest::newRow("open") << "vn_bookmark" << 0;
        QTest::newRow("add") << "d_addbookmark" << 1;
        QTest::newRow("reset") << "d_bookmarkresetposition" << 1;
        QTest::newRow("rename") << "d_bookmarkrename" << 1;
        QTest::newRow("wrap") << "d_bookmarkwrap" << 0;
        QTest::newRow("delete") << "d_bookmarkdelete" << 1;
        QTest::newRow("delete all") << "d_bookmarkdeleteall" << 1;
    }

    void eachOperationHasItsNameAndItsPermission()
    {
        QFETCH(QString, name);
        QFETCH(int, authority);
        Open(threeBookmarks);
        G_Operation* copy = Make(name.toLatin1());
        QVERIFY(copy);
        QCOMPARE(QString::fromLatin1(copy->Name()), name);
        QCOMPARE(copy->AuthorityType(), authority);
        copy->DeleteLater();
    }

    void aCloneTakesTheParametersAndNotTheResult()
    {
        for (G_Operation* operation : operations->All()) {
            operation->Params->Add("row", 3);
            operation->Result = 1;
            const std::unique_ptr<G_Operation> clone(operation->Clone());
            QCOMPARE(clone->Params->GetInt32("row"), 3);
            QCOMPARE(clone->Result, 0);
            QCOMPARE(QByteArray(clone->Name()), QByteArray(operation->Name()));
            operation->Result = 0;
        }
    }

    void withoutAViewEveryDocumentOperationIsRefusedAndNothingOpens()
    {
        ScriptedContext context;
        for (G_Operation* prototype : operations->All()) {
            if (QByteArray(prototype->Name()) == "d_bookmarkwrap")
                continue; // does nothing and is always done
            G_Operation* copy = context.CreateOperationByName(prototype->Name(), QString());
            QVERIFY2(!copy->DoAction(), prototype->Name());
            copy->DeleteLater();
        }
        QVERIFY(!context.PerformOperation("vn_bookmark", QString()));
        QVERIFY(NavigationDouble::opened.isEmpty());
    }

    void openingAsksTheHostForThePane()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("vn_bookmark"));
        QCOMPARE(NavigationDouble::opened.size(), 1);
        const QByteArray text = NavigationDouble::opened.first().toUtf8();
        const OVSharedPtr<OVJson> params = OVJsonFactory::ParseJsonString(text.constData(), text.size());
        QVERIFY(params);
        QCOMPARE(params->MemberCount(), 2);
        QVERIFY(params->Member("navi_open_status").IsString());
        QCOMPARE(params->Member("navi_open_status").ToQString(), QStringLiteral("1"));
        QCOMPARE(params->Member("navi_btn_checked").ToQString(), QStringLiteral("ui.navis.bookmark"));
    }

    void openingIsRefusedWhenTheHostCannotOpenPanes()
    {
        Open(threeBookmarks);
        navigation.reset();
        QVERIFY(!Perform("vn_bookmark"));
        QVERIFY(Perform("d_addbookmark")); // adding goes on without it
    }

    void aNewBookmarkGoesLastAndIsNamedByTheDefault()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names(), (QStringList{"A", "B", "C", "new bookmark"}));
    }

    void theSecondAndTheThirdDefaultNameGetNumbers()
    {
        Open("page 210 297\n");
        for (int i = 0; i < 3; ++i)
            QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names(), (QStringList{"new bookmark", "new bookmark(1)", "new bookmark(2)"}));
    }

    void addingToADocumentWithoutARootMakesTheRoot()
    {
        Open("page 210 297\n");
        QVERIFY(!fixture->Document()->GetBookmarkRoot());
        QVERIFY(Perform("d_addbookmark"));
        QVERIFY(fixture->Document()->GetBookmarkRoot());
        QCOMPARE(Names(), QStringList{"new bookmark"});
    }

    void aHighlightOfAHundredAndFiftyCharactersNamesTheBookmarkByItsFirstHundred()
    {
        const QString text = QString(100, QLatin1Char('a')) + QString(50, QLatin1Char('b'));
        Open(PageWith(text));
        fixture->View()->SetHighLightText({Highlight(0, 150)});
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names(), QStringList{text.left(100)});
        // The second of the same text is told apart behind the hundred.
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names().last(), text.left(100) + QStringLiteral("(1)"));
    }

    void aHighlightOfAHundredCharactersIsTheWholeName()
    {
        const QString text(100, QLatin1Char('a'));
        Open(PageWith(text));
        fixture->View()->SetHighLightText({Highlight(0, 100)});
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names(), QStringList{text});
    }

    void allItemsOfAHighlightMakeUpTheName()
    {
        Open(PageWith("abc") + PageWith("def").replace("id=7", "id=8"));
        fixture->View()->SetHighLightText({Highlight(0, 3), Highlight(1, 3)});
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names(), QStringList{"abcdef"});
    }

    void aHighlightWithoutTextMakesNoBookmarkAndIsLogged()
    {
        Open(PageWith("abc"));
        G_HighLightItem beside = Highlight(0, 3);
        beside.runs[0].rect = CCA_GRect(20, 200, 60, 220);
        fixture->View()->SetHighLightText({beside});
        QVERIFY(!Perform("d_addbookmark"));
        QVERIFY(Names().isEmpty());
        QVERIFY(WasLogged("bookmark create failed"));
        QVERIFY(probe->Types().isEmpty());
        QVERIFY(NavigationDouble::opened.isEmpty());
    }

    void aHighlightedPageThatDoesNotLoadIsLoggedByTheOperationsName()
    {
        Open(PageWith("abc") + PageWith("def").replace("id=7", "id=8"));
        fixture->Document()->SetPageFailure(0, true);
        fixture->View()->SetHighLightText({Highlight(0, 3), Highlight(1, 3)});
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(Names(), QStringList{"def"});
        QVERIFY(lines.contains("Page load failed GP_AddBookmark::ParseTextPage"));
    }

    void aRootThatCannotBeMadeIsLogged()
    {
        Open("page 210 297\n");
        fixture->Document()->SetCreateRootFailure(true);
        QVERIFY(!Perform("d_addbookmark"));
        QVERIFY(WasLogged("bookmark create failed"));
        QVERIFY(probe->Types().isEmpty());
        QVERIFY(fixture->Context()->Asked().isEmpty());
    }

    void aRefusedBookmarkIsLoggedWithTheCount()
    {
        Open(threeBookmarks);
        fixture->Document()->GetBookmarkRoot()->SetChangeGuard(
            [](G_TreeNode::Change, G_TreeNode*, int) { return false; });
        QVERIFY(!Perform("d_addbookmark"));
        QVERIFY(WasLogged("add failed 3"));
        QVERIFY(probe->Types().isEmpty());
    }

    void theNewBookmarksDestinationIsTheViewsPlace()
    {
        Open(threeBookmarks);
        G_DocView* view = fixture->View();
        view->GoToPage(view, 1, CCA_GRect(), false);
        view->SetZoom(150, false);
        view->SetZoomMode(G_Preferences::FitWidth);
        QVERIFY(Perform("d_addbookmark"));
        const G_Dest& dest = *Bookmark(3)->dest;
        QCOMPARE(dest.pageIndex, view->CurrentPageIndex());
        QCOMPARE(dest.pageId, fixture->Document()->PageIdFromIndex(dest.pageIndex));
        QCOMPARE(dest.Rect(), view->CurrentPageVisibleRectMM());
        QCOMPARE(dest.zoom, view->GetZoom() / 100);
        QCOMPARE(dest.zoomMode, 2);
    }

    void anAdditionTellsThePaneThenTheFrameThenOpensThePane()
    {
        Open(threeBookmarks);
        QStringList told;
        QStringList operationNames;
        QObject::connect(fixture->Context()->EventMgr(), &G_EventMgr::EventFired, this, [&](G_Event* event) {
            told.append(QString::number(event->TypeEnum()));
            if (const auto* added = dynamic_cast<G_BookmarkAddEvent*>(event)) {
                operationNames.append(added->OperationName());
                QCOMPARE(added->DocumentKey(), GQ_ToQStringFromUtf8(fixture->Document()->GetDocumentKey()));
                QCOMPARE(Names().size(), 4);
            }
        });
        NavigationDouble::whenOpened = [&] { told.append("opened"); };
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(told, (QStringList{"1000", "110", "opened"}));
        QCOMPARE(operationNames, QStringList{"d_addbookmark"});
    }

    void withoutAPaneAnAdditionIsNoUndoStep()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_addbookmark"));
        QCOMPARE(fixture->View()->UndoStack()->count(), 0);
    }

    void aDeletionReadsRowsUntilANumberIsMissing()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_bookmarkdelete", [](G_OperationParam* params) {
            params->Add("row0", 0);
            params->Add("row2", 1); // row1 is missing, so this is not read
        }));
        QCOMPARE(Names(), (QStringList{"B", "C"}));
        QVERIFY(lines.contains("Before del: 3 GP_BookmarkDelete::DoAction"));
        QVERIFY(lines.contains("After del: 2 GP_BookmarkDelete::DoAction"));
    }

    void rowsInAnyOrderAndTwiceAreDeletedOnceEach()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_bookmarkdelete", [](G_OperationParam* params) {
            params->Add("row0", 2);
            params->Add("row1", 0);
            params->Add("row2", 2);
        }));
        QCOMPARE(Names(), QStringList{"B"});
        fixture->View()->UndoStack()->undo();
        QCOMPARE(Names(), (QStringList{"A", "B", "C"}));
    }

    void aDeletionIsOneUndoStepAndFiresForTheCommandAndForItself()
    {
        Open(threeBookmarks);
        const auto act = [this] {
            Perform("d_bookmarkdelete", [](G_OperationParam* params) {
                params->Add("row0", 0);
                params->Add("row1", 2);
            });
        };
        act();
        QCOMPARE(Names(), QStringList{"B"});
        QCOMPARE(fixture->View()->UndoStack()->count(), 1);
        QCOMPARE(probe->Types(), (QList<int>{110, 110}));
        fixture->View()->UndoStack()->undo();
        QCOMPARE(Names(), (QStringList{"A", "B", "C"}));
        VERIFY_UNDO_REDO(fixture->View()->UndoStack(), fixture->Document()->GetBookmarkRoot(), act);
    }

    void aDeletionOfNothingIsDoneAndPushesNothing()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_bookmarkdelete"));
        QVERIFY(Perform("d_bookmarkdelete", [](G_OperationParam* params) { params->Add("row0", 17); }));
        QVERIFY(Perform("d_bookmarkdelete", [](G_OperationParam* params) { params->Add("row0", -1); }));
        QVERIFY(Perform("d_bookmarkdelete", [](G_OperationParam* params) { params->Add("row0", "no number"); }));
        QCOMPARE(Names().size(), 3);
        QCOMPARE(fixture->View()->UndoStack()->count(), 0);
        QVERIFY(probe->Types().isEmpty());
        QVERIFY(!WasLogged("After del:"));
    }

    void deletingAllIsOneUndoStep()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_bookmarkdeleteall"));
        QVERIFY(Names().isEmpty());
        QCOMPARE(fixture->View()->UndoStack()->count(), 1);
        QCOMPARE(probe->Types(), (QList<int>{110, 110}));
        fixture->View()->UndoStack()->undo();
        QCOMPARE(Names(), (QStringList{"A", "B", "C"}));
    }

    void deletingAllOfAnEmptyListIsDoneToo()
    {
        Open("page 210 297\n");
        QVERIFY(Perform("d_bookmarkdeleteall")); // without a root
        fixture->Document()->CreateBookmarkRoot();
        QVERIFY(Perform("d_bookmarkdeleteall"));
        QCOMPARE(fixture->View()->UndoStack()->count(), 2);
        QCOMPARE(probe->Types(), (QList<int>{110, 110})); // the operation's own, once each
    }

    void aRenameChangesTheNameKeepsThePlaceAndCanBeUndone()
    {
        Open(threeBookmarks);
        const G_Dest place = *Bookmark(1)->dest;
        bool result = false;
        QVERIFY(Perform("d_bookmarkrename", Renaming(1, "caf\u00e9 \u4e66\u7b7e"), &result));
        QVERIFY(result);
        QCOMPARE(Names(), (QStringList{"A", QStringLiteral("caf\u00e9 \u4e66\u7b7e"), "C"}));
        QVERIFY(*Bookmark(1)->dest == place);
        QCOMPARE(probe->Types(), QList<int>{110});
        QCOMPARE(fixture->View()->UndoStack()->count(), 1);
        fixture->View()->UndoStack()->undo();
        QCOMPARE(Names(), (QStringList{"A", "B", "C"}));
        VERIFY_UNDO_REDO(fixture->View()->UndoStack(), fixture->Document()->GetBookmarkRoot(),
                         [this] { Perform("d_bookmarkrename", Renaming(2, "again")); });
    }

    void aRenameOfARowThatIsNotThereIsRefused_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("behind the last") << 3;
        QTest::newRow("negative") << -1;
    }

    void aRenameOfARowThatIsNotThereIsRefused()
    {
        QFETCH(int, row);
        Open(threeBookmarks);
        bool result = true;
        QVERIFY(!Perform("d_bookmarkrename", Renaming(row, "x"), &result));
        QVERIFY(!result);
        QVERIFY(!Perform("d_bookmarkrename")); // no row at all
        QVERIFY(!Perform("d_bookmarkresetposition"));
        QCOMPARE(fixture->View()->UndoStack()->count(), 0);
        QVERIFY(probe->Types().isEmpty());
    }

    void onADocumentWithoutARootNothingIsRenamedOrReset()
    {
        Open("page 210 297\n");
        QVERIFY(!Perform("d_bookmarkrename", Renaming(0, "x")));
        QVERIFY(!Perform("d_bookmarkresetposition", Renaming(0, "x")));
        QVERIFY(Perform("d_bookmarkdelete", [](G_OperationParam* params) { params->Add("row0", 0); }));
    }

    void aResetTakesTheViewsPlaceTellsTheUserAndCanBeUndone()
    {
        Open(threeBookmarks);
        G_DocView* view = fixture->View();
        view->GoToPage(view, 1, CCA_GRect(), false);
        const G_Dest before = *Bookmark(0)->dest;
        bool result = false;
        QVERIFY(Perform(
            "d_bookmarkresetposition", [](G_OperationParam* params) { params->Add("row", 0); }, &result));
        QVERIFY(result);
        QCOMPARE(Bookmark(0)->dest->pageIndex, view->CurrentPageIndex());
        QCOMPARE(Bookmark(0)->dest->Rect(), view->CurrentPageVisibleRectMM());
        QCOMPARE(Names(), (QStringList{"A", "B", "C"}));
        QCOMPARE(probe->Types(), (QList<int>{173, 110}));
        QCOMPARE(probe->StatusTexts(), QStringList{"set success!"});
        view->UndoStack()->undo();
        QVERIFY(*Bookmark(0)->dest == before);
        view->UndoStack()->redo();
        QCOMPARE(Bookmark(0)->dest->pageIndex, view->CurrentPageIndex());
    }

    void aResetChangesThePlaceInTheTreeBeforeItsCommandIsPushed()
    {
        Open(threeBookmarks);
        fixture->View()->GoToPage(fixture->View(), 1, CCA_GRect(), false);
        int stepsWhenTold = -1;
        int pageWhenTold = -1;
        QObject::connect(fixture->Context()->EventMgr(), &G_EventMgr::EventFired, this, [&](G_Event* event) {
            if (event->TypeEnum() != 173)
                return;
            stepsWhenTold = fixture->View()->UndoStack()->count();
            pageWhenTold = Bookmark(0)->dest->pageIndex;
        });
        QVERIFY(Perform("d_bookmarkresetposition", [](G_OperationParam* params) { params->Add("row", 0); }));
        QCOMPARE(stepsWhenTold, 0);
        QCOMPARE(pageWhenTold, 1);
    }

    void anOperationMakesTheUndoStackWhenTheViewHasNone()
    {
        Open(threeBookmarks);
        G_DocView bare(fixture->Context(), fixture->Document());
        fixture->SetCurrent(&bare);
        QVERIFY(!bare.UndoStack());
        QVERIFY(Perform("d_bookmarkrename", Renaming(0, "x")));
        QVERIFY(bare.UndoStack());
        QCOMPARE(bare.UndoStack()->count(), 1);
        fixture->SetCurrent(fixture->View());
    }

    void theWrapOperationItselfDoesNothing()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("d_bookmarkwrap"));
        QCOMPARE(fixture->View()->UndoStack()->count(), 0);
        QVERIFY(probe->Types().isEmpty());
    }

    void withoutTheEditRightNothingIsChanged()
    {
        Open(threeBookmarks);
        fixture->Document()->SetRights(true, false, true, true);
        QVERIFY(!Perform("d_addbookmark"));
        QVERIFY(!Perform("d_bookmarkrename", Renaming(0, "x")));
        QVERIFY(!Perform("d_bookmarkdeleteall"));
        QVERIFY(Perform("d_bookmarkwrap"));
        QVERIFY(Perform("vn_bookmark"));
        QCOMPARE(Names(), (QStringList{"A", "B", "C"}));
    }

private:
    using Fill = std::function<void(G_OperationParam*)>;

    void Open(const QString& text)
    {
        fixture = std::make_unique<ViewFixture>(text);
        probe = std::make_unique<EventProbe>(fixture->Context()->EventMgr());
    }

    G_Operation* Make(const QByteArray& name) { return fixture->Context()->CreateOperationByName(name, QString()); }

    // `result` gets the operation's "result" parameter.
    bool Perform(const char* name, const Fill& fill = {}, bool* result = nullptr)
    {
        G_Operation* copy = Make(name);
        if (fill)
            fill(copy->Params);
        const bool isDone = copy->PerformAction();
        if (result)
            *result = copy->Params->GetBool("result");
        copy->DeleteLater();
        return isDone;
    }

    static Fill Renaming(int row, const QString& name)
    {
        return [row, name](G_OperationParam* params) {
            params->Add("row", row);
            params->Add("name", name);
        };
    }

    QStringList Names() const
    {
        QStringList names;
        const G_TreeNode* root = fixture->Document()->GetBookmarkRoot();
        for (int row = 0; root && row < root->SubNodeCount(); ++row)
            names.append(BookmarkName(root->SubNode(row)));
        return names;
    }

    const G_Bookmark* Bookmark(int row) const { return BookmarkOf(BookmarkNode(fixture->Document(), row)); }

    bool WasLogged(const QByteArray& start) const
    {
        return std::any_of(lines.cbegin(), lines.cend(),
                           [&start](const QByteArray& line) { return line.startsWith(start); });
    }

    QList<QByteArray> lines;
    std::unique_ptr<BookmarkOperations> operations;
    std::unique_ptr<NavigationDouble> navigation;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
};

TETO_TEST_MAIN(TestBookmarkOperations)
#include "test_bookmark_operations.moc"
