#include "pane_area.h"

#include <frame/navigation/navigation_page.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>

PaneArea::PaneArea(QWidget* parent)
    : QWidget(parent)
    , title(new QLabel(this))
    , titleRow(new QHBoxLayout)
    , stack(new QStackedWidget(this))
{
    setMinimumWidth(220);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("PaneArea{background:#F5F7F9;}"));
    title->setStyleSheet(QStringLiteral("font-weight:600;color:#36425A;"));
    auto* close = new QToolButton(this);
    close->setIcon(QIcon(QStringLiteral(":/reader/image/close.svg")));
    close->setAutoRaise(true);
    close->setFocusPolicy(Qt::NoFocus);
    close->setToolTip(tr("Close the pane"));
    close->setAccessibleName(tr("Close the pane"));
    connect(close, &QToolButton::clicked, this, &PaneArea::CloseRequested);
    titleRow->setContentsMargins(10, 6, 6, 4);
    titleRow->addWidget(title, 1);
    titleRow->addWidget(close);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(titleRow);
    column->addWidget(stack, 1);
    nothing = new QWidget(stack);
    stack->addWidget(nothing);
}

void PaneArea::Adopt(QWidget* pane)
{
    if (stack->indexOf(pane) < 0)
        stack->addWidget(pane);
}

void PaneArea::ShowPane(Core::G_NavigationPage* page, QWidget* pane)
{
    title->setText(page ? page->Title() : QString());
    PlaceTitleButtons(page && pane ? page->TitleButtons(pane) : QList<QPushButton*>());
    if (pane)
        Adopt(pane);
    stack->setCurrentWidget(pane ? pane : nothing);
}

QWidget* PaneArea::CurrentPane() const
{
    return stack->currentWidget() == nothing ? nullptr : stack->currentWidget();
}

void PaneArea::PlaceTitleButtons(const QList<QPushButton*>& buttons)
{
    while (titleRow->count() > 2) {
        QLayoutItem* item = titleRow->takeAt(1);
        if (item->widget())
            item->widget()->hide();
        delete item;
    }
    for (int i = 0; i < buttons.size(); ++i) {
        titleRow->insertWidget(1 + i, buttons.at(i));
        buttons.at(i)->show();
    }
}
