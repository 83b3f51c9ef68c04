#pragma once

#include <frame/document/text_source.h>

#include <memory>

namespace ofd {

class DocumentStore;

// Reads text for the views of a document. Holds the document's store. Any thread.
class OfdTextSource : public IG_TextSource
{
public:
    explicit OfdTextSource(std::shared_ptr<DocumentStore> store);
    std::shared_ptr<const IG_ReadText> ReadText(int pageIndex, const std::atomic<bool>& isGivenUp) override;
    bool IsTextRead(int pageIndex) override;

private:
    const std::shared_ptr<DocumentStore> store;
};

} // namespace ofd
