#include "memory_annot.h"

MemoryAnnot::MemoryAnnot(IG_Page* page, const MemoryDocument::AnnotRecord& record,
                         std::atomic<bool>* isDocumentModified)
    : page(page)
    , record(record)
    , isDocumentModified(isDocumentModified)
{
}

void MemoryAnnot::SetVisible(bool visible, bool)
{
    if (!isRemoved)
        isVisibleNow = visible;
}

bool MemoryAnnot::GetVisible(int which)
{
    return record.visible && (which == 0 || isVisibleNow);
}

void MemoryAnnot::Change(CCA_String* field, const CCA_String& text)
{
    if (isRemoved || *field == text)
        return;
    *field = text;
    *isDocumentModified = true;
}
