#pragma once

#include <frame/json/ovjson.h>

#include <QString>

namespace ofd {
class OfdDocument;
} // namespace ofd

// What `list` tells: an array of flat objects, those of trees with their level (from 1), in reading order. Pages count
// from 1; a page that does not exist is 0.
OVJson ListOutline(ofd::OfdDocument& document);
OVJson ListBookmarks(ofd::OfdDocument& document);
OVJson ListTags(ofd::OfdDocument& document);
OVJson ListAnnotations(ofd::OfdDocument& document);
OVJson ListAttachments(ofd::OfdDocument& document);
OVJson ListLayers(ofd::OfdDocument& document);

// An item of such an array as a line for people: fields between tabs, trees indented.
QString OutlineLine(const OVJson& item);
QString BookmarkLine(const OVJson& item);
QString TagLine(const OVJson& item);
QString AnnotationLine(const OVJson& item);
QString AttachmentLine(const OVJson& item);
QString LayerLine(const OVJson& item);
