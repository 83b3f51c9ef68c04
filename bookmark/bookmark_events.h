#pragma once

#include <common/node_event.h>

// Type 1000: a bookmark was added to the document with this key, and the pane shows it.
class G_BookmarkAddEvent : public NodeEvent
{
public:
    using NodeEvent::NodeEvent;
};
