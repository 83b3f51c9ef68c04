#pragma once

#include <ofd/package/xml_edit.h>

namespace ofd {

// The order of the document element's children.
const SchemaOrder& DocumentOrder();

} // namespace ofd
