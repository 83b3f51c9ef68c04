#include "host_tools.h"

#include "doc_view.h"
#include "link_keys.h"
#include "link_pointer.h"
#include "page_holds.h"

#include <frame/document/ig_document.h>

#include <QTimer>

#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr int kArrowCursor = Qt::ArrowCursor;
constexpr int kScrollStepPx = 40;
constexpr int kScrollIntervalMs = 40;
constexpr int kMostPagesHeld = 20; // a drag over more keeps none of them loaded

// Whether the first place stands behind the second in reading order; only the page and the height matter here.
bool IsBehind(int page, const CCA_GPoint& point, int otherPage, const CCA_GPoint& other)
{
    return page != otherPage ? page > otherPage : point.y > other.y;
}

// The word of a text around a position: letters, digits and what stands for them in scripts without blanks.
QPair<int, int> WordAt(const QString& text, int position)
{
    const auto isWord = [&text](int i) { return text.at(i).isLetterOrNumber() || text.at(i) == QLatin1Char('_'); };
    if (text.isEmpty())
        return {0, 0};
    position = qBound(0, position, text.size() - 1);
    if (!isWord(position))
        return {position, position + 1};
    int from = position;
    int to = position + 1;
    while (from > 0 && isWord(from - 1))
        --from;
    while (to < text.size() && isWord(to))
        ++to;
    return {from, to};
}

