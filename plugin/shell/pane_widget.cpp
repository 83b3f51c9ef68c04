#include "pane_widget.h"

#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

PaneWidget::PaneWidget(QWidget* parent)
    : QWidget(parent)
{
}

PaneWidget::~PaneWidget() = default;

bool PaneWidget::IsCurrentDocument() const
{
    const G_DocView* view = context ? context->CurrentDocView() : nullptr;
    return view && view->GDocument() == document;
}

void PaneWidget::PageStructChanged(IG_Document*)
{
    needsRefresh = true;
}

void PaneWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    const bool isStale = needsRefresh;
    needsRefresh = false;
    if (isStale)
        RefreshStale();
}
