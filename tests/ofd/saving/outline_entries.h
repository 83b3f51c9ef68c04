#pragma once

#include <frame/base/strings.h>
#include <tests/ofd/document/ofd_file.h>

class G_OutlineItem;
class G_TreeNode;
class IG_Document;

// Outlines for tests that save them, and edits as the pane makes them.

// Three entries, the first with two below it, written as nobody else would: comments, foreign attributes, blanks.
extern const QByteArray SampleOutline;
// A document of three pages with this behind them.
OfdFile OutlineFile(const QByteArray& tail = SampleOutline);
// "0/1" is the second entry below the first.
G_TreeNode* NodeAt(IG_Document& document, const QByteArray& rows);
G_OutlineItem* ItemAt(IG_Document& document, const QByteArray& rows);
void RenameEntry(IG_Document& document, const QByteArray& rows, const CCA_String& name);
// Owned by the caller.
G_OutlineItem* NewItem(const CCA_String& name);
// A move that is refused ends the run.
void Move(G_TreeNode* from, int row, G_TreeNode* to, int toRow);
