#pragma once

#include "document_properties.h"

namespace ofd {
class OfdDocument;
}

// What an OFD document tells of a topic. Reads no page.
PropertySection OfdProperties(ofd::OfdDocument& document, PropertyTopic topic);
