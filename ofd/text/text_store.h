#pragma once

#include "page_text.h"

#include <ofd/model/reading_turns.h>

#include <QCache>
#include <QHash>

#include <atomic>
#include <memory>
#include <mutex>

namespace ofd {

class DocumentStore;

// The text of an open document's pages, read when it is first wanted by whichever thread comes first, and kept within a
// budget. Templates are laid out once, however many pages use them. Any thread.
//
// Text of hidden templates and hidden layers of the page is left out: it is neither found nor selected while it is
// hidden. What a view alone hides on a page is still text of the page.
class TextStore
{
public:
    explicit TextStore(DocumentStore& store); // which owns this
    ~TextStore();

    // The text as it is shown now; of a page that cannot be read, or for which memory runs out, it is not readable.
    // Null only when it was given up.
    std::shared_ptr<const PageText> GetText(int pageIndex, const std::atomic<bool>* isGivenUp = nullptr);
    // The same when somebody has it; null otherwise.
    std::shared_ptr<const PageText> FindText(int pageIndex);
    HiddenText GetHidden(int pageIndex) const;

    qint64 GetKeptBytes();
    qint64 GetLimit() const;

private:
    using Pieces = std::shared_ptr<const QVector<PlacedText>>;
    class TemplateWalker;

    std::shared_ptr<const PageText> ReadText(int pageIndex, const std::atomic<bool>* isGivenUp);
    std::shared_ptr<const PageText> WithoutMemory(int pageIndex);
    void Hold(int pageIndex, const std::shared_ptr<const PageText>& text); // with the mutex locked
    Pieces GetTemplatePieces(int templateId, const PageContent& content);

    DocumentStore& store;
    ReadingTurns turns;
    std::mutex mutex;
    QCache<int, std::shared_ptr<const PageText>> texts;  // by page index; weighed in bytes
    QHash<int, std::weak_ptr<const PageText>> heldTexts; // that others may still hold
    QCache<int, Pieces> templatePieces;                  // by template id; weighed in bytes
};

} // namespace ofd
