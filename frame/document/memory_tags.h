#pragma once

#include "ig_document.h"

class MemoryPage;

// The deepest tag with the smallest object of the page under the point (page mm). `node` and `objectId` may be null.
// False, and nothing set, when there is none.
bool FindTagAtPoint(IG_Document* document, const MemoryPage& page, const CCA_GPoint& point, G_TreeNode** node,
                    int* objectId);

// One text for all that saving would write of the document's trees; equal texts mean equal trees.
QByteArray FingerprintTrees(IG_Document* document);
