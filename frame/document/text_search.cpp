#include "text_search.h"

#include "text_script.h"

#include <frame/document/ig_document.h>

#include <QBitArray>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace {

constexpr int snippetSide = 30;         // characters of a snippet on each side of its match
constexpr float gapShare = 0.2F;        // of a glyph's size; a wider gap may stand for a blank
constexpr qint64 mostCached = 16000000; // code units of all pages
constexpr ushort softHyphen = 0x00ad;   // shown only at the end of a line
constexpr ushort plainHyphen = 0x2010;  // beside the one of ASCII

// Ideographic space is a character of its own where forms matter.
bool IsBlank(uint code, bool keepsForm)
{
    return QChar::isSpace(code) && !(keepsForm && code == 0x3000);
}

bool IsHyphen(uint code)
{
    return code == '-' || code == plainHyphen;
}

// Neither seen nor meant.
bool IsIgnored(uint code)
{
    return code == softHyphen || code == 0x200b || code == 0x2060 || code == 0xfeff;
}

bool IsMark(uint code)
{
    const QChar::Category category = QChar::category(code);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing;
}

// One character as it is compared; may become several. Without regard to the form, full-width and half-width letters,
// ligatures, circled digits, radicals and the like are what they stand for.
QString Folded(uint code, bool keepsForm)
{
    constexpr uint firstFullWidth = 0xff01;
    constexpr uint lastFullWidth = 0xff5e;
    if (!keepsForm && code >= firstFullWidth && code <= lastFullWidth)
        code -= firstFullWidth - '!';
    const QString text = QString::fromUcs4(&code, 1);
    if (code >= 0x3400 && code <= 0x9fff)
        return text;
    if (code < 0x80)
        return keepsForm ? text : text.toLower();
    if (keepsForm)
        return text.normalized(QString::NormalizationForm_D);
    const QString parts = text.normalized(QString::NormalizationForm_KD);
    // Qt folds one to one; letters that fold to several, such as the sharp s, are the ones with long capitals.
    const QString capitals = parts.toUpper();
    const QString folded = capitals.size() > parts.size() ? capitals.toCaseFolded() : parts.toCaseFolded();
    return folded.normalized(QString::NormalizationForm_KD);
}

QString Needle(const G_TextQuery& query)
{
    QString needle;
    const QVector<uint> codes = query.text.toUcs4();
    for (const uint code : codes) {
        if (IsIgnored(code))
            continue;
        if (!IsBlank(code, query.matchesCase))
            needle += Folded(code, query.matchesCase);
        else if (!needle.endsWith(QLatin1Char(' ')))
            needle += QLatin1Char(' ');
    }
    return needle;
}

// What is left of a text whatever its line ends, its hyphens and the case of its letters count for.
void AppendSqueezed(const QString& text, QString& squeezed)
{
    const QVector<uint> codes = text.toUcs4();
    for (const uint code : codes) {
        if (IsIgnored(code) || IsBlank(code, false))
            continue;
        const QString folded = Folded(code, false);
        for (const QChar letter : folded) { // a full-width hyphen is one only now
            if (letter != QLatin1Char(' ') && !IsHyphen(letter.unicode()))
                squeezed += letter;
        }
    }
}

// The text of a page made ready for comparing.
class Haystack
{
public:
    Haystack(const QList<G_TextGlyph>& pageGlyphs, bool keepsForm)
        : glyphs(pageGlyphs)
        , keepsForm(keepsForm)
    {
        units.reserve(glyphs.size());
        for (int i = 0; i < glyphs.size(); ++i)
            AddGlyph(i);
        if (isBlankPending)
            SettleBlanks(0);
    }

    QList<G_TextMatch> Find(const QString& needle, bool isWholeWord, int most)
    {
        QList<G_TextMatch> matches;
        if (isWholeWord)
            MarkWordEdges();
        for (int from = 0; from < units.size() && matches.size() < most;) {
            const int end = MatchFrom(from, needle);
            if (end < 0 || (isWholeWord && !AreWordEdges(from, end))) {
                ++from;
                continue;
            }
            matches.append(MatchOf(from, end));
            from = end;
        }
        return matches;
    }

private:
    enum class Kind : uchar {
        Letter,
        LineHyphen, // ends a line, so it may be no part of the word
        Blank,      // one or several, or a line's end
        MaybeBlank  // a blank, or nothing
    };
    // What is compared with one code unit of the needle.
    struct Unit
    {
        ushort code;
        Kind kind;
        bool isFirst; // of the units that its character was folded to
        bool isLast;
        bool isMark;
        int glyph;
        int textFrom; // of its character in `text`
        int textTo;
    };

