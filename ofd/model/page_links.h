#pragma once

#include <frame/document/page_link.h>

#include <QVector>

#include <memory>
#include <vector>

namespace ofd {

class DocumentStore;

// A link of a page, and what can hide it.
struct PlacedLink
{
    G_PageLink link;
    int layer = -1;         // position of the page's own layer; negative for none
    int annotation = -1;    // position in the page's list; negative for none
    QVector<int> templates; // ids, from the page's own one inwards
};

// All links of a page in the order of painting. Immutable, but its outlines belong to the main thread.
struct PlacedLinks
{
    std::vector<PlacedLink> links;
    qint64 bytes = 0; // of memory that it takes, about
};

// Walks a page with its templates, composites and annotations. Main thread.
std::shared_ptr<const PlacedLinks> PlaceLinks(DocumentStore& store, int pageIndex);

} // namespace ofd
