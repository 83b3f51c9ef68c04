#include "document_order.h"

namespace ofd {

const SchemaOrder& DocumentOrder()
{
    static const SchemaOrder order = {"CommonData", "Pages",        "Outlines",  "Permissions",
                                      "Actions",    "VPreferences", "Bookmarks", "Annotations",
                                      "CustomTags", "Attachments",  "Extensions"};
    return order;
}

} // namespace ofd
