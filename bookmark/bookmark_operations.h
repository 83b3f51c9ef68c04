#pragma once

#include <plugin/shell/navigation_open_operation.h>

#include <frame/operation/operation.h>

#include <QCoreApplication>

// Opens the bookmark pane.
class GP_BookmarkOperation : public NavigationOpenOperation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;

protected:
    const char* PaneId() const override;
};

// Adds a bookmark of the view's place behind the others, named by the highlighted text or "new bookmark". The pane
// pushes the undo command when it is told; a document without a pane gets the bookmark without an undo step.
class GP_AddBookmark : public G_Operation
{
    Q_DECLARE_TR_FUNCTIONS(GP_AddBookmark)
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    int AuthorityType() const override;
    bool DoAction() override;

private:
    QString NewName() const;
};

// Deletes the bookmarks at "row0", "row1", ... True also when there was none to delete.
class GP_BookmarkDelete : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    int AuthorityType() const override;
    bool DoAction() override;
};

// Deletes all bookmarks in one undo step.
class GP_BookmarkDeleteAll : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    int AuthorityType() const override;
    bool DoAction() override;
};

// Gives the bookmark at "row" the name "name"; "result" is true afterwards. False when there is no such row.
class GP_BookmarkRename : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    int AuthorityType() const override;
    bool DoAction() override;
};

// Gives the bookmark at "row" the view's present place; "result" is true afterwards. False when there is no such row.
class GP_BookmarkResetPosition : public G_Operation
{
    Q_DECLARE_TR_FUNCTIONS(GP_BookmarkResetPosition)
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    int AuthorityType() const override;
    bool DoAction() override;
};

// Turns word wrap of the list on and off. Does nothing itself: its interceptor does the work, for only the pane knows
// the list.
class GP_BookmarkWrap : public G_Operation
{
public:
    G_Operation* Clone() const override;
    const char* Name() const override;
    bool DoAction() override;
};
