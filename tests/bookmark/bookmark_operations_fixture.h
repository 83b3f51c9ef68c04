#pragma once

#include "bookmark_operations_set.h"

#include <bookmark/bookmark_node.h>
#include <frame/base/log.h>
#include <frame/operation/event_manager.h>
#include <tests/support/event_probe.h>
#include <tests/support/host_doubles.h>
#include <tests/support/view_fixture.h>

#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

inline const char threeBookmarks[] = "page 210 297\n"
                                     "page 210 297\n"
                                     "bookmark \"A\" page=1 rect=0,0,10,10 zoom=1 mode=0\n"
                                     "bookmark \"B\" page=1 rect=0,10,20,20 zoom=1.5 mode=2\n"
                                     "bookmark \"C\" page=2 rect=0,20,30,30 zoom=2 mode=1\n";

// The operations and a document without a pane; what is logged is kept.
class BookmarkOperationsFixture : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        lines.clear();
        SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
        DeskNavigation::Forget();
        operations = std::make_unique<BookmarkOperations>();
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
    std::unique_ptr<DeskNavigation> navigation;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
};
