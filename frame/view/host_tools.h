#pragma once

#include <frame/base/export.h>
#include <frame/view/tool_handler.h>

#include <memory>

class G_LinkKeys;
class G_LinkPointer;
class G_PageHolds;
class QObject;
class QTimer;

// Registers the host's own tools, "t_handtool" and "t_textselect"; they stay registered as long as the process runs.
// Harmless when repeated.
FRAME_EXPORT void RegisterHostTools();

// Drags the pages, and follows links by a click, or by Tab and Enter. A view's tool when no other is chosen.
class FRAME_EXPORT GT_HandTool : public GT_Base
{
public:
    GT_HandTool();
    ~GT_HandTool() override;
    G_ToolHandler* Clone() override;
    CCA_String Name() override;
    void OnActivate() override;
    void OnDeactivate() override;
    int OnLButtonDown(unsigned flags, CCA_Point point) override;
    int OnLButtonUp(unsigned flags, CCA_Point point) override;
    int OnMouseMove(unsigned flags, CCA_Point point) override;
    int OnLeave() override;
    int OnKeyDown(int key, unsigned flags) override;
    void PaintSceneEnd(QPainter* painter, G_DocView* view) override;

private:
    const std::unique_ptr<G_LinkPointer> links;
    const std::unique_ptr<G_LinkKeys> linkKeys;
    bool isDragging = false;
    CCA_Point grip; // the scene point that stays under the mouse
};

// Selects text by dragging from one place to another, also across pages and beyond the edge of the view; a click with
// Shift moves the end, a double click selects a word, Ctrl+A everything, Escape nothing, Ctrl+C copies. A click follows
// a link.
class FRAME_EXPORT GT_TextSelect : public GT_Base
{
public:
    GT_TextSelect();
    ~GT_TextSelect() override;
    G_ToolHandler* Clone() override;
    CCA_String Name() override;
    void OnDestroy() override;
    void OnActivate() override;
    void OnDeactivate() override;
    int OnLButtonDown(unsigned flags, CCA_Point point) override;
    int OnLButtonUp(unsigned flags, CCA_Point point) override;
    int OnLButtonDblClk(unsigned flags, CCA_Point point) override;
    int OnMouseMove(unsigned flags, CCA_Point point) override;
    int OnLeave() override;
    int OnKeyDown(int key, unsigned flags) override;
    void PaintSceneEnd(QPainter* painter, G_DocView* view) override;

private:
    void SelectTo(CCA_Point point);
    void SelectWord(int page, const CCA_GPoint& place);
    void ScrollBeyondEdge();
    void EndDrag();

    const std::unique_ptr<G_LinkPointer> links;
    const std::unique_ptr<G_LinkKeys> linkKeys;
    bool isSelecting = false;
    CCA_Point mouse; // where the drag is, scene units
    // Runs while a drag is held beyond the edge of the view.
    std::unique_ptr<QTimer> scrollTimer;
    int startPage = -1;
    CCA_GPoint start; // mm on startPage
    // While a double click waits for the text of its page.
    std::unique_ptr<QObject> wordWait;
    // Pages whose text the drag went over, kept loaded until the button is let go.
    std::unique_ptr<G_PageHolds> holds;
};
