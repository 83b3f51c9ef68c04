#pragma once

#include <QString>

class G_DocView;
class G_TreeNode;
class IG_Document;

// The name for a new bookmark in the list below `root`: the name itself when no other contains it, else the first of
// name, name(1), name(2), ... that no bookmark has, up to the number of names that contain it. One walk over the list.
QString FreeBookmarkName(const QString& name, const G_TreeNode* root);
// The same for a document, whose bookmark root is made when it is missing; empty when it cannot be made.
QString UniqueBookmarkName(const QString& name, IG_Document* document);
