#pragma once

#include <frame/navigation/navigation_page.h>

// The page of the document's outline in the navigation bar. Lives as long as the plugin.
class NaviPageOutline : public Core::G_NavigationPage
{
    Q_OBJECT
public:
    NaviPageOutline();
    QWidget* CreateWidget(IG_Document* document) override;
};
