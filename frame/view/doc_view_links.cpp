#include "doc_view_private.h"
#include "link_text.h"

#include <algorithm>
#include <tuple>

// A page that was never painted has nothing to click on yet, and its content may not have been read: a mouse that
// passes over it must not wait for that.
QVector<G_PageLink> G_DocView::Private::ShownLinks(int page)
{
    const bool isPainted = page >= 0 && (!jobs || !cache.Pictures(page).isEmpty());
    IG_Page* known = isPainted ? q->Page(page) : nullptr;
    QVector<G_PageLink> links = known ? known->GetLinks() : QVector<G_PageLink>();
    const QSet<int> ignored = links.isEmpty() ? QSet<int>() : IgnoredTemplates(page);
    if (showsAnnotations && ignored.isEmpty())
        return links;
    const auto isHidden = [&](const G_PageLink& link) {
        return (link.isOfAnnotation && !showsAnnotations) ||
               (link.templateId != 0 && ignored.contains(link.templateId));
    };
    links.erase(std::remove_if(links.begin(), links.end(), isHidden), links.end());
    return links;
}

bool G_DocView::LinkAt(const CCA_Point& point, G_PageLink* link) const
{
    int index = -1;
    const CCA_GPoint place = DocPointFromScenePoint(point, &index);
    const QVector<G_PageLink> links = d->ShownLinks(index);
    const auto found = std::find_if(links.crbegin(), links.crend(),
                                    [&place](const G_PageLink& candidate) { return candidate.Contains(place); });
    if (found == links.crend())
        return false;
    if (link)
        *link = *found;
    return true;
}

QVector<G_LinkInView> G_DocView::LinksInView() const
{
    QVector<G_LinkInView> inView;
    const QRect seen = VisibleSceneRect();
    const QPair<int, int> pages = d->layout.PagesIn(seen);
    for (int page = pages.first; page >= 0 && page <= pages.second; ++page) {
        const QTransform toScene = PageDisplayMatrix(page).ToQTransform() *
                                   QTransform::fromTranslate(PageRect(page).left(), PageRect(page).top());
        for (const G_PageLink& link : d->ShownLinks(page)) {
            const QPainterPath outline = toScene.map(link.area);
            if (outline.controlPointRect().intersects(seen))
                inView.append({page, link, outline});
        }
    }
    const auto place = [](const G_LinkInView& link) {
        const QRectF box = link.outline.controlPointRect();
        return std::make_tuple(link.pageIndex, box.top(), box.left());
    };
    std::stable_sort(inView.begin(), inView.end(),
                     [&place](const G_LinkInView& a, const G_LinkInView& b) { return place(a) < place(b); });
    return inView;
}

// Later, since a question may come up, and the event that asked for it must have ended by then.
void G_DocView::RunLink(const std::shared_ptr<const G_ActionList>& actions)
{
    QTimer::singleShot(0, this, [this, actions] {
        if (UIContext())
            UIContext()->ActionHandler()->DoActions(actions->Actions(), GDocument(), kClickOnPage);
    });
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
