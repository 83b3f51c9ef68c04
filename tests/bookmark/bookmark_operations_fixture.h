#pragma once

#include "bookmark_operations_set.h"

#include <bookmark/bookmark_node.h>
#include <frame/operation/event_manager.h>
#include <tests/support/operations_fixture.h>

#include <QtTest>

#include <functional>

inline const char threeBookmarks[] = "page 210 297\n"
                                     "page 210 297\n"
                                     "bookmark \"A\" page=1 rect=0,0,10,10 zoom=1 mode=0\n"
                                     "bookmark \"B\" page=1 rect=0,10,20,20 zoom=1.5 mode=2\n"
                                     "bookmark \"C\" page=2 rect=0,20,30,30 zoom=2 mode=1\n";

// The operations and a document without a pane.
class BookmarkOperationsFixture : public OperationsFixture<BookmarkOperations>
{
protected:
    using Fill = std::function<void(G_OperationParam*)>;

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

    QStringList Names() const
    {
        QStringList names;
        const G_TreeNode* root = fixture->Document()->GetBookmarkRoot();
        for (int row = 0; root && row < root->SubNodeCount(); ++row)
            names.append(BookmarkName(root->SubNode(row)));
        return names;
    }

    const G_Bookmark* Bookmark(int row) const { return BookmarkOf(BookmarkNode(fixture->Document(), row)); }
};
