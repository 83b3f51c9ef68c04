#include "text_store.h"

#include <ofd/model/document_store.h>
#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>

#include <algorithm>
#include <initializer_list>
#include <new>

namespace ofd {

namespace {

constexpr int CachedTextBytes = 24 << 20;
constexpr int CachedTemplateBytes = 8 << 20;
constexpr int MostHeld = 64;         // entries that are not looked through for ones that have ended
constexpr qint64 BytesOfPiece = 256; // with its text and its corners

// What is too heavy for the budget is kept alone.
int CostOf(qint64 bytes, int budget)
{
    return int(std::min<qint64>(bytes, budget - 1)) + 1;
}

} // namespace

// Collects the text of a page's templates and of those that they use.
class TextStore::TemplateWalker
{
public:
    TemplateWalker(TextStore& texts, const HiddenText& hidden)
        : texts(texts)
        , hidden(hidden)
    {
    }

    void Walk(const PageContent& page, std::initializer_list<LayerKind> kinds, QVector<PlacedText>* pieces)
    {
        for (const LayerKind kind : kinds) {
            for (const TemplateRef& reference : page.templates) {
                if (texts.store.GetTemplateKind(reference.id, reference.zOrder) == kind)
                    Visit(reference.id, pieces);
            }
        }
    }

private:
    // Each once: used again it stands at the same place, or is a cycle.
    void Visit(int id, QVector<PlacedText>* pieces)
    {
        const bool isTooMuch = visited.size() >= limits::MaxTemplatesOnPage || depth >= limits::MaxReferenceDepth;
        if (isTooMuch || visited.contains(id) || hidden.templates.contains(id))
            return;
        visited.insert(id);
        ++depth;
        const std::shared_ptr<const PageContent> content = texts.store.GetTemplateContent(id);
        Walk(*content, {LayerKind::Background, LayerKind::Body}, pieces);
        *pieces += *texts.GetTemplatePieces(id, *content);
        Walk(*content, {LayerKind::Foreground}, pieces);
        --depth;
    }

    TextStore& texts;
    const HiddenText& hidden;
    QSet<int> visited; // ids
    int depth = 0;
};

TextStore::TextStore(DocumentStore& store)
    : store(store)
    , texts(CachedTextBytes)
    , templatePieces(CachedTemplateBytes)
{
}

TextStore::~TextStore() = default;

HiddenText TextStore::GetHidden(int pageIndex) const
{
    const SessionState::PageView view = store.GetSession().GetPageView(pageIndex);
    return {view.hiddenTemplates, view.hiddenLayers};
}

std::shared_ptr<const PageText> TextStore::FindText(int pageIndex)
{
    const HiddenText hidden = GetHidden(pageIndex);
    const std::lock_guard<std::mutex> lock(mutex);
    const auto* kept = texts.object(pageIndex); // not owned
    std::shared_ptr<const PageText> text = kept ? *kept : heldTexts.value(pageIndex).lock();
    return text && text->Hidden() == hidden ? text : nullptr;
}

std::shared_ptr<const PageText> TextStore::GetText(int pageIndex, const std::atomic<bool>* isGivenUp)
{
    if (std::shared_ptr<const PageText> known = FindText(pageIndex))
        return known;
    const ReadingTurns::Turn turn(turns, QString::number(pageIndex));
    if (std::shared_ptr<const PageText> known = FindText(pageIndex)) // another thread has just read it
        return known;
    try {
        const std::shared_ptr<const PageText> text = ReadText(pageIndex, isGivenUp);
        if (!text)
            return nullptr;
        const int cost = CostOf(text->Bytes(), CachedTextBytes);
        const std::lock_guard<std::mutex> lock(mutex);
        texts.insert(pageIndex, new std::shared_ptr<const PageText>(text), cost);
        Hold(pageIndex, text);
        return text;
    } catch (const std::bad_alloc&) {
        return WithoutMemory(pageIndex);
    }
}

// Only held, not kept: later there may be memory again.
std::shared_ptr<const PageText> TextStore::WithoutMemory(int pageIndex)
{
    const ProblemScope scope(store.GetProblems(), store.GetStructure().pages.value(pageIndex).part);
    ReportProblem(ProblemKind::Limit, QCoreApplication::translate(
                                          "OfdDocument", "There is not enough memory to read the text of the page."));
    const auto text = std::make_shared<const PageText>(nullptr, GetHidden(pageIndex), PageTexts());
    const std::lock_guard<std::mutex> lock(mutex);
    Hold(pageIndex, text);
    return text;
}

void TextStore::Hold(int pageIndex, const std::shared_ptr<const PageText>& text)
{
    if (heldTexts.size() >= MostHeld) {
        for (auto it = heldTexts.begin(); it != heldTexts.end();) {
            if (it->expired())
                it = heldTexts.erase(it);
            else
                ++it;
        }
    }
    heldTexts.insert(pageIndex, text);
}

std::shared_ptr<const PageText> TextStore::ReadText(int pageIndex, const std::atomic<bool>* isGivenUp)
{
    const HiddenText hidden = GetHidden(pageIndex);
    const ContentResult page = store.GetPageContent(pageIndex);
    const bool isMissing = store.GetStructure().pages.value(pageIndex).part.isEmpty();
    if (!page.error.isEmpty() && !isMissing)
        return std::make_shared<PageText>(nullptr, hidden, PageTexts());
    const auto isOver = [isGivenUp] { return isGivenUp && isGivenUp->load(std::memory_order_relaxed); };
    PageTexts pieces;
    TemplateWalker templates(*this, hidden);
    templates.Walk(*page.content, {LayerKind::Background, LayerKind::Body}, &pieces.before);
    if (isOver())
        return nullptr;
    pieces.own = PlaceTexts(*page.content, store, hidden.layers, isGivenUp);
    templates.Walk(*page.content, {LayerKind::Foreground}, &pieces.after);
    if (isOver())
        return nullptr;
    return std::make_shared<PageText>(page.content, hidden, pieces);
}

TextStore::Pieces TextStore::GetTemplatePieces(int templateId, const PageContent& content)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        if (const Pieces* known = templatePieces.object(templateId)) // not owned
            return *known;
    }
    // Two threads may lay it out at once the first time; both come to the same.
    const auto pieces = std::make_shared<const QVector<PlacedText>>(PlaceTexts(content, store));
    const int cost = CostOf(qint64(sizeof(Pieces)) + pieces->size() * BytesOfPiece, CachedTemplateBytes);
    const std::lock_guard<std::mutex> lock(mutex);
    templatePieces.insert(templateId, new Pieces(pieces), cost);
    return pieces;
}

qint64 TextStore::GetKeptBytes()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return qint64(texts.totalCost()) + templatePieces.totalCost();
}

qint64 TextStore::GetLimit() const
{
    return qint64(CachedTextBytes) + CachedTemplateBytes;
}

} // namespace ofd
