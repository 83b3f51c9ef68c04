#include "ig_document.h"

IG_PageRenderer::~IG_PageRenderer() = default;

QSizeF IG_PageRenderer::PageSizeMm(int /*pageIndex*/)
{
    return {};
}

IG_Document::~IG_Document() = default;

bool IG_Document::MayPrint()
{
    return true;
}

int IG_Document::MostCopies()
{
    return -1;
}

std::shared_ptr<const G_ActionList> IG_Document::GetOpenActions()
{
    return nullptr;
}

IG_TextSource* IG_Document::TextSource()
{
    return nullptr;
}

int IG_Document::ShownTextRevision()
{
    return 0;
}
