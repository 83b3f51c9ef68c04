#pragma once

#include <frame/base/converters.h>
#include <frame/base/log.h>
#include <frame/operation/event_manager.h>
#include <outline/outline_commands.h>
#include <outline/outline_node.h>
#include <tests/support/event_probe.h>
#include <tests/support/tree_dump.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <memory>

// Two entries with the same title, level and row under different parents (both "x" under P1 and P2), and depth.
inline const char sample[] = "page 210 297\n"
                             "outline \"A\" page=1 rect=0,0,10,10\n"
                             "  outline \"A1\" page=1 rect=0,1,10,10\n"
                             "    outline \"A1a\" page=1 rect=0,2,10,10 uri=https://example.org\n"
                             "      outline \"A1a1\"\n"
                             "  outline \"A2\" page=1 closed\n"
                             "outline \"B\"\n"
                             "outline \"T\" page=1\n"
                             "  outline \"P1\"\n"
                             "    outline \"x\" page=1 rect=0,3,10,10\n"
                             "  outline \"P2\"\n"
                             "    outline \"x\" page=1 rect=0,4,10,10\n"
                             "outline \"D\"\n"
                             "outline \"E\"\n";

using Rows = QList<int>;

// An outline under a view's undo stack, without a pane; what the commands log is kept.
class OutlineCommandsFixture : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        lines.clear();
        SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
        fixture = std::make_unique<ViewFixture>(sample);
        root = fixture->Document()->GetOutlineRoot();
        probe = std::make_unique<EventProbe>(Context()->EventMgr());
        original = Dump();
    }

    void cleanup()
    {
        probe.reset();
        fixture.reset();
        SetFrameLogListener({});
    }

protected:
    G_UIContext* Context() const { return fixture->Context(); }
    QUndoStack* Stack() const { return fixture->View()->UndoStack(); }
    QString Dump() const { return DumpTree(root); }
    void Push(QUndoCommand* command) { Stack()->push(command); }

    G_TreeNode* Node(const Rows& rows) const
    {
        G_TreeNode* node = root;
        for (const int row : rows)
            node = node->SubNode(row);
        return node;
    }

    QString Title(const Rows& rows) const { return OutlineTitle(Node(rows)); }

    void PushMove(const QList<Rows>& moved, const Rows& destination, bool asChild)
    {
        QList<G_TreeNode*> nodes;
        for (const Rows& rows : moved)
            nodes.append(Node(rows));
        Push(new BatchMoveOutlineCommand(nodes, Node(destination), asChild, Context(), nullptr));
    }

    static QList<G_TreeNode*> AddRun(G_TreeNode* parent, int row, const QStringList& titles)
    {
        QList<G_TreeNode*> nodes;
        for (const QString& title : titles) {
            auto* item = new G_OutlineItem;
            item->text = GQ_ToCAS(title);
            nodes.append(parent->AddSubNode(row++, item));
        }
        return nodes;
    }

    void Refuse(G_TreeNode::Change refused)
    {
        root->SetChangeGuard([refused](G_TreeNode::Change change, G_TreeNode*, int) { return change != refused; });
    }

    QList<QByteArray> Failures() const
    {
        QList<QByteArray> failures;
        for (const QByteArray& line : lines) {
            if (line.endsWith("failed!"))
                failures.append(line);
        }
        return failures;
    }

    QList<QByteArray> lines;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
    G_TreeNode* root = nullptr;
    QString original;
};
