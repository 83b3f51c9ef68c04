#pragma once

#include <frame/operation/operation.h>

class G_UIContext;

// Brings a pane to the front of the navigation bar through the host's operation. False when the host has none.
bool OpenNavigationPane(G_UIContext* context, const char* paneId);

// The base of the operations that open one pane each: a subclass says its name and its pane's id.
class NavigationOpenOperation : public G_Operation
{
public:
    // False, and nothing opens, without a current view.
    bool DoAction() override;

protected:
    virtual const char* PaneId() const = 0; // as the page's
};
