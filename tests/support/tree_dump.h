#pragma once

#include <QString>

class G_TreeNode;

// The nodes below a root as text, one a line, indented by two blanks a level, with all that its record holds:
//
//     Name -> 2/1 (0,0,100,50) x1.5 mode 0      page id / page index, rectangle in mm, zoom factor, zoom mode
//       Title closed
//       Tag [key=value] {7:1,2}                 objects of page 7
//
// A node whose level, index or parent field does not fit its place is marked with "!level", "!index" or "!parent", so
// that comparing two dumps checks those too. Null gives "no tree".
QString DumpTree(G_TreeNode* root);

// The same with the names alone, for tests of order and depth.
QString DumpNames(G_TreeNode* root);
