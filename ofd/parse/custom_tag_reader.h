#pragma once

#include <frame/document/tree_node.h>

#include <QString>
#include <QVector>

#include <memory>
#include <string_view>
#include <vector>

class G_CustomTagItem;
class G_PageObjRef;

namespace ofd {

class ElementTree;
class Package;
class XmlPart;

// A file of tags: a root without payload whose one child is the file's top tag.
struct TagTree
{
    std::unique_ptr<G_TreeNode> root;
    QString part;                                // empty for a tree made in memory
    std::shared_ptr<const ElementTree> elements; // of the part; null for a tree made in memory
    QString prefix;
    QString nameSpace;
};

// Reads the tag files that the list part names, each once, in the order of the list. Files that cannot be parsed at all
// are left out.
std::vector<TagTree> ReadCustomTags(const Package& package, const QString& listPart, const QString& documentFolder);

// Reads the tags of one part below the root; gives what the sources of its records point into.
std::shared_ptr<const ElementTree> ReadTagTree(const XmlPart& part, G_TreeNode* root);

// Whether an element inside a tag is a tag too.
bool IsTagElement(std::string_view localName);

// The objects that a tag is tied to, without references to none.
QVector<G_PageObjRef> ObjectsOf(const G_CustomTagItem& tag);

} // namespace ofd
