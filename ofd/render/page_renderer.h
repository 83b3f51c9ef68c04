#pragma once

#include <frame/document/page_renderer.h>

#include <memory>

namespace ofd {

class DocumentStore;

// Paints pages of a document: templates and layers by their order, then annotations where they are wanted, then the
// seals of signatures, which always show. Holds the document's store, so a painting that is under way outlives the
// document. Any thread.
class OfdPageRenderer : public IG_PageRenderer
{
public:
    explicit OfdPageRenderer(std::shared_ptr<DocumentStore> store);
    ~OfdPageRenderer() override;

    // Where memory runs out the page is an empty sheet, and the error tells.
    G_RenderResult RenderPage(const G_RenderRequest& request) override;
    QSizeF PageSizeMm(int pageIndex) override;
    DocumentStore& GetStore() const { return *store; }

private:
    G_RenderResult Paint(const G_RenderRequest& request);
    G_RenderResult PaintInPieces(const G_RenderRequest& request, const QRect& region);
    G_RenderResult EmptySheet(const G_RenderRequest& request);

    const std::shared_ptr<DocumentStore> store;
};

} // namespace ofd
