#pragma once

#include "memory_text.h"
#include "page_renderer.h"

#include <QSizeF>

#include <functional>

// What the renderer needs of a page, copied out of the document.
struct MemorySheet
{
    QSizeF sizeMm = QSizeF(210, 297);
    QVector<MemoryText> texts;
    QStringList templateNames;
    QVector<CCA_GRect> annotBoxes;
};

// Paints sheets: white paper, the texts in a default font, the names of the templates at the foot, and a frame for
// each annotation. Plain, but every change that a user can make is to be seen.
class MemoryRenderer : public IG_PageRenderer
{
public:
    // Fills the sheet for a request; false when there is no such page. Called from any thread.
    using SheetSource = std::function<bool(const G_RenderRequest& request, MemorySheet* sheet)>;

    explicit MemoryRenderer(SheetSource source);
    G_RenderResult RenderPage(const G_RenderRequest& request) override;

private:
    SheetSource source;
};
