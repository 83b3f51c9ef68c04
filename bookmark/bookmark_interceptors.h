#pragma once

#include <frame/operation/interceptor.h>

#include <QCoreApplication>
#include <QObject>

class CBookmarkTreeWidget;
class NaviBookmarkWidget;
class QTreeWidgetItem;

// What the bookmark interceptors share: the pane that made them and its list. One set for each pane; they do something
// only while the pane's document is the current one.
class BookmarkInterceptor : public G_OperationInterceptor
{
public:
    explicit BookmarkInterceptor(NaviBookmarkWidget* pane);

protected:
    // There is a pane, and its document is the current view's.
    bool IsMine() const;
    // Stores the destination of a row's bookmark in the row: a changed bookmark has a new record.
    void RefreshDestination(int row);

    NaviBookmarkWidget* pane;  // not owned
    CBookmarkTreeWidget* tree; // not owned
};

// Packs the selected rows, ascending, or tells that none is selected when "popup" is present.
class GPI_BookmarkDelete : public BookmarkInterceptor
{
    Q_DECLARE_TR_FUNCTIONS(GPI_BookmarkDelete)
public:
    using BookmarkInterceptor::BookmarkInterceptor;
    bool OperationFilter(G_Operation* op) override;
    // True for another document: this one takes no part, and the operation goes on.
    bool PrepareDataHandle(G_Operation* op, int flag) override;
};

// Asks before all bookmarks are deleted.
class GPI_BookmarkDeleteAll : public BookmarkInterceptor
{
    Q_DECLARE_TR_FUNCTIONS(GPI_BookmarkDeleteAll)
public:
    using BookmarkInterceptor::BookmarkInterceptor;
    bool OperationFilter(G_Operation* op) override;
    bool PrepareDataHandle(G_Operation* op, int flag) override;
};

// Opens the current row's editor and keeps the operation until the edit ends; it runs then.
class GPI_BookmarkRename : public QObject, public BookmarkInterceptor
{
    Q_OBJECT
public:
    explicit GPI_BookmarkRename(NaviBookmarkWidget* pane);
    bool OperationFilter(G_Operation* op) override;
    // False always: the rename goes on when the edit ends.
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    void AfterDoActionHandle(G_Operation* op) override;

public slots:
    // The edit of a row ended.
    void ItemChanged(QTreeWidgetItem* item, int column);

private:
    G_Operation* operation = nullptr; // not owned; the frame keeps it while this interceptor may use it
};

// Packs the current row, and refreshes its destination afterwards.
class GPI_BookmarkResetPosition : public BookmarkInterceptor
{
public:
    using BookmarkInterceptor::BookmarkInterceptor;
    bool OperationFilter(G_Operation* op) override;
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    bool BeforeDoActionHandle(G_Operation* op) override;
    void AfterDoActionHandle(G_Operation* op) override;
};

// Flips the word wrap of the list.
class GPI_BookmarkWrap : public BookmarkInterceptor
{
public:
    using BookmarkInterceptor::BookmarkInterceptor;
    bool OperationFilter(G_Operation* op) override;
    bool PrepareDataHandle(G_Operation* op, int flag) override;
};
