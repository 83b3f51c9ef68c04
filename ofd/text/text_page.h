#pragma once

#include <frame/document/ig_page.h>

#include <QPointF>
#include <QRectF>
#include <QVector>

#include <memory>

namespace ofd {

class DocumentStore;
struct PageContent;
struct PlacedText;

// The text of a page's own layers, in the order in which its objects stand, whichever way it runs. Pieces that stand on
// one line without a wide gap form a run. Between two points lies what comes between the places nearest to them in that
// order, so columns are not mixed where the file writes one behind the other.
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
    QList<G_TextGlyph> AllGlyphs() const override;

private:
    // A character, or several that one drawing stands for.
    struct Cell
    {
        QRectF box; // page mm
        QString text;
        double middle = 0; // along its run
        int run = 0;
    };
    // Cells that stand on one line.
    struct Run
    {
        QPointF along; // the way it runs on the page; 1 long
        QRectF onLine; // x along, y across
        int firstCell = 0;
        int endCell = 0;
    };

    void AddCell(const PlacedText& piece);
    QList<G_TextRun> RunsOf(int from, int to) const;
    const Run* NearestRun(const QPointF& place) const; // null when there is no text
    int CellsBefore(const CCA_GPoint& point) const;    // in reading order

    const std::shared_ptr<DocumentStore> store;
    const std::shared_ptr<const PageContent> content;
    const bool isReadable;
    bool isParsed = false;
    QVector<Cell> cells;
    QVector<Run> runs;
    QRectF bounds;
    QRectF lastOnLine; // of the last cell
};

} // namespace ofd