    void AddGlyph(int index)
    {
        if (index > 0)
            LookForGap(glyphs.at(index - 1), glyphs.at(index));
        const QVector<uint> codes = glyphs.at(index).text.toUcs4();
        for (const uint code : codes)
            AddCharacter(code, index);
    }

    void LookForGap(const G_TextGlyph& last, const G_TextGlyph& next)
    {
        if (last.run != next.run) {
            isBreakPending = true;
            return;
        }
        const CCA_GRect& a = last.rect;
        const CCA_GRect& b = next.rect;
        const float gap = std::max({b.left - a.right, a.left - b.right, b.top - a.bottom, a.top - b.bottom});
        const float size = std::min(std::max(a.Width(), a.Height()), std::max(b.Width(), b.Height()));
        isGapPending |= gap > gapShare * size;
    }

    void AddCharacter(uint code, int glyph)
    {
        if (IsIgnored(code)) {
            isSoftHyphenPending |= code == softHyphen;
            return;
        }
        if (IsBlank(code, keepsForm)) {
            if (!isBlankPending)
                blankGlyph = glyph;
            isBlankPending = true;
            blanks += QString::fromUcs4(&code, 1);
            return;
        }
        SettleBlanks(code);
        const QString folded = Folded(code, keepsForm);
        const int from = text.size();
        text += QString::fromUcs4(&code, 1);
        for (int i = 0; i < folded.size(); ++i)
            units.append({folded.at(i).unicode(), Kind::Letter, i == 0, i == folded.size() - 1, IsMark(code), glyph,
                          from, text.size()});
        lastCode = code;
    }

    // Decides what stands before a character, once it is known which one comes.
    void SettleBlanks(uint next)
    {
        const bool isBesideIdeograph = G_IsIdeographic(lastCode) || G_IsIdeographic(next);
        const bool isHyphenated = isBreakPending && !isBlankPending && IsHyphen(lastCode) && QChar::isLetter(next);
        const bool isOptional =
            isBreakPending ? isBesideIdeograph || isHyphenated || isSoftHyphenPending : !isBlankPending;
        const bool isThere = isBlankPending || ((isBreakPending || isGapPending) && !units.isEmpty());
        if (isThere) {
            if (isHyphenated)
                units.last().kind = Kind::LineHyphen;
            if (!isBlankPending && !isBesideIdeograph && !isHyphenated && !isSoftHyphenPending)
                blanks = QStringLiteral(" ");
            const int glyph = isBlankPending ? blankGlyph : units.last().glyph;
            units.append({' ', isOptional ? Kind::MaybeBlank : Kind::Blank, true, true, false, glyph, text.size(),
                          text.size() + blanks.size()});
            text += blanks;
        }
        blanks.clear();
        isBlankPending = isBreakPending = isGapPending = isSoftHyphenPending = false;
    }

    // The place behind the match that begins there; -1 when none does.
    int MatchFrom(int from, const QString& needle) const
    {
        int at = from;
        int matched = 0;
        while (matched < needle.size()) {
            if (at >= units.size())
                return -1;
            const Unit& unit = units.at(at);
            if (unit.code == needle.at(matched).unicode())
                ++matched;
            else if (at == from || (unit.kind != Kind::MaybeBlank && unit.kind != Kind::LineHyphen))
                return -1;
            ++at;
        }
        // Parts of a character do not count: neither half of a folded one, nor a letter without its accent.
        const bool isWhole = units.at(from).isFirst && units.at(at - 1).isLast;
        return isWhole && (at == units.size() || !units.at(at).isMark) ? at : -1;
    }

    void MarkWordEdges()
    {
        wordEdges.resize(text.size() + 1);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
        for (int at = 0; at >= 0; at = finder.toNextBoundary())
            wordEdges.setBit(at);
    }

    bool AreWordEdges(int from, int end) const
    {
        return wordEdges.testBit(units.at(from).textFrom) && wordEdges.testBit(units.at(end - 1).textTo);
    }

