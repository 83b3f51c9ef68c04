#include "pane_desk.h"

#include <bookmark/bookmark_interceptors.h>
#include <bookmark/bookmark_node.h>
#include <bookmark/bookmark_pane.h>
#include <bookmark/bookmark_tree.h>
#include <frame/operation/operation.h>
#include <tests/support/test_main.h>

#include <QSignalSpy>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

#include <memory>

namespace {

// Looks at an operation just ahead of its work, and can refuse it.
class Onlooker : public G_OperationInterceptor
{
public:
    explicit Onlooker(const char* name)
        : name(name)
    {
    }
    bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, name); }
    bool BeforeDoActionHandle(G_Operation* op) override
    {
        for (int i = 0; op->Params->Contains("row" + QByteArray::number(i)); ++i)
            rows.append(op->Params->GetInt32("row" + QByteArray::number(i)));
        ++seen;
        return !refuses;
    }
    const char* name;
    QList<int> rows;
    int seen = 0;
    bool refuses = false;
};

// An operation whose name is told as the host may tell it.
class NamedOperation : public G_Operation
{
public:
    explicit NamedOperation(const char* name)
        : name(name)
    {
    }
    G_Operation* Clone() const override { return new NamedOperation(name); }
    const char* Name() const override { return name; }
    bool DoAction() override { return true; }

private:
    const char* name;
};

} // namespace

