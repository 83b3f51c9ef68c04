#include "bookmark_operations_fixture.h"

#include <bookmark/bookmark_events.h>
#include <frame/base/converters.h>
#include <frame/operation/event_manager.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

namespace {

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

// The operation that adds a bookmark, on a document without a pane.
class TestBookmarkAdditions : public BookmarkOperationsFixture
{
    Q_OBJECT
private slots:
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
        QVERIFY(DeskNavigation::opened.isEmpty());
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
        DeskNavigation::whenOpened = [&] { told.append("opened"); };
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
};

TETO_TEST_MAIN(TestBookmarkAdditions)
#include "test_bookmark_additions.moc"