    G_TextMatch MatchOf(int from, int end) const
    {
        G_TextMatch match;
        int lastRun = -1;
        for (int i = units.at(from).glyph; i <= units.at(end - 1).glyph; ++i) {
            const G_TextGlyph& glyph = glyphs.at(i);
            if (glyph.run != lastRun) {
                match.rects.append(glyph.rect);
                lastRun = glyph.run;
                continue;
            }
            CCA_GRect& rect = match.rects.last();
            rect = CCA_GRect(std::min(rect.left, glyph.rect.left), std::min(rect.top, glyph.rect.top),
                             std::max(rect.right, glyph.rect.right), std::max(rect.bottom, glyph.rect.bottom));
        }
        Describe(match, units.at(from).textFrom, units.at(end - 1).textTo);
        return match;
    }

    void Describe(G_TextMatch& match, int from, int to) const
    {
        int left = std::max(0, from - snippetSide);
        int right = std::min(text.size(), to + snippetSide);
        if (left > 0 && text.at(left).isLowSurrogate())
            --left;
        if (right < text.size() && text.at(right).isLowSurrogate())
            ++right;
        const QString head = left > 0 ? QString(QChar(0x2026)) : QString();
        const QString tail = right < text.size() ? QString(QChar(0x2026)) : QString();
        match.text = text.mid(from, to - from);
        match.snippet = head + text.mid(left, right - left) + tail;
        match.snippetStart = head.size() + from - left;
        match.snippetLength = to - from;
    }

    const QList<G_TextGlyph>& glyphs;
    const bool keepsForm;
    QVector<Unit> units;
    QString text; // as it is read
    QBitArray wordEdges;
    // What came since the last character.
    uint lastCode = 0;
    QString blanks;
    int blankGlyph = 0;
    bool isBlankPending = false;
    bool isBreakPending = false;
    bool isGapPending = false;
    bool isSoftHyphenPending = false;
};

} // namespace

QString G_PageTextCache::Squeezed(const QList<G_TextGlyph>& glyphs)
{
    QString text;
    for (const G_TextGlyph& glyph : glyphs)
        AppendSqueezed(glyph.text, text);
    text.squeeze();
    return text;
}

void G_PageTextCache::Keep(int pageIndex, const QString& text)
{
    if (Knows(pageIndex) || length >= mostCached)
        return;
    length += text.size();
    texts.insert(pageIndex, text);
}

void G_PageTextCache::Clear()
{
    texts.clear();
    length = 0;
}

void G_PageTextCache::Follow(IG_Document* document)
{
    const int now = document->ShownTextRevision();
    if (now != revision)
        Clear();
    revision = now;
}

G_TextSearch::G_TextSearch(const G_TextQuery& wanted)
    : query(wanted)
    , needle(Needle(wanted))
{
    AppendSqueezed(query.text, squeezed);
}

QList<G_TextMatch> G_TextSearch::FindIn(const QList<G_TextGlyph>& glyphs, int pageIndex, int most) const
{
    if (IsEmpty())
        return {};
    QList<G_TextMatch> matches = Haystack(glyphs, query.matchesCase).Find(needle, query.isWholeWord, most);
    for (G_TextMatch& match : matches)
        match.pageIndex = pageIndex;
    return matches;
}

QList<G_TextMatch> G_TextSearch::FindIn(const IG_TextPage& page, int pageIndex, int most) const
{
    return IsEmpty() ? QList<G_TextMatch>() : FindIn(page.AllGlyphs(), pageIndex, most);
}

bool G_TextSearch::IsRuledOut(IG_Document* document, int pageIndex, G_PageTextCache* cache) const
{
    cache->Follow(document);
    const auto known = cache->texts.constFind(pageIndex);
    return known != cache->texts.constEnd() && !known->contains(squeezed);
}

QList<G_TextMatch> G_TextSearch::FindOnPage(IG_Document* document, int pageIndex, int most, bool* isReadable,
                                            G_PageTextCache* cache) const
{
    if (cache && IsRuledOut(document, pageIndex, cache)) {
        if (isReadable)
            *isReadable = true;
        return {};
    }
    IG_Page* page = document->GetPage(pageIndex);
    const bool wasLoaded = page && page->IsLoaded();
    IG_TextPage* text = page && (wasLoaded || page->Load()) ? page->GetTextPage() : nullptr;
    const bool isRead = text && (text->IsParsed() || text->Parse(0));
    if (isReadable)
        *isReadable = isRead;
    const QList<G_TextGlyph> glyphs = isRead ? text->AllGlyphs() : QList<G_TextGlyph>();
    const QList<G_TextMatch> matches = FindIn(glyphs, pageIndex, most);
    if (cache && isRead)
        cache->Keep(pageIndex, G_PageTextCache::Squeezed(glyphs));
    if (page && !wasLoaded)
        document->ReleasePage(pageIndex, 0);
    return matches;
}