// The glyph at a place of a page, or the nearest one of a line that is there; -1 when none is.
int GlyphAt(const IG_TextPage& page, const QList<G_TextGlyph>& glyphs, const CCA_GPoint& place)
{
    const QList<G_TextRun> runs = page.AllRuns();
    int nearest = -1;
    float least = std::numeric_limits<float>::max();
    for (int i = 0; i < glyphs.size(); ++i) {
        const CCA_GRect& box = glyphs.at(i).rect;
        if (box.Contains(place))
            return i;
        const float distance = std::hypot((box.left + box.right) / 2 - place.x, (box.top + box.bottom) / 2 - place.y);
        if (distance < least && runs.value(glyphs.at(i).run).rect.Contains(place)) {
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

// The word on a line around one of its glyphs, with the box of its own glyphs.
G_TextRun WordAround(const QList<G_TextGlyph>& glyphs, int hit)
{
    const int line = glyphs.at(hit).run;
    QString text;
    QVector<int> glyphOf; // by position in the text
    int place = 0;
    for (int i = 0; i < glyphs.size(); ++i) {
        if (glyphs.at(i).run != line)
            continue;
        if (i == hit)
            place = text.size();
        text += glyphs.at(i).text;
        glyphOf += QVector<int>(glyphs.at(i).text.size(), i);
    }
    const QPair<int, int> word = WordAt(text, place);
    G_TextRun run;
    for (int at = word.first; at < word.second; ++at) {
        const G_TextGlyph& glyph = glyphs.at(glyphOf.at(at));
        if (at > word.first && glyphOf.at(at) == glyphOf.at(at - 1))
            continue;
        run.text += glyph.text;
        const CCA_GRect& box = glyph.rect;
        run.rect = at == word.first ? box
                                    : CCA_GRect(qMin(run.rect.left, box.left), qMin(run.rect.top, box.top),
                                                qMax(run.rect.right, box.right), qMax(run.rect.bottom, box.bottom));
    }
    return run;
}

} // namespace

void RegisterHostTools()
{
    // Never freed: the registry holds them by reference until the process ends.
    static auto* hand = new GT_HandTool;
    static auto* select = new GT_TextSelect;
    if (G_ToolRegistry::Instance().Find("t_handtool") != hand)
        hand->RegisterHandlerToGlobal();
    if (G_ToolRegistry::Instance().Find("t_textselect") != select)
        select->RegisterHandlerToGlobal();
}

GT_HandTool::GT_HandTool()
    : links(std::make_unique<G_LinkPointer>(this, Qt::OpenHandCursor))
    , linkKeys(std::make_unique<G_LinkKeys>(this))
{
}

GT_HandTool::~GT_HandTool() = default;

G_ToolHandler* GT_HandTool::Clone()
{
    return new GT_HandTool;
}

CCA_String GT_HandTool::Name()
{
    return "t_handtool";
}

void GT_HandTool::OnActivate()
{
    DocView()->SetViewCursor(Qt::OpenHandCursor);
}

void GT_HandTool::OnDeactivate()
{
    isDragging = false;
    links->Forget();
    linkKeys->Forget();
    DocView()->SetViewCursor(kArrowCursor);
}

int GT_HandTool::OnLButtonDown(unsigned /*flags*/, CCA_Point point)
{
    linkKeys->Forget();
    isDragging = true;
    grip = point;
    if (!links->Press(point))
        DocView()->SetViewCursor(Qt::ClosedHandCursor);
    return 1;
}

int GT_HandTool::OnLButtonUp(unsigned /*flags*/, CCA_Point point)
{
    if (!isDragging)
        return 0;
    isDragging = false;
    links->Release(point);
    links->Hover(point);
    return 1;
}

int GT_HandTool::OnMouseMove(unsigned /*flags*/, CCA_Point point)
{
    if (!isDragging) {
        links->Hover(point);
        return 0;
    }
    if (links->Hold(point)) // a hand is never quite still while it clicks
        return 1;
    DocView()->SetViewCursor(Qt::ClosedHandCursor);
    // The scene moves under the mouse, so `point` is again the grip once the view has followed.
    DocView()->ScrollBy(grip.x - point.x, grip.y - point.y);
    return 1;
}

int GT_HandTool::OnLeave()
{
    if (!isDragging)
        links->Forget();
    return 0;
}

int GT_HandTool::OnKeyDown(int key, unsigned flags)
{
    return linkKeys->KeyDown(key, flags) ? 1 : 0;
}

void GT_HandTool::PaintSceneEnd(QPainter* painter, G_DocView* /*view*/)
{
    linkKeys->Paint(painter);
}

GT_TextSelect::GT_TextSelect()
    : links(std::make_unique<G_LinkPointer>(this, Qt::IBeamCursor))
    , linkKeys(std::make_unique<G_LinkKeys>(this))
{
}

GT_TextSelect::~GT_TextSelect() = default;

G_ToolHandler* GT_TextSelect::Clone()
{
    return new GT_TextSelect;
}

CCA_String GT_TextSelect::Name()
{
    return "t_textselect";
}

void GT_TextSelect::OnDestroy()
{
    EndDrag();
}

void GT_TextSelect::OnActivate()
{
    DocView()->SetViewCursor(Qt::IBeamCursor);
    DocView()->SetReadsTextAhead(true);
}

void GT_TextSelect::OnDeactivate()
{
    EndDrag();
    links->Forget();
    linkKeys->Forget();
    DocView()->SetReadsTextAhead(false);
    DocView()->SetViewCursor(kArrowCursor);
}

void GT_TextSelect::EndDrag()
{
    isSelecting = false;
    holds.reset();
    scrollTimer.reset();
    wordWait.reset();
}

int GT_TextSelect::OnLButtonDown(unsigned flags, CCA_Point point)
{
    wordWait.reset();
    const bool goesOn = (flags & Qt::ShiftModifier) != 0 && !DocView()->SelectHighLightText().isEmpty();
    if (goesOn && startPage >= 0) {
        holds = std::make_unique<G_PageHolds>(GDocument());
        isSelecting = true;
        SelectTo(point);
        return 1;
    }
    linkKeys->Forget();
    links->Press(point);
    DocView()->SetHighLightText({});
    startPage = DocView()->PageIndexByPoint(QPoint(point.x, point.y), true, false);
    if (startPage < 0)
        return 1;
    start = DocView()->DocPointOnPage(point, startPage);
    holds = std::make_unique<G_PageHolds>(GDocument());
    isSelecting = true;
    return 1;
}

int GT_TextSelect::OnMouseMove(unsigned /*flags*/, CCA_Point point)
{
    if (!isSelecting) {
        links->Hover(point);
        return 0;
    }
    if (links->Hold(point)) // nothing is selected as long as it may be a click
        return 1;
    mouse = point;
    SelectTo(point);
    const bool isBeyond = !DocView()->VisibleSceneRect().contains(point.x, point.y);
    if (!isBeyond) {
        scrollTimer.reset();
    } else if (!scrollTimer) {
        scrollTimer = std::make_unique<QTimer>();
        QObject::connect(scrollTimer.get(), &QTimer::timeout, scrollTimer.get(), [this] { ScrollBeyondEdge(); });
        scrollTimer->start(kScrollIntervalMs);
    }
    return 1;
}

// A drag held beyond the edge goes on with what lies there.
void GT_TextSelect::ScrollBeyondEdge()
{
    const auto beyond = [](int at, int from, int to) {
        return qBound(-kScrollStepPx, at < from ? at - from : qMax(0, at - to), kScrollStepPx);
    };
    const QRect seen = DocView()->VisibleSceneRect();
    DocView()->ScrollBy(beyond(mouse.x, seen.left(), seen.right()), beyond(mouse.y, seen.top(), seen.bottom()));
    const QPoint moved = DocView()->VisibleSceneRect().topLeft() - seen.topLeft();
    mouse = {mouse.x + moved.x(), mouse.y + moved.y()}; // the mouse rests, the scene moves under it
    if (!moved.isNull())
        SelectTo(mouse);
}

int GT_TextSelect::OnLButtonUp(unsigned /*flags*/, CCA_Point point)
{
    if (!isSelecting)
        return 0;
    if (!links->Release(point) && !DocView()->SelectHighLightText().isEmpty())
        SelectTo(point);
    EndDrag();
    links->Hover(point);
    return 1;
}

int GT_TextSelect::OnLeave()
{
    if (!isSelecting)
        links->Forget();
    return 0;
}

void GT_TextSelect::SelectTo(CCA_Point point)
{
    int endPage = DocView()->PageIndexByPoint(QPoint(point.x, point.y), true, false);
    if (endPage < 0)
        return;
    int fromPage = startPage;
    CCA_GPoint from = start;
    CCA_GPoint to = DocView()->DocPointOnPage(point, endPage);
    if (IsBehind(fromPage, from, endPage, to)) {
        std::swap(fromPage, endPage);
        std::swap(from, to);
    }
    // What is not at hand comes in when it has been read.
    if (endPage - fromPage < kMostPagesHeld && DocView()->IsTextAtHand(fromPage, endPage))
        DocView()->SetHighLightText(holds->TextBetween(fromPage, from, endPage, to));
    else
        DocView()->SelectTextBetween(fromPage, from, endPage, to);
}

int GT_TextSelect::OnLButtonDblClk(unsigned /*flags*/, CCA_Point point)
{
    int page = -1;
    const CCA_GPoint place = DocView()->DocPointFromScenePoint(point, &page);
    if (page < 0)
        return 1;
    if (DocView()->IsTextAtHand(page, page)) {
        SelectWord(page, place);
        return 1;
    }
    wordWait = std::make_unique<QObject>();
    QObject::connect(DocView(), &G_DocView::TextRead, wordWait.get(), [this, page, place](int readPage) {
        if (readPage != page)
            return;
        wordWait.release()->deleteLater(); // it is in the middle of a call
        SelectWord(page, place);
    });
    return 1;
}

void GT_TextSelect::SelectWord(int page, const CCA_GPoint& place)
{
    G_PageHolds wordHold(GDocument());
    const IG_TextPage* text = wordHold.Text(page);
    if (!text)
        return;
    const QList<G_TextGlyph> glyphs = text->AllGlyphs();
    const int hit = GlyphAt(*text, glyphs, place);
    if (hit < 0)
        return;
    G_HighLightItem item;
    item.pageIndex = page;
    item.runs.append(WordAround(glyphs, hit));
    DocView()->SetHighLightText({item});
}

void GT_TextSelect::PaintSceneEnd(QPainter* painter, G_DocView* /*view*/)
{
    linkKeys->Paint(painter);
}

int GT_TextSelect::OnKeyDown(int key, unsigned flags)
{
    if (linkKeys->KeyDown(key, flags))
        return 1;
    const bool isControl = (flags & Qt::ControlModifier) != 0;
    if (isControl && key == Qt::Key_A) {
        DocView()->SelectAllText();
        return 1;
    }
    const bool hasSelection = DocView()->IsSelecting() || !DocView()->SelectHighLightText().isEmpty();
    if (key == Qt::Key_Escape && hasSelection) {
        DocView()->SetHighLightText({});
        return 1;
    }
    if (!isControl || (key != Qt::Key_C && key != Qt::Key_Insert))
        return 0;
    DocView()->CopySelectedText();
    return 1;
}
