#pragma once

#include "outline_operations_set.h"

#include <frame/operation/event_manager.h>
#include <outline/outline_node.h>
#include <tests/support/operations_fixture.h>
#include <tests/support/tree_dump.h>

#include <QUndoStack>
#include <QtTest>

#include <functional>

inline const char twoPages[] = "page 210 297\npage 210 297 id=9\n";
inline const char sample[] = "page 210 297\n"
                             "page 210 297 id=9\n"
                             "outline \"A\" page=1 rect=0,0,10,10\n"
                             "  outline \"A1\" page=1 rect=0,1,10,10 uri=https://example.org\n"
                             "  outline \"A2\" closed\n"
                             "outline \"B\"\n";

using Rows = QList<int>;

// The operations and a document without a pane.
class OutlineOperationsFixture : public OperationsFixture<OutlineOperations>
{
protected:
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

    QVariant lastResult;
};
