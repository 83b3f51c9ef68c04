#include "navigation_bar.h"

#include <frame/navigation/navigation_page.h>

#include <QRegularExpression>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QKeySequence ShortcutOf(const QString& tooltip)
{
    static const QRegularExpression inParentheses(QStringLiteral("\\((Alt\\+Shift\\+\\d)\\)"));
    return QKeySequence(inParentheses.match(tooltip).captured(1));
}

QToolButton* MakeButton(Core::G_NavigationPage* page, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setCheckable(true);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setIcon(QIcon(page->IconPath()));
    button->setIconSize(QSize(22, 22));
    button->setFixedSize(36, 36);
    button->setToolTip(page->Tooltip());
    button->setAccessibleName(page->Title());
    button->setAccessibleDescription(page->Tooltip());
    return button;
}

} // namespace

NavigationBar::NavigationBar(QWidget* parent)
    : QWidget(parent)
    , column(new QVBoxLayout(this))
{
    setAccessibleName(tr("Navigation panes"));
    setFixedWidth(44);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("NavigationBar{background:#EDF0F4;border-right:1px solid #E4E6EB;}"));
    column->setContentsMargins(4, 8, 4, 8);
    column->setSpacing(6);
    column->addStretch(1);
}

void NavigationBar::SetPages(const QList<Core::G_NavigationPage*>& pages)
{
    for (const Row& row : qAsConst(rows))
        delete row.button;
    rows.clear();
    for (Core::G_NavigationPage* page : pages) {
        QToolButton* button = MakeButton(page, this);
        const QString paneId = page->PaneId().ToString();
        connect(button, &QToolButton::clicked, this,
                [this, paneId](bool checked) { emit PageToggled(paneId, checked); });
        const QKeySequence keys = ShortcutOf(page->Tooltip());
        if (!keys.isEmpty()) {
            auto* shortcut = new QShortcut(keys, button);
            shortcut->setContext(Qt::WindowShortcut);
            connect(shortcut, &QShortcut::activated, button, &QToolButton::click);
        }
        column->insertWidget(rows.size(), button);
        rows.append(Row{page, button});
    }
}

Core::G_NavigationPage* NavigationBar::PageOf(const QString& paneId) const
{
    for (const Row& row : rows) {
        if (row.page->PaneId().ToString() == paneId)
            return row.page;
    }
    return nullptr;
}

QList<QString> NavigationBar::PaneIds() const
{
    QList<QString> ids;
    for (const Row& row : rows)
        ids << row.page->PaneId().ToString();
    return ids;
}

void NavigationBar::SetChecked(const QString& paneId)
{
    for (const Row& row : qAsConst(rows))
        row.button->setChecked(row.page->PaneId().ToString() == paneId);
}
