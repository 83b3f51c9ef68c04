#pragma once

#include <frame/document/ig_document.h>

#include <QString>

// Writes what a document without a file shows into a file of the format, with identifiers kept; fails the run when that
// goes wrong. Texts are set in a font of 4 mm, each letter in the place that the document gives it.
void ExportDocument(IG_Document& document, const QString& path);
