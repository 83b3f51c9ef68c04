#pragma once

#include <frame/document/ig_page.h>

#include <QPointF>
#include <QRectF>
#include <QVector>

#include <memory>

namespace ofd {

class DocumentStore;
struct PageContent;

// The text of a page's own layers, in the order in which its objects stand. Pieces that stand on one line without a
// wide gap form a run.
class OfdTextPage : public IG_TextPage
{
public:
    // A page that is not readable has no text, and parsing it fails.
    OfdTextPage(std::shared_ptr<DocumentStore> store, std::shared_ptr<const PageContent> content, bool isReadable);
    ~OfdTextPage() override;

    bool IsParsed() const override { return isParsed; }
    bool Parse(int flags) override;
    void GetTextInRect(const CCA_GRect& rect, wchar_t** text) const override;
    QList<G_TextRun> RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const override;
    QList<G_TextRun> AllRuns() const override;

private:
    // A character, or several that one drawing stands for.
    struct Cell
    {
        QRectF box; // page mm
        QString text;
        int run = 0;
    };

    void AssignRuns();
    template <typename Wanted>
    QList<G_TextRun> RunsOf(const Wanted& isWanted) const;

    const std::shared_ptr<DocumentStore> store;
    const std::shared_ptr<const PageContent> content;
    const bool isReadable;
    bool isParsed = false;
    QVector<Cell> cells;
};

} // namespace ofd
