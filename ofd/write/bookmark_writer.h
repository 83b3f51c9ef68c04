#pragma once

#include <memory>
#include <vector>

class G_Bookmark;

namespace ofd {

class XmlEdit;
class XmlPart;
struct BookmarkSource;
struct DocumentStructure;

using BookmarkSources = std::vector<std::shared_ptr<const BookmarkSource>>;

// Whether the bookmarks differ from those whose sources were read.
bool AreBookmarksChanged(const BookmarkSources& saved, const std::vector<G_Bookmark*>& current);

// Edits the list of bookmarks in the document part so that it holds the current ones. `saved` are the sources of the
// elements that are in the part, in its order. Elements that stay are edited in place, and only in what changed; moved
// ones take their bytes along; the list itself is made and removed as needed, since it must not be empty.
void WriteBookmarks(XmlEdit& edit, const XmlPart& document, const DocumentStructure& structure,
                    const BookmarkSources& saved, const std::vector<G_Bookmark*>& current);

} // namespace ofd
