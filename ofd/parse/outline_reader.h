#pragma once

#include <frame/document/payloads.h>
#include <frame/document/tree_node.h>

#include <memory>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

namespace ofd {

class ElementTree;
class XmlPart;
struct ActionValue;
struct BookmarkSource;
struct DocumentStructure;

// A tree whose nodes still lack their document.
using TreeRoot = std::unique_ptr<G_TreeNode>;

// A destination element; what is missing is 0, a page that does not exist has index -1.
G_Dest ReadDestination(const pugi::xml_node& element, const DocumentStructure& structure);
// The same in two steps: the page's index is -1 after the first.
G_Dest ReadDestination(const pugi::xml_node& element);
void ResolvePage(G_Dest& dest, const DocumentStructure& structure);

// The lists of bookmarks in the document part. There should be one at most; where there are more, all of them count.
std::vector<pugi::xml_node> BookmarkLists(const pugi::xml_node& documentRoot);
// The elements in all of them.
std::vector<pugi::xml_node> BookmarkElements(const pugi::xml_node& documentRoot);

// The bookmarks of the document part as flat children of a root; null when it has no list of them. `sources` gets the
// source of each element in the order of the part.
TreeRoot ReadBookmarks(const XmlPart& document, const DocumentStructure& structure,
                       std::vector<std::shared_ptr<const BookmarkSource>>* sources);

// What an action says, and its element when it came from a file.
ActionValue ValueOf(const G_Action& action);

// Whether an element inside the outline is an entry of it.
bool IsOutlineEntry(std::string_view localName);

// The outline of the document part, of several the first; null when it has none. `elements` gets what the sources of
// its records point into.
TreeRoot ReadOutline(const XmlPart& document, const DocumentStructure& structure,
                     std::shared_ptr<const ElementTree>* elements);

} // namespace ofd
