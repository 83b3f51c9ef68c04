#pragma once

#include <frame/navigation/navigation_page.h>

// The page of bookmarks in the navigation bar. Lives as long as the plugin.
class NaviBookmark : public Core::G_NavigationPage
{
    Q_OBJECT
public:
    NaviBookmark();
    QWidget* CreateWidget(IG_Document* document) override;
};
