#pragma once

#include <common/node_event.h>

// Type 1000: asks the outline pane of the document with this key to perform the operation of this name, which is
// "d_outline_add".
class G_OutlineAddEvent : public NodeEvent
{
public:
    using NodeEvent::NodeEvent;
};
