#pragma once

#include "element_tree_writer.h"

#include <QHash>

namespace ofd {

class XmlPart;
struct DocumentStructure;

using OutlineTree = std::shared_ptr<const ElementTree>;

// Whether the outline differs from what was read from the elements of the tree (null when there were none).
bool IsOutlineChanged(const OutlineTree& saved, const G_TreeNode* root);

// Edits the outline in the document part so that it is the one below the root. `saved` are the elements that are in the
// part now, null without any. The outline itself is made and removed as needed, since it must not be empty. False, with
// the reason, when it cannot be written.
bool WriteOutline(XmlEdit& edit, const XmlPart& document, const DocumentStructure& structure, const OutlineTree& saved,
                  const G_TreeNode* root, PackageError& error);

// After a save: the records below the root get the sources of the elements that were read anew below `fresh`, which has
// the same shape; what they are compared with from now on is what they hold.
void AdoptOutlineSources(G_TreeNode* root, G_TreeNode* fresh);

} // namespace ofd
