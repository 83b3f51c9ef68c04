#include "status_panel.h"

#include <frame/document/ig_document.h>
#include <frame/operation/event_manager.h>
#include <frame/view/doc_view.h>
#include <frame/view/ui_context.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>

namespace {

struct ZoomRow
{
    const char* text; // null: the percentage itself
    float percent;
    G_Preferences::ZoomMode mode;
};

const ZoomRow zoomRows[] = {
    {nullptr, 25, G_Preferences::Custom},
    {nullptr, 50, G_Preferences::Custom},
    {nullptr, 75, G_Preferences::Custom},
    {nullptr, 100, G_Preferences::Custom},
    {nullptr, 150, G_Preferences::Custom},
    {nullptr, 200, G_Preferences::Custom},
    {nullptr, 400, G_Preferences::Custom},
    {QT_TRANSLATE_NOOP("StatusPanel", "Fit Width"), 0, G_Preferences::FitWidth},
    {QT_TRANSLATE_NOOP("StatusPanel", "Fit Height"), 0, G_Preferences::FitHeight},
    {QT_TRANSLATE_NOOP("StatusPanel", "Fit Page"), 0, G_Preferences::FitPage},
};

QString PercentText(float percent)
{
    return QString::number(qRound(percent)) + QLatin1Char('%');
}

} // namespace

StatusPanel::StatusPanel(QWidget* parent)
    : QWidget(parent)
    , pageBox(new QSpinBox(this))
    , zoomBox(new QComboBox(this))
{
    pageBox->setAccessibleName(tr("Page"));
    pageBox->setToolTip(tr("Page"));
    pageBox->setKeyboardTracking(false);
    pageBox->setMinimumWidth(110);
    pageBox->setAlignment(Qt::AlignCenter);
    zoomBox->setAccessibleName(tr("Zoom"));
    zoomBox->setToolTip(tr("Zoom"));
    zoomBox->setEditable(true);
    zoomBox->setInsertPolicy(QComboBox::NoInsert);
    for (const ZoomRow& row : zoomRows)
        zoomBox->addItem(row.text ? tr(row.text) : PercentText(row.percent));
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 8, 0);
    line->addWidget(pageBox);
    line->addWidget(zoomBox);
    connect(pageBox, QOverload<int>::of(&QSpinBox::valueChanged), this, &StatusPanel::GoToTypedPage);
    connect(zoomBox, QOverload<int>::of(&QComboBox::activated), this, &StatusPanel::ApplyZoomChoice);
    connect(zoomBox->lineEdit(), &QLineEdit::returnPressed, this, &StatusPanel::ApplyZoomText);
    connect(zoomBox->lineEdit(), &QLineEdit::returnPressed, this, &StatusPanel::Typed);
    connect(pageBox->findChild<QLineEdit*>(), &QLineEdit::returnPressed, this, &StatusPanel::Typed,
            Qt::QueuedConnection); // the box takes the number first
    SetView(nullptr);
}

void StatusPanel::SetView(G_DocView* newView)
{
    if (view)
        disconnect(view, nullptr, this, nullptr);
    disconnect(pagesWatch);
    view = newView;
    setEnabled(view != nullptr);
    if (!view) {
        const QSignalBlocker quiet(pageBox);
        pageBox->setSuffix(QString());
        pageBox->clear();
        zoomBox->clearEditText();
        return;
    }
    connect(view, &G_DocView::CurrentPageChanged, this, &StatusPanel::ShowPage);
    connect(view, &G_DocView::ZoomChanged, this, &StatusPanel::ShowZoom);
    if (view->UIContext()) { // the view itself was told before
        pagesWatch =
            connect(view->UIContext()->EventMgr(), &G_EventMgr::PageStructChanged, this, &StatusPanel::ShowPageCount);
    }
    ShowPageCount();
    ShowZoom(view->GetZoom());
}

void StatusPanel::EditPage()
{
    pageBox->setFocus(Qt::ShortcutFocusReason);
    pageBox->selectAll();
}

// What no box has a use for.
void StatusPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape || !view) {
        QWidget::keyPressEvent(event);
        return;
    }
    ShowPage(view->CurrentPageIndex());
    ShowZoom(view->GetZoom());
    emit Typed();
}

void StatusPanel::ShowPageCount()
{
    if (!view)
        return;
    const QSignalBlocker quiet(pageBox);
    const int pageCount = view->GDocument()->GetPageCount();
    pageBox->setRange(1, qMax(1, pageCount));
    pageBox->setSuffix(QStringLiteral(" / %1").arg(pageCount));
    ShowPage(view->CurrentPageIndex());
}

void StatusPanel::ShowPage(int pageIndex)
{
    const QSignalBlocker quiet(pageBox);
    pageBox->setValue(pageIndex + 1);
}

void StatusPanel::ShowZoom(float percent)
{
    zoomBox->setEditText(PercentText(percent));
}

void StatusPanel::GoToTypedPage()
{
    if (view)
        view->GoToPage(view, pageBox->value() - 1, CCA_GRect(), false);
}

void StatusPanel::ApplyZoomChoice(int position)
{
    if (!view || position < 0 || position >= int(sizeof(zoomRows) / sizeof(zoomRows[0])))
        return;
    const ZoomRow& row = zoomRows[position];
    if (row.mode == G_Preferences::Custom)
        view->SetZoom(row.percent, true);
    else
        view->SetZoomMode(row.mode);
    ShowZoom(view->GetZoom());
}

void StatusPanel::ApplyZoomText()
{
    if (!view)
        return;
    bool isNumber = false;
    const float percent = zoomBox->currentText().remove(QLatin1Char('%')).trimmed().toFloat(&isNumber);
    if (isNumber && percent > 0)
        view->SetZoom(percent, true);
    ShowZoom(view->GetZoom());
}
