#include "ig_document.h"

IG_PageRenderer::~IG_PageRenderer() = default;

QSizeF IG_PageRenderer::PageSizeMm(int /*pageIndex*/)
{
    return {};
}

IG_Document::~IG_Document() = default;
