#include "text_page.h"

#include "text_store.h"

#include <ofd/model/document_store.h>

namespace ofd {

OfdTextPage::OfdTextPage(std::shared_ptr<DocumentStore> store, int pageIndex)
    : store(std::move(store))
    , pageIndex(pageIndex)
{
}

OfdTextPage::~OfdTextPage() = default;

bool OfdTextPage::IsParsed() const
{
    return text && text->IsReadable() && text->Hidden() == store->GetTexts().GetHidden(pageIndex);
}

bool OfdTextPage::Parse(int)
{
    if (!IsParsed())
        text = store->GetTexts().GetText(pageIndex);
    return text->IsReadable();
}

void OfdTextPage::GetTextInRect(const CCA_GRect& rect, wchar_t** found) const
{
    if (found)
        *found = CCA_AllocWide(text ? text->TextInRect(rect) : QString());
}

QList<G_TextRun> OfdTextPage::RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const
{
    return text ? text->RunsBetween(from, to) : QList<G_TextRun>();
}

QList<G_TextRun> OfdTextPage::AllRuns() const
{
    return text ? text->AllRuns() : QList<G_TextRun>();
}

QList<G_TextGlyph> OfdTextPage::AllGlyphs() const
{
    return text ? text->AllGlyphs() : QList<G_TextGlyph>();
}

} // namespace ofd
