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

    G_RenderResult RenderPage(const G_RenderRequest& request) override;
    QSizeF PageSizeMm(int pageIndex) override;
    DocumentStore& GetStore() const { return *store; }

private:
    const std::shared_ptr<DocumentStore> store;
};

} // namespace ofd
