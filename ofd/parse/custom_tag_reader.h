#pragma once

#include <frame/document/tree_node.h>

#include <QString>

#include <memory>
#include <vector>

namespace ofd {

class Package;

// A file of tags: a root without payload whose one child is the file's top tag.
struct TagTree
{
    std::unique_ptr<G_TreeNode> root;
    QString part; // empty for a tree made in memory
    QString prefix;
    QString nameSpace;
};

// Reads the tag files that the list part names, each once, in the order of the list. Files that cannot be parsed at all
// are left out.
std::vector<TagTree> ReadCustomTags(const Package& package, const QString& listPart, const QString& documentFolder);

// Undoes the escapes "_xHHHH_" that stand in a tag's name for what XML does not allow there.
QString UnescapeTagName(const QString& name);

} // namespace ofd
