#pragma once

#include <frame/document/ig_document.h>

#include <QString>

// All that a document tells through its interface, as lines of text: pages with sizes, layers, templates and texts;
// outline, bookmarks, tags with their objects, annotations, attachments, rights.
QString DescribeDocument(IG_Document& document);
