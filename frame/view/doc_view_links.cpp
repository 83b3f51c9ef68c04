#include "doc_view_private.h"

#include <frame/document/ig_document.h>

#include <algorithm>

// A page that was never painted has nothing to click on yet, and its content may not have been read: a mouse that
// passes over it must not wait for that.
bool G_DocView::LinkAt(const CCA_Point& point, G_PageLink* link) const
{
    int index = -1;
    const CCA_GPoint place = DocPointFromScenePoint(point, &index);
    const bool isPainted = index >= 0 && (!d->jobs || !d->cache.Pictures(index).isEmpty());
    IG_Page* page = isPainted ? d->document->GetPage(index) : nullptr;
    if (!page)
        return false;
    const QVector<G_PageLink> links = page->GetLinks();
    const QSet<int> ignored = links.isEmpty() ? QSet<int>() : d->IgnoredTemplates(index);
    const auto found = std::find_if(links.crbegin(), links.crend(), [&](const G_PageLink& candidate) {
        const bool isHidden = (candidate.isOfAnnotation && !d->showsAnnotations) ||
                              (candidate.templateId != 0 && ignored.contains(candidate.templateId));
        return !isHidden && candidate.Contains(place);
    });
    if (found == links.crend())
        return false;
    if (link)
        *link = *found;
    return true;
}

// A tip that begins like markup would be taken for it, and what it tells comes from the document.
void G_DocView::SetViewTip(const QString& text)
{
    if (!d->widget)
        return;
    QString tip = text.toHtmlEscaped().replace(QLatin1Char('\n'), QLatin1String("<br>"));
    if (!tip.isEmpty())
        tip = QStringLiteral("<p>") + tip + QStringLiteral("</p>");
    if (d->widget->viewport()->toolTip() != tip)
        d->widget->viewport()->setToolTip(tip);
}