// What the bookmark pane's interceptors ask, pack and mend.
class TestBookmarkInterceptors : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        desk = std::make_unique<PaneDesk>(DocumentWithBookmarks(5));
        tab = desk->First();
    }

    void cleanup() { desk.reset(); }

    void theLastPieceOfTheNameDecidesInAnyCase_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("matches");
        QTest::newRow("plain") << QByteArray("d_bookmarkdelete") << true;
        QTest::newRow("path") << QByteArray("host/menu/d_bookmarkdelete") << true;
        QTest::newRow("mixed case") << QByteArray("host/D_BookmarkDelete") << true;
        QTest::newRow("piece behind") << QByteArray("d_bookmarkdelete/x") << false;
        QTest::newRow("empty piece behind") << QByteArray("d_bookmarkdelete/") << false;
        QTest::newRow("longer") << QByteArray("d_bookmarkdeleteall") << false;
        QTest::newRow("empty") << QByteArray("") << false;
    }

    void theLastPieceOfTheNameDecidesInAnyCase()
    {
        QFETCH(QByteArray, name);
        QFETCH(bool, matches);
        NamedOperation operation(name.constData());
        QCOMPARE(tab->pane->deleteHandler->OperationFilter(&operation), matches);
    }

    void eachInterceptorAnswersToItsOwnOperation()
    {
        const QList<QPair<const char*, G_OperationInterceptor*>> handlers{
            {"d_bookmarkdelete", tab->pane->deleteHandler},
            {"d_bookmarkdeleteall", tab->pane->deleteAllHandler},
            {"d_bookmarkrename", tab->pane->renameHandler},
            {"d_bookmarkresetposition", tab->pane->resetPositionHandler},
            {"d_bookmarkwrap", tab->pane->wrapHandler},
        };
        for (const auto& own : handlers) {
            NamedOperation operation(own.first);
            for (const auto& other : handlers)
                QCOMPARE(other.second->OperationFilter(&operation), own.second == other.second);
        }
    }

    void deletingRowsFourOneAndTwoReadsThemInAscendingOrder()
    {
        Onlooker onlooker("d_bookmarkdelete");
        tab->Select({4, 1, 2});
        tab->pane->DelBookmark();
        QCOMPARE(onlooker.rows, (QList<int>{1, 2, 4}));
        QCOMPARE(tab->Names(), (QStringList{"A", "D"}));
        QCOMPARE(tab->Rows(), (QStringList{"A", "D"}));
        tab->Stack()->undo();
        QCOMPARE(tab->Rows(), (QStringList{"A", "B", "C", "D", "E"}));
    }

    void deletingWithNothingSelectedByTheButtonTellsTheUser()
    {
        tab->Tree()->clearSelection();
        desk->Context()->Answer(1024);
        tab->pane->DelBookmark();
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.kind, QStringLiteral("message"));
        QCOMPARE(box.title, QStringLiteral("remark"));
        QCOMPARE(box.text, QStringLiteral("Please select a bookmark first."));
        QCOMPARE(box.buttons, 1024);
        QCOMPARE(box.defaultButton, 1024);
        QCOMPARE(tab->Names().size(), 5);
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void deletingWithNothingSelectedByAnotherRoadDeletesNothingSilently()
    {
        Onlooker onlooker("d_bookmarkdelete");
        tab->Tree()->clearSelection();
        QVERIFY(desk->Perform("d_bookmarkdelete"));
        QCOMPARE(onlooker.seen, 1);
        QVERIFY(onlooker.rows.isEmpty());
        QCOMPARE(tab->Names().size(), 5);
    }

    void forThePopupFlagOnlyItsPresenceCounts()
    {
        tab->Tree()->clearSelection();
        desk->Context()->Answer(1024);
        G_Operation* copy = desk->Context()->CreateOperationByName("d_bookmarkdelete", QString());
        copy->Params->Add("popup", false);
        QVERIFY(!copy->PerformAction());
        copy->DeleteLater();
        QCOMPARE(desk->Context()->Asked().size(), 1);
    }

    void deletingAllAsksFirst_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("ok") << 1024 << true;
        QTest::newRow("cancel") << 4194304 << false;
        QTest::newRow("closed") << 2097152 << false;
    }

    void deletingAllAsksFirst()
    {
        QFETCH(int, answer);
        QFETCH(bool, isDeleted);
        desk->Context()->Answer(answer);
        QCOMPARE(desk->Perform("d_bookmarkdeleteall"), isDeleted);
        const AskedBox box = desk->Context()->LastAsked();
        QCOMPARE(box.kind, QStringLiteral("message"));
        QCOMPARE(box.title, QStringLiteral("remark"));
        QCOMPARE(box.text, QStringLiteral("Are you sure to delete all bookmarks in the document?"));
        QCOMPARE(box.buttons, 4195328);
        QCOMPARE(box.defaultButton, 1024);
        QCOMPARE(tab->Names().size(), isDeleted ? 0 : 5);
        QCOMPARE(tab->Rows().size(), isDeleted ? 0 : 5);
        QVERIFY(!tab->Tree()->signalsBlocked());
        if (isDeleted) {
            tab->Stack()->undo();
            QCOMPARE(tab->Rows().size(), 5);
        }
    }

    void aRenameOpensTheEditorAndWaits()
    {
        Onlooker onlooker("d_bookmarkrename");
        BeginRename(2);
        QVERIFY(tab->Editor());
        QVERIFY(tab->pane->isRenaming);
        QCOMPARE(tab->pane->previousName, QStringLiteral("C"));
        QCOMPARE(onlooker.seen, 0);
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void aRenameEndsWithEnterAndTheRowsDestinationIsTheNewRecords()
    {
        Rename(2, "renamed");
        QCOMPARE(tab->Names(), (QStringList{"A", "B", "renamed", "D", "E"}));
        QCOMPARE(tab->Rows(), (QStringList{"A", "B", "renamed", "D", "E"}));
        QCOMPARE(RowDest(2), BookmarkOf(BookmarkNode(tab->document, 2))->dest);
        QVERIFY(!tab->pane->isRenaming);
        QVERIFY(!tab->Tree()->signalsBlocked());
        QCOMPARE(tab->Stack()->count(), 1);
        tab->Stack()->undo();
        QCOMPARE(tab->Names().at(2), QStringLiteral("C"));
        QCOMPARE(RowDest(2), BookmarkOf(BookmarkNode(tab->document, 2))->dest);
    }

    void anEmptiedRenameRestoresTheOldName()
    {
        Rename(2, "");
        QCOMPARE(tab->Rows().at(2), QStringLiteral("C"));
        QCOMPARE(tab->Names().at(2), QStringLiteral("C"));
        QVERIFY(!tab->pane->isRenaming);
        QVERIFY(!tab->Tree()->signalsBlocked());
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void aLongNameIsCutToItsFirstHundredCharacters()
    {
        const QString name = QString(99, QLatin1Char('x')) + QStringLiteral("yz");
        Rename(1, name);
        QCOMPARE(tab->Names().at(1), name.left(100));
        QCOMPARE(tab->pane->previousName, name.left(100));
    }

    void aRenameWithoutACurrentRowWaitsForNothing()
    {
        tab->Tree()->setCurrentItem(nullptr);
        QVERIFY(!desk->Perform("d_bookmarkrename"));
        QVERIFY(!tab->pane->isRenaming);
        QVERIFY(!tab->Editor());
    }

    void aChangeOfARowOutsideARenameRunsNothing()
    {
        Onlooker onlooker("d_bookmarkrename");
        tab->Tree()->topLevelItem(0)->setText(0, QStringLiteral("not a rename"));
        QCOMPARE(onlooker.seen, 0);
        QCOMPARE(tab->Names().at(0), QStringLiteral("A"));
    }

    void anEscapedRenameStaysArmedUntilTheNextOneTakesItsPlace()
    {
        BeginRename(2);
        QTest::keyClick(tab->Editor(), Qt::Key_Escape);
        ViewFixture::Settle();
        QVERIFY(tab->pane->isRenaming); // left so on purpose
        QCOMPARE(tab->Names().at(2), QStringLiteral("C"));
        Rename(1, "next");
        QCOMPARE(tab->Names(), (QStringList{"A", "next", "C", "D", "E"}));
        QVERIFY(!tab->pane->isRenaming);
    }

    void aRenameThatIsRefusedLeavesTheListAlive()
    {
        Onlooker onlooker("d_bookmarkrename");
        onlooker.refuses = true;
        Rename(2, "refused");
        QCOMPARE(onlooker.seen, 1);
        QCOMPARE(tab->Names().at(2), QStringLiteral("C"));
        QVERIFY(!tab->Tree()->signalsBlocked());
        QVERIFY(!tab->pane->isRenaming);
        onlooker.refuses = false;
        Rename(2, "taken");
        QCOMPARE(tab->Names().at(2), QStringLiteral("taken"));
    }

    void aResetGivesTheCurrentRowTheViewsPlaceAndRefreshesItsDestination()
    {
        tab->view->GoToPage(tab->view, 2, CCA_GRect(), false);
        tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(3));
        QVERIFY(desk->Perform("d_bookmarkresetposition"));
        const G_Bookmark* bookmark = BookmarkOf(BookmarkNode(tab->document, 3));
        QCOMPARE(bookmark->dest->pageIndex, 2);
        QCOMPARE(RowDest(3), bookmark->dest);
        QVERIFY(!tab->Tree()->signalsBlocked());
        tab->view->GoToPage(tab->view, 0, CCA_GRect(), false);
        tab->pane->onClickItem(tab->Tree()->topLevelItem(3), 0);
        QCOMPARE(tab->view->CurrentPageIndex(), 2);
    }

    void aResetWithoutACurrentRowIsRefusedAndLeavesTheListAlive()
    {
        tab->Tree()->setCurrentItem(nullptr);
        QVERIFY(!desk->Perform("d_bookmarkresetposition"));
        QVERIFY(!tab->Tree()->signalsBlocked());
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void aResetAfterAnEscapedRenameRenamesNothing()
    {
        BeginRename(2);
        QTest::keyClick(tab->Editor(), Qt::Key_Escape);
        ViewFixture::Settle();
        tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(2));
        QVERIFY(desk->Perform("d_bookmarkresetposition"));
        QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
        QCOMPARE(tab->Stack()->count(), 1); // the reset alone
    }

    void wordWrapTurnedTwiceEndsAsItBeganAndLeavesTheStackUntouched()
    {
        const bool before = tab->pane->wordWrap;
        const QSize size = tab->Tree()->size();
        QVERIFY(desk->Perform("d_bookmarkwrap"));
        QCOMPARE(tab->pane->wordWrap, !before);
        QCOMPARE(tab->pane->wrapEnabled, !before);
        QVERIFY(desk->Perform("d_bookmarkwrap"));
        QCOMPARE(tab->pane->wordWrap, before);
        QCOMPARE(tab->pane->wrapEnabled, before);
        QCOMPARE(tab->Tree()->size(), size);
        QCOMPARE(tab->Stack()->count(), 0);
    }

    void twoDocumentsHaveTwoPanesWithTheirOwnInterceptorsAndOneStackEach()
    {
        DeskTab* second = desk->Open(DocumentWithBookmarks(4));
        QVERIFY(tab->pane != second->pane);
        QVERIFY(tab->pane->renameHandler != second->pane->renameHandler);
        QCOMPARE(tab->pane->renameHandler->Tag(), tab->document);
        QCOMPARE(second->pane->renameHandler->Tag(), second->document);
        QVERIFY(tab->Stack() && second->Stack() && tab->Stack() != second->Stack());
    }

    void withTwoDocumentsADeletionTakesRowsOnlyFromTheCurrentOne()
    {
        DeskTab* second = desk->Open(DocumentWithBookmarks(4));
        tab->Select({0, 1, 2, 3, 4});
        second->Select({3, 1});
        Onlooker onlooker("d_bookmarkdelete");
        QVERIFY(desk->Perform("d_bookmarkdelete"));
        QCOMPARE(onlooker.rows, (QList<int>{1, 3}));
        QCOMPARE(second->Names(), (QStringList{"A", "C"}));
        QCOMPARE(tab->Names().size(), 5);
        desk->MakeCurrent(tab);
        QVERIFY(desk->Perform("d_bookmarkdelete"));
        QVERIFY(tab->Names().isEmpty());
        QCOMPARE(second->Names().size(), 2);
    }

    void withTwoDocumentsDeletingAllAsksOnceAndEmptiesTheCurrentOne()
    {
        DeskTab* second = desk->Open(DocumentWithBookmarks(4));
        desk->Context()->Answer(1024);
        QVERIFY(desk->Perform("d_bookmarkdeleteall"));
        QCOMPARE(desk->Context()->Asked().size(), 1);
        QVERIFY(second->Names().isEmpty());
        QCOMPARE(tab->Names().size(), 5);
        QCOMPARE(tab->Rows().size(), 5);
    }

    void withTwoDocumentsARenameHappensInTheCurrentOne()
    {
        DeskTab* second = desk->Open(DocumentWithBookmarks(4));
        tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(0));
        BeginRename(1, second);
        QVERIFY(!tab->Editor());
        QVERIFY(!tab->pane->isRenaming);
        EndRename("renamed", second);
        QCOMPARE(second->Names().at(1), QStringLiteral("renamed"));
        QCOMPARE(tab->Names(), (QStringList{"A", "B", "C", "D", "E"}));
        QCOMPARE(tab->Stack()->count(), 0);
        QCOMPARE(second->Stack()->count(), 1);
    }

    void withTwoDocumentsAResetAndAWrapHappenInTheCurrentOne()
    {
        DeskTab* second = desk->Open(DocumentWithBookmarks(4));
        desk->MakeCurrent(tab);
        tab->Tree()->setCurrentItem(tab->Tree()->topLevelItem(1));
        second->Tree()->setCurrentItem(second->Tree()->topLevelItem(1));
        QVERIFY(desk->Perform("d_bookmarkresetposition"));
        QCOMPARE(tab->Stack()->count(), 1);
        QCOMPARE(second->Stack()->count(), 0);
        const bool wrap = second->pane->wordWrap;
        QVERIFY(desk->Perform("d_bookmarkwrap"));
        QCOMPARE(second->pane->wordWrap, wrap);
        QCOMPARE(tab->pane->wordWrap, !wrap);
    }

    void aForeignDocumentsInterceptorsAnswerForThemselves()
    {
        desk->Open(DocumentWithBookmarks(4)); // current now, so the first pane is a foreign one
        NamedOperation operation("any");
        QVERIFY(tab->pane->deleteHandler->PrepareDataHandle(&operation, 0));
        QVERIFY(!tab->pane->deleteAllHandler->PrepareDataHandle(&operation, 0));
        QVERIFY(!tab->pane->renameHandler->PrepareDataHandle(&operation, 0));
        QVERIFY(!tab->pane->resetPositionHandler->PrepareDataHandle(&operation, 0));
        QVERIFY(!tab->pane->wrapHandler->PrepareDataHandle(&operation, 0));
        QCOMPARE(operation.Params->Count(), 0);
        QVERIFY(tab->pane->resetPositionHandler->BeforeDoActionHandle(&operation));
        QVERIFY(!tab->Tree()->signalsBlocked());
        operation.Result = 1;
        operation.Params->Add("result", true);
        operation.Params->Add("row", 0);
        tab->Tree()->blockSignals(true);
        tab->pane->renameHandler->AfterDoActionHandle(&operation);
        tab->pane->resetPositionHandler->AfterDoActionHandle(&operation);
        QVERIFY(tab->Tree()->signalsBlocked()); // neither touched the list
        tab->Tree()->blockSignals(false);
    }

    void interceptorsWithoutAPaneRefuse()
    {
        NamedOperation operation("any");
        QVERIFY(!GPI_BookmarkDelete(nullptr).PrepareDataHandle(&operation, 0));
        QVERIFY(!GPI_BookmarkDeleteAll(nullptr).PrepareDataHandle(&operation, 0));
        QVERIFY(!GPI_BookmarkRename(nullptr).PrepareDataHandle(&operation, 0));
        QVERIFY(!GPI_BookmarkResetPosition(nullptr).PrepareDataHandle(&operation, 0));
        QVERIFY(!GPI_BookmarkWrap(nullptr).PrepareDataHandle(&operation, 0));
        GPI_BookmarkRename(nullptr).AfterDoActionHandle(&operation);
        GPI_BookmarkResetPosition(nullptr).AfterDoActionHandle(&operation);
    }

    void anAfterHandlerOfARenameWithoutAResultChangesNothing()
    {
        NamedOperation operation("any");
        operation.Result = 1;
        tab->Tree()->blockSignals(true);
        tab->pane->renameHandler->AfterDoActionHandle(&operation);
        operation.Params->Add("result", true);
        operation.Result = 0;
        tab->pane->renameHandler->AfterDoActionHandle(&operation);
        QVERIFY(tab->Tree()->signalsBlocked());
        tab->Tree()->blockSignals(false);
    }

private:
    void BeginRename(int row, DeskTab* which = nullptr)
    {
        DeskTab* where = which ? which : tab;
        where->Tree()->setCurrentItem(where->Tree()->topLevelItem(row));
        QVERIFY(!desk->Perform("d_bookmarkrename")); // goes on when the edit ends
        ViewFixture::Settle();
    }

    void EndRename(const QString& name, DeskTab* which = nullptr)
    {
        QTextEdit* editor = (which ? which : tab)->Editor();
        QVERIFY(editor);
        editor->setPlainText(name);
        QTest::keyClick(editor, Qt::Key_Return);
        ViewFixture::Settle();
    }

    void Rename(int row, const QString& name)
    {
        BeginRename(row);
        EndRename(name);
    }

    G_Dest* RowDest(int row) const { return tab->Tree()->topLevelItem(row)->data(0, Qt::UserRole).value<G_Dest*>(); }

    std::unique_ptr<PaneDesk> desk;
    DeskTab* tab = nullptr; // not owned
};

TETO_TEST_MAIN(TestBookmarkInterceptors)
#include "test_bookmark_interceptors.moc"
