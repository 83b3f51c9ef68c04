#pragma once

#include <bookmark/bookmark_operations.h>

#include <QList>

// The seven operations of the bookmarks, registered as long as it lives.
struct BookmarkOperations
{
    BookmarkOperations()
    {
        for (G_Operation* operation : All())
            operation->RegisterToGlobal();
    }
    QList<G_Operation*> All() { return {&open, &add, &reset, &rename, &wrap, &remove, &removeAll}; }
    GP_BookmarkOperation open;
    GP_AddBookmark add;
    GP_BookmarkResetPosition reset;
    GP_BookmarkRename rename;
    GP_BookmarkWrap wrap;
    GP_BookmarkDelete remove;
    GP_BookmarkDeleteAll removeAll;
};
