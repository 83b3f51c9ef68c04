#pragma once

#include <frame/base/geometry.h>
#include <frame/document/page_link.h>

#include <QPoint>

class G_ToolHandler;

// The mouse over the links of a page, for a tool that follows them: shows what it is over, and runs what is clicked. A
// click is a press and a release on one link with hardly a movement between them. Owned by its tool; asks for the links
// of a page where the mouse is, and only once the page has been painted.
class G_LinkPointer
{
public:
    // `cursor` is the shape off the links.
    G_LinkPointer(G_ToolHandler* tool, int cursor);
    // The mouse moved, or rests, with no button down.
    void Hover(CCA_Point point);
    // The left button went down. True when it did on a link.
    bool Press(CCA_Point point);
    // The mouse moved with the button down. True while it may still become a click.
    bool Hold(CCA_Point point);
    // The button went up. True for a click, whose link runs in the next turn of the event loop.
    bool Release(CCA_Point point);
    // Nothing is shown or pressed any longer; the cursor is left to the tool.
    void Forget();

private:
    QPoint OnScreen(CCA_Point point) const;

    G_ToolHandler* tool; // not owned
    const int cursor;
    std::shared_ptr<const G_ActionList> shown; // of the link under the mouse; null for none
    G_PageLink pressed;                        // invalid for none
    QPoint pressPlace;                         // in the view, so that pages may move below the mouse
};
