#include "event_probe.h"
#include "test_main.h"
#include "undo_verbs.h"

#include <frame/document/payloads.h>
#include <frame/operation/event_manager.h>

#include <QUndoStack>
#include <QtTest>

namespace {

// Appends a node to the root; wrong on purpose where told.
class AppendCommand : public QUndoCommand
{
public:
    enum Fault { None, UndoForgets, RedoDoubles };
    AppendCommand(G_TreeNode* root, Fault fault)
        : root(root)
        , fault(fault)
    {
    }
    void redo() override
    {
        Append();
        if (fault == RedoDoubles && isRedone)
            Append();
        isRedone = true;
    }
    void undo() override
    {
        if (fault != UndoForgets)
            root->RemoveSubNode(root->SubNodeCount() - 1);
    }

private:
    void Append()
    {
        auto* bookmark = new G_Bookmark;
        bookmark->name = "mark";
        root->AddSubNode(root->SubNodeCount(), bookmark);
    }
    G_TreeNode* root; // not owned
    Fault fault;
    bool isRedone = false;
};

} // namespace

class TestVerbs : public QObject
{
    Q_OBJECT

    std::unique_ptr<G_TreeNode> root;
    QUndoStack stack;

    std::function<void()> Push(AppendCommand::Fault fault)
    {
        return [this, fault] { stack.push(new AppendCommand(root.get(), fault)); };
    }

private slots:
    void init()
    {
        stack.clear();
        root.reset(G_TreeNode::CreateRoot());
    }

    void aSoundCommandPassesAndIsLeftDone()
    {
        VERIFY_UNDO_REDO(&stack, root.get(), Push(AppendCommand::None));
        QCOMPARE(root->SubNodeCount(), 1);
        const auto count = [this] { return QString::number(root->SubNodeCount()); };
        VERIFY_UNDO_REDO(&stack, count, [this] {
            Push(AppendCommand::None)();
            Push(AppendCommand::None)();
        });
        QCOMPARE(root->SubNodeCount(), 3);
    }

    void anUndoThatForgetsIsFound()
    {
        QVERIFY(UndoRedoProblem(&stack, root.get(), Push(AppendCommand::UndoForgets)).startsWith("undo 1"));
    }

    void aRedoThatDiffersIsFound()
    {
        QVERIFY(UndoRedoProblem(&stack, root.get(), Push(AppendCommand::RedoDoubles)).startsWith("redo 1"));
    }

    void anActionWithoutACommandOrWithoutAnEffectIsFound()
    {
        QVERIFY(!UndoRedoProblem(&stack, root.get(), [] {}).isEmpty());
        QVERIFY(!UndoRedoProblem(&stack, root.get(), [this] { stack.push(new QUndoCommand); }).isEmpty());
    }

    void steppingBeyondTheStackIsRefused()
    {
        Push(AppendCommand::None)();
        QVERIFY(StepTo(&stack, 0));
        QVERIFY(StepTo(&stack, 1));
        QVERIFY(!StepTo(&stack, 2));
    }

    void theProbeCountsByTypeAndKeepsStatusTexts()
    {
        G_EventMgr manager;
        EventProbe probe(&manager);
        manager.Deliver(new G_Event(EventType::DocumentChanged));
        manager.Deliver(new G_StringEvent(QStringLiteral("Undo failed"), EventType::StatusText));
        manager.Deliver(new G_Event(EventType::DocumentChanged));
        QCOMPARE(probe.Count(110), 2);
        QCOMPARE(probe.Count(173), 1);
        QCOMPARE(probe.Count(1000), 0);
        QCOMPARE(probe.Types(), QList<int>({110, 173, 110}));
        QCOMPARE(probe.StatusTexts(), QStringList({"Undo failed"}));
        probe.Clear();
        QCOMPARE(probe.Total(), 0);
        QVERIFY(probe.StatusTexts().isEmpty());
    }

    void theProbeOutlivesItsManager()
    {
        auto manager = std::make_unique<G_EventMgr>();
        const EventProbe probe(manager.get());
        manager->Deliver(new G_Event(110));
        manager.reset();
        QCOMPARE(probe.Total(), 1);
    }
};

TETO_TEST_MAIN(TestVerbs)
#include "test_verbs.moc"
