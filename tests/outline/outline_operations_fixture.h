#pragma once

#include "outline_operations_set.h"

#include <frame/base/log.h>
#include <frame/operation/event_manager.h>
#include <outline/outline_node.h>
#include <tests/support/event_probe.h>
#include <tests/support/host_doubles.h>
#include <tests/support/tree_dump.h>
#include <tests/support/view_fixture.h>

#include <QUndoStack>
#include <QtTest>

#include <functional>
#include <memory>

inline const char twoPages[] = "page 210 297\npage 210 297 id=9\n";
inline const char sample[] = "page 210 297\n"
                             "page 210 297 id=9\n"
                             "outline \"A\" page=1 rect=0,0,10,10\n"
                             "  outline \"A1\" page=1 rect=0,1,10,10 uri=https://example.org\n"
                             "  outline \"A2\" closed\n"
                             "outline \"B\"\n";

using Rows = QList<int>;

// The operations and a document without a pane; what is logged is kept.
class OutlineOperationsFixture : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        lines.clear();
        SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
        DeskNavigation::Forget();
        operations = std::make_unique<OutlineOperations>();
        navigation = std::make_unique<DeskNavigation>();
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

protected:
    void Open(const QString& text)
    {
        probe.reset();
        fixture = std::make_unique<ViewFixture>(text);
        probe = std::make_unique<EventProbe>(Context()->EventMgr());
    }

    G_UIContext* Context() const { return fixture->Context(); }
    G_DocView* View() const { return fixture->View(); }
    QUndoStack* Stack() const { return View()->UndoStack(); }
    G_TreeNode* Root() const { return fixture->Document()->GetOutlineRoot(); }
    QString Dump() const { return DumpTree(Root()); }
    QString Names() const { return DumpNames(Root()); }

    G_TreeNode* Node(const Rows& rows) const
    {
        G_TreeNode* node = Root();
        for (const int row : rows)
            node = node->SubNode(row);
        return node;
    }

    const G_Dest& LastDest(const Rows& rows) const
    {
        const G_OutlineItem* item = OutlineItemOf(Node(rows));
        return *dynamic_cast<const G_ActionGoto*>(item->actions[item->actions.GetSize() - 1])->dest;
    }

    bool Perform(const QByteArray& name, const QString& json = QString(),
                 const std::function<void(G_Operation*)>& fill = {})
    {
        G_Operation* operation = Context()->CreateOperationByName(name, QString());
        if (!json.isNull())
            operation->Params->Add("jsonParam", json);
        if (fill)
            fill(operation);
        const bool isDone = operation->PerformAction();
        lastResult = operation->Params->Get("result");
        operation->DeleteLater();
        return isDone;
    }

    QList<QByteArray> lines;
    std::unique_ptr<OutlineOperations> operations;
    std::unique_ptr<DeskNavigation> navigation;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
    QVariant lastResult;
};
