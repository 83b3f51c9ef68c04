#pragma once

#include "element_tree_writer.h"

#include <QByteArray>
#include <QString>

namespace ofd {

struct TagTree;

// Whether the tags differ from those of their part. A tree without a top tag is one that was never in a part or leaves
// it; so it differs when it has one.
bool AreTagsChanged(const TagTree& tree);

// The element of the top tag with all below it; empty, with the reason, when it cannot be written. `formatNamespace` is
// the address that references to objects belong to when the part does not tell.
QByteArray WriteTags(const TagTree& tree, const QByteArray& formatNamespace, PackageError& error);

// After a save: the records below the root get the sources of the elements that were read anew below `fresh`, which has
// the same shape; what they are compared with from now on is what they hold.
void AdoptTagSources(G_TreeNode* root, G_TreeNode* fresh);

} // namespace ofd
