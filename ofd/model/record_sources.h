#pragma once

#include <frame/document/payloads.h>

#include <QByteArray>

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

// The element of an outline entry without its sub-entries.
struct OutlineSource : G_RecordSource
{
    QByteArray startTag;
    QByteArray actions; // the element with its actions; empty without one
    CCA_String text;
    bool expanded = true;
};

// The element of a tag.
struct TagSource : G_RecordSource
{
    QByteArray qualifiedName;
    QByteArray xml; // with everything below it
};

} // namespace ofd
