#pragma once

#include "reading_order.h"

#include <frame/document/text_source.h>
#include <ofd/model/content.h>

#include <QSet>

#include <memory>

namespace ofd {

class DocumentStore;

// What of a page is hidden in this session, as far as it has text.
struct HiddenText
{
    QSet<int> templates; // ids
    QSet<int> layers;    // positions on the page

    friend bool operator==(const HiddenText& a, const HiddenText& b)
    {
        return a.templates == b.templates && a.layers == b.layers;
    }
};

// What a page's text is made of. Pieces are in document order.
struct PageTexts
{
    QVector<PlacedText> before; // of templates that are painted before the page's own content, in painting order
    QVector<PlacedText> own;
    QVector<PlacedText> after;
};

// The text of a page and of its templates, in reading order: the page's objects as they stand in the file, whichever
// way they run, with the lines of templates in between where they belong. A template that a page uses twice is read
// once, since it stands at one place. Pieces that stand on one line without a wide gap form a run. Between two points
// lies what comes between the places nearest to them in that order, so columns are not mixed where the file writes one
// behind the other. A gap between two words that the file writes apart, without a blank, is a blank in the text of
// runs and in that in a rectangle; beside ideographs, where narrow gaps are usual, a wide one is. Never changes; any
// thread.
class PageText : public IG_ReadText
{
public:
    // The content stays in memory as long as its text. Without content the page is not readable.
    PageText(std::shared_ptr<const PageContent> content, HiddenText hidden, const PageTexts& texts);

    bool IsReadable() const override { return content != nullptr; }
    QList<G_TextGlyph> AllGlyphs() const override;
    QString TextInRect(const CCA_GRect& rect) const;
    QList<G_TextRun> RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const;
    QList<G_TextRun> AllRuns() const { return RunsOf(0, cells.size()); }
    const std::shared_ptr<const PageContent>& Content() const { return content; }
    const HiddenText& Hidden() const { return hidden; }
    qint64 Bytes() const; // of memory, about, with the content that it holds

private:
    // A character, or several that one drawing stands for.
    struct Cell
    {
        QRectF box;        // page mm
        double middle = 0; // along its run
        int run = 0;
        int firstLetter = 0;        // in `letters`; it has those up to the next cell
        bool isBehindBlank = false; // that the file does not write: a gap stands for it
    };

    int EndLetter(int cell) const { return cell + 1 < cells.size() ? cells.at(cell + 1).firstLetter : letters.size(); }
    QString TextOf(int from, int to) const; // of cells of one run
    QList<G_TextRun> RunsOf(int from, int to) const;
    const TextLine* NearestRun(const QPointF& place) const; // null when there is no text
    int CellsBefore(const CCA_GPoint& point) const;         // in reading order

    const std::shared_ptr<const PageContent> content;
    const HiddenText hidden;
    QString letters;
    QVector<Cell> cells;
    QVector<TextLine> runs;
    QRectF bounds;
};

} // namespace ofd
