#include "text_probe.h"

#include "public_method.h"
#include "text_rules.h"

#include <frame/base/converters.h>
#include <frame/base/strings.h>
#include <frame/document/ig_document.h>
#include <frame/document/text_source.h>
#include <frame/view/application.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <algorithm>

namespace {

void ProbeWholePage(G_DocView* view, IG_Document* document, PageTextProbe& probe)
{
    probe.pageIndex = view->CurrentPageIndex();
    IG_Page* page = document->GetPage(probe.pageIndex);
    probe.rect = page ? CCA_GRect(0, 0, page->GetPageWidth(), page->GetPageHeight()) : CCA_GRect();
    document->ReleasePage(probe.pageIndex, 0);
}

// The text page, loaded and parsed; null when the page has none.
IG_TextPage* ParsedTextPage(IG_Page* page)
{
    if (!page->IsLoaded())
        page->Load();
    IG_TextPage* textPage = page->GetTextPage();
    if (textPage && !textPage->IsParsed())
        textPage->Parse(0);
    return textPage;
}

QString TextIn(const IG_TextPage* textPage, const CCA_GRect& rect)
{
    wchar_t* wide = nullptr;
    textPage->GetTextInRect(rect, &wide);
    QString text = GQ_ToQStringFromUtf8(CCA_StringConverter::unicode_to_utf8(wide));
    CCA_FreeWide(wide);
    return text;
}

// Reading a page may take seconds, in which the window must not stand still: of pages that are no longer at hand it is
// told what was selected.
bool IsToldByRuns(IG_Document* document, const G_HighLightItem& item)
{
    IG_TextSource* source = document->TextSource();
    const bool hasTexts =
        std::none_of(item.runs.cbegin(), item.runs.cend(), [](const G_TextRun& run) { return run.text.isEmpty(); });
    return source && hasTexts && !source->IsTextRead(item.pageIndex);
}

void AppendItemText(IG_Document* document, const G_HighLightItem& item, const char* logName, QString& text)
{
    IG_Page* page = document->GetPage(item.pageIndex);
    const bool isTold = page && IsToldByRuns(document, item);
    IG_TextPage* textPage = nullptr;
    if (page && !isTold)
        textPage = ParsedTextPage(page);
    else if (!page)
        G_Application::Instance().Log("Page load failed", logName);
    for (const G_TextRun& run : item.runs) {
        if (isTold)
            text += run.text;
        else if (textPage)
            text += TextIn(textPage, run.rect);
    }
    document->ReleasePage(item.pageIndex, 0);
}

} // namespace

void ProbePageText(G_DocView* view, int limit, const char* logName, PageTextProbe& probe)
{
    IG_Document* document = view ? view->GDocument() : nullptr;
    if (!document)
        return;
    const QList<G_HighLightItem> items = view->SelectHighLightText();
    if (items.isEmpty()) {
        ProbeWholePage(view, document, probe);
        return;
    }
    const G_HighLightItem& first = items.first();
    probe.pageIndex = first.pageIndex;
    probe.rect = first.runs.isEmpty() ? CCA_GRect() : first.runs.first().rect;
    for (const G_HighLightItem& item : items) {
        AppendItemText(document, item, logName, probe.text);
        if (limit < probe.text.size()) {
            probe.text = CutText(probe.text, limit);
            return;
        }
    }
}

void PublicMethod::ParseTextPage(G_UIContext* context, QString& text, CCA_GRect& rect, int& pageIndex, int limit)
{
    PageTextProbe probe{text, rect, pageIndex};
    ProbePageText(context ? context->CurrentDocView() : nullptr, limit, "PublicMethod::ParseTextPage", probe);
    text = probe.text;
    rect = probe.rect;
    pageIndex = probe.pageIndex;
}

void PublicMethod::CollectSelectionRects(G_UIContext* context, CCA_ArrayTemplate<SelectionRects>& result)
{
    G_DocView* view = context ? context->CurrentDocView() : nullptr;
    if (!view)
        return;
    for (const G_HighLightItem& item : view->SelectHighLightText()) {
        SelectionRects rects;
        rects.pageIndex = item.pageIndex;
        for (const G_TextRun& run : item.runs)
            rects.rects.Add(run.rect);
        result.Add(rects);
    }
}
