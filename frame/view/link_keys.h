#pragma once

#include <frame/document/page_link.h>

class G_ToolHandler;
class QPainter;

// The keyboard over the links in view, for a tool that follows them: Tab and Shift+Tab go from link to link and then
// out of the view as ever, Enter runs the one with the frame, Escape gives it up. Owned by its tool.
class G_LinkKeys
{
public:
    explicit G_LinkKeys(G_ToolHandler* tool);
    // True when the key was for a link.
    bool KeyDown(int key, unsigned flags);
    // The frame of the chosen link, in scene coordinates.
    void Paint(QPainter* painter) const;
    void Forget();

private:
    bool Go(bool isForward);
    bool Run();
    // Position of the chosen link among those in view; -1 when it is not there.
    int Position() const;

    G_ToolHandler* tool; // not owned
    int page = -1;
    std::shared_ptr<const G_ActionList> chosen; // of the link with the frame; null for none
};
