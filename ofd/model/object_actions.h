#pragma once

#include <frame/document/destination.h>

#include <QPainterPath>

#include <memory>
#include <vector>

namespace ofd {

// One thing that a click on an object runs.
struct ObjectAction
{
    // Where the click must fall, in the object's own space; empty: anywhere on the object.
    QPainterPath region;
    // Never null. A destination has the identifier of its page, but no page index: whoever lists the links of a page
    // finds that out.
    std::unique_ptr<const G_Action> action;
};

// In the order of the file, in which they run. Immutable once read.
using ObjectActions = std::vector<ObjectAction>;

} // namespace ofd
