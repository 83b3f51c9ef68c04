#include "outline_interceptors_fixture.h"

#include <frame/navigation/icore.h>
#include <outline/batch_add_dialog.h>
#include <outline/outline_interceptors.h>
#include <outline/outline_node.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>
#include <tests/support/test_main.h>

#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

#include <memory>

// What the interceptors of the additions pack, and the dialog of the batch.
class TestOutlineAdditions : public OutlineInterceptorsFixture
{
    Q_OBJECT
private slots:
    // Add and add-sub

    void addWithoutACurrentEntryPutsTheNewOneLastInTheRoot()
    {
        tab->Tree()->setCurrentItem(nullptr);
        const Onlooker onlooker("d_outline_add");
        tab->pane->AddOutline();
        QCOMPARE(onlooker.json, QStringLiteral("[-1]"));
        QCOMPARE(OutlineTitle(tab->Node({3})), QStringLiteral("new outline"));
        QVERIFY(tab->Editor());
        QCOMPARE(tab->Tree()->currentItem(), tab->Item(Rows{3}));
    }

    void addWithACurrentEntryPutsTheNewOneStraightBehindItAndOpensItsEditor()
    {
        tab->MakeCurrent("A1");
        const Onlooker onlooker("d_outline_add");
        tab->pane->AddOutline();
        QCOMPARE(onlooker.json, QStringLiteral("[0,{\"index\":0,\"level\":1}]"));
        QCOMPARE(OutlineTitle(tab->Node({0, 1})), QStringLiteral("new outline"));
        QCOMPARE(OutlineTitle(tab->Node({0, 2})), QStringLiteral("A2"));
        QVERIFY(tab->Editor());
        QCOMPARE(tab->Tree()->currentItem(), tab->Item(Rows{0, 1}));
        QCOMPARE(tab->Tree()->pendingParent, nullptr);
        QCOMPARE(tab->Tree()->pendingRow, -1);
    }

    void addSubPutsTheNewOneLastBelowTheCurrentEntryAndOpensItsEditor()
    {
        tab->MakeCurrent("A");
        const Onlooker onlooker("d_outline_addsub");
        QVERIFY(desk->Perform("d_outline_addsub"));
        QCOMPARE(onlooker.json, QStringLiteral("[{\"index\":0,\"level\":1}]"));
        QCOMPARE(onlooker.title, onlooker.json);
        QCOMPARE(onlooker.pageId, onlooker.json);
        QCOMPARE(OutlineTitle(tab->Node({0, 2})), QStringLiteral("new outline"));
        QVERIFY(tab->Editor());
        QCOMPARE(tab->Tree()->currentItem(), tab->Item(Rows{0, 2}));
    }

    void addSubWithoutACurrentEntryPutsTheNewOneLastInTheRoot()
    {
        tab->Tree()->setCurrentItem(nullptr);
        QVERIFY(desk->Perform("d_outline_addsub"));
        QCOMPARE(OutlineTitle(tab->Node({3})), QStringLiteral("new outline"));
    }

    void inADocumentWithoutAnOutlineAddMakesTheRootAndAddSubDoesNot()
    {
        Open("page 210 297\n");
        QVERIFY(!desk->Perform("d_outline_addsub"));
        QCOMPARE(tab->document->GetOutlineRoot(), nullptr);
        QCOMPARE(tab->Tree()->pendingRow, -1);
        QVERIFY(desk->Perform("d_outline_add"));
        QCOMPARE(tab->Names(), QStringLiteral("new outline\n"));
        const G_TreeNode* root = tab->document->GetOutlineRoot();
        QVERIFY(desk->Perform("d_outline_add"));
        QCOMPARE(static_cast<const G_TreeNode*>(tab->document->GetOutlineRoot()), root);
    }

    void aDocumentThatTakesNoOutlineIsLeftAlone()
    {
        Open("page 210 297\n");
        tab->document->SetCreateRootFailure(true);
        QVERIFY(!desk->Perform("d_outline_add"));
        QCOMPARE(tab->Stack()->count(), 0);
        QVERIFY(!tab->Editor());
    }

