#include "bookmark_operations_fixture.h"

#include <frame/json/ovjson.h>
#include <frame/operation/event_manager.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>
#include <tests/support/undo_verbs.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <memory>

// The bookmark operations by name, on a document without a pane.
class TestBookmarkOperations : public BookmarkOperationsFixture
{
    Q_OBJECT
private slots:
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
        QVERIFY(DeskNavigation::opened.isEmpty());
    }

    void openingAsksTheHostForThePane()
    {
        Open(threeBookmarks);
        QVERIFY(Perform("vn_bookmark"));
        QCOMPARE(DeskNavigation::opened.size(), 1);
        const QByteArray text = DeskNavigation::opened.first().toUtf8();
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
    static Fill Renaming(int row, const QString& name)
    {
        return [row, name](G_OperationParam* params) {
            params->Add("row", row);
            params->Add("name", name);
        };
    }
};

TETO_TEST_MAIN(TestBookmarkOperations)
#include "test_bookmark_operations.moc"
