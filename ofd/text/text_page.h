#pragma once

#include <frame/document/ig_page.h>

#include <memory>

namespace ofd {

class DocumentStore;
class PageText;

// The text of a page and of its templates, see PageText. Template text has no part in what goes by the identifiers of
// the page's objects (tags, objects in a rectangle): those of a template belong to the template. Once something of the
// page was hidden or shown, the text is no longer parsed, and parsing it again leaves out what is hidden.
class OfdTextPage : public IG_TextPage
{
public:
    OfdTextPage(std::shared_ptr<DocumentStore> store, int pageIndex);
    ~OfdTextPage() override;

    bool IsParsed() const override;
    // Takes no time where the page's text was read ahead.
    bool Parse(int flags) override;
    void GetTextInRect(const CCA_GRect& rect, wchar_t** text) const override;
    QList<G_TextRun> RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const override;
    QList<G_TextRun> AllRuns() const override;
    QList<G_TextGlyph> AllGlyphs() const override;

private:
    const std::shared_ptr<DocumentStore> store;
    const int pageIndex;
    std::shared_ptr<const PageText> text; // null until parsed
};

} // namespace ofd