    void aFailedAdditionLeavesNoRequestForAnEditorBehind_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("add") << QByteArray("d_outline_add");
        QTest::newRow("add-sub") << QByteArray("d_outline_addsub");
    }

    void aFailedAdditionLeavesNoRequestForAnEditorBehind()
    {
        QFETCH(QByteArray, name);
        tab->MakeCurrent("A");
        tab->document->GetOutlineRoot()->SetChangeGuard([](auto...) { return false; });
        desk->Perform(name);
        tab->document->GetOutlineRoot()->SetChangeGuard({});
        tab->Stack()->push(new QUndoCommand); // any other change refills the tree
        QVERIFY(!tab->Editor());
    }

    void addingFromOutsideMakesThePaneAdd()
    {
        tab->MakeCurrent("B");
        QVERIFY(desk->Perform("d_addoutline"));
        QCOMPARE(DeskNavigation::opened.size(), 1);
        QCOMPARE(OutlineTitle(tab->Node({2})), QStringLiteral("new outline"));
        QCOMPARE(tab->Stack()->count(), 1);
        QVERIFY(tab->Editor());
        QCOMPARE(probe->Types(), (QList<int>{110, 1000})); // told when its delivery ends
    }

    // Batch add

    void batchAddShowsOneDialogAndStopsTheOperation()
    {
        const Onlooker onlooker("d_outline_batchadd");
        QVERIFY(!desk->Perform("d_outline_batchadd"));
        const QPointer<BatchAddOutlineDlg> dialog = tab->pane->batchAddHandler->Dialog();
        QVERIFY(dialog && dialog->isVisible());
        QVERIFY(!dialog->isModal());
        QCOMPARE(onlooker.seen, 0);
        dialog->hide();
        tab->pane->BatchAddOutline();
        QCOMPARE(tab->pane->batchAddHandler->Dialog(), dialog.data());
        QVERIFY(dialog->isVisible());
        ViewFixture::Settle();
        QVERIFY(dialog);
        delete tab->pane;
        QVERIFY(!dialog);
    }

    void theDialogDiesWithThePaneAlsoWhenTheMainWindowOwnsIt()
    {
        QWidget mainWindow;
        desk->Context()->SetDialogParent(&mainWindow);
        Core::ICore::SetContext(desk->Context());
        tab->pane->BatchAddOutline();
        Core::ICore::SetContext(nullptr);
        const QPointer<BatchAddOutlineDlg> dialog = tab->pane->batchAddHandler->Dialog();
        QCOMPARE(dialog->parentWidget(), &mainWindow);
        delete tab->pane;
        QVERIFY(!dialog);
        desk->Context()->SetDialogParent(nullptr);
    }

    void aDialogThatDiedWithTheMainWindowIsMadeAnew()
    {
        auto mainWindow = std::make_unique<QWidget>();
        desk->Context()->SetDialogParent(mainWindow.get());
        Core::ICore::SetContext(desk->Context());
        tab->pane->BatchAddOutline();
        Core::ICore::SetContext(nullptr);
        desk->Context()->SetDialogParent(nullptr);
        mainWindow.reset();
        QVERIFY(!tab->pane->batchAddHandler->Dialog());
        tab->pane->BatchAddOutline();
        QVERIFY(tab->pane->batchAddHandler->Dialog()->isVisible());
    }

    void theDialogStandsInTheMiddleOfTheWindow()
    {
        desk->Perform("d_outline_batchadd");
        const QRect dialog = tab->pane->batchAddHandler->Dialog()->frameGeometry();
        const QPoint middle = tab->pane->window()->mapToGlobal(tab->pane->window()->rect().center());
        QVERIFY((dialog.center() - middle).manhattanLength() <= 2);
    }
};

TETO_TEST_MAIN(TestOutlineAdditions)
#include "test_outline_additions.moc"
