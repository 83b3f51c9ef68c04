#pragma once

#include <frame/document/payloads.h>
#include <ofd/package/element_tree.h>

#include <QByteArray>

#include <vector>

namespace ofd {

// Where records of the trees came from. Copies of a record share its source, so that deleting, moving and undoing lose
// nothing of what the record does not show.

// The element of a bookmark and what was read from it.
struct BookmarkSource : G_RecordSource
{
    QByteArray xml;
    CCA_String name;
    G_Dest dest;
};

// The element of a record that has records below it.
struct ElementSource : G_RecordSource
{
    std::shared_ptr<const ElementTree> tree;
    int element = 0; // in the tree
};

// What an action element says.
struct ActionValue
{
    CCA_String xml; // the element
    int type = 0;
    G_Dest dest;
    CCA_String bookmarkName;
    CCA_String uri;
};

// How many entries stand below one, counted in the ways in which files do it.
struct EntryCounts
{
    int leaves = 0;
    int children = 0;
    int all = 0;
};

// The element of an outline entry and what was read from it.
struct OutlineSource : ElementSource
{
    CCA_String text;
    bool expanded = true;
    bool hasExpanded = false; // it stands in the element
    bool hasCount = false;
    int count = 0;      // as written
    EntryCounts counts; // of its sub-entries then; only with hasCount
    std::vector<ActionValue> actions;
};

// The element of a tag and what was read from it.
struct TagSource : ElementSource
{
    CCA_String name;
    QVector<CCA_String> attributes;
    QVector<G_PageObjRef> objects;
};

} // namespace ofd
