#include "navigation_page.h"

#include <QPushButton>
#include <QWidget>

namespace Core {

namespace {
QList<G_NavigationPage*>& Pages()
{
    static auto* pages = new QList<G_NavigationPage*>; // outlives every page, also those that die with the process
    return *pages;
}
} // namespace

G_NavigationPage::G_NavigationPage(QObject* parent)
    : QObject(parent)
{
    Pages().append(this);
}

G_NavigationPage::~G_NavigationPage()
{
    Pages().removeOne(this);
}

QWidget* G_NavigationPage::CreateActionBar()
{
    return nullptr;
}

void G_NavigationPage::AddTitleButtonList(QWidget* pane, const QList<QPushButton*>& buttons)
{
    if (!pane)
        return;
    if (!titleButtons.contains(pane))
        connect(pane, &QObject::destroyed, this, [this, pane] { titleButtons.remove(pane); });
    titleButtons[pane] += buttons;
}

QList<QPushButton*> G_NavigationPage::TitleButtons(QWidget* pane) const
{
    return titleButtons.value(pane);
}

QList<G_NavigationPage*> G_NavigationPage::allNaviPages()
{
    return Pages();
}

QWidget* G_NavigationPage::WidgetFor(IG_Document* document) const
{
    return panes.value(document);
}

void G_NavigationPage::SetWidgetFor(IG_Document* document, QWidget* pane)
{
    panes.insert(document, pane);
}

void G_NavigationPage::ForgetDocument(IG_Document* document)
{
    panes.remove(document);
}

} // namespace Core
