#pragma once

#include <frame/document/ig_page.h>

#include <QHash>
#include <QString>
#include <QVector>

class IG_Document;

// What is looked for.
struct G_TextQuery
{
    QString text;
    bool matchesCase = false; // and the form of characters, such as their width
    // Both ends stand at the edge of a word. Between ideographs every place is such an edge.
    bool isWholeWord = false;

    bool operator==(const G_TextQuery& other) const
    {
        return text == other.text && matchesCase == other.matchesCase && isWholeWord == other.isWholeWord;
    }
    bool operator!=(const G_TextQuery& other) const { return !(*this == other); }
};

// A place where a text was found.
struct G_TextMatch
{
    int pageIndex = 0;
    QList<CCA_GRect> rects; // page mm, one for each line that the match touches
    QString text;           // as it stands on the page; line breaks as one blank, or nothing between ideographs
    QString snippet;        // the match with some text around it
    int snippetStart = 0;   // where the match begins in the snippet
    int snippetLength = 0;
};

// What stood on pages that were read, squeezed, so that the next search reads only those where its text can stand. Of
// use while one searches a document again and again; holds as long as the pages keep their places and their text.
class FRAME_EXPORT G_PageTextCache
{
public:
    bool Knows(int pageIndex) const { return texts.contains(pageIndex); }
    // What is kept of a page. Any thread.
    static QString Squeezed(const QList<G_TextGlyph>& glyphs);
    // Nothing once it is full: pages that are not known are read again.
    void Keep(int pageIndex, const QString& squeezed);
    void Clear();

private:
    friend class G_TextSearch;
    // Forgets all when the document has hidden or shown some text since.
    void Follow(IG_Document* document);

    QHash<int, QString> texts; // folded, without blanks and hyphens
    int revision = 0;
    qint64 length = 0;
};

// Finds one text on pages. Letters are compared by Unicode: composed and decomposed forms are the same. Unless case
// matters, capital and small letters are the same too, and so are compatible forms: full-width and half-width ones,
// ligatures and their letters, circled digits and digits; who types the digits of the keyboard finds those of an
// official document. Accents always count. Several blanks count as one. The end of a line counts as a blank, and may
// count as nothing beside an ideograph, behind a hyphen and where a gap between glyphs stands for a blank. Matches do
// not overlap. Keeps no page; may be copied to and used on any thread.
class FRAME_EXPORT G_TextSearch
{
public:
    explicit G_TextSearch(const G_TextQuery& query);
    const G_TextQuery& Query() const { return query; }
    // There is nothing to look for: no text is found.
    bool IsEmpty() const { return needle.isEmpty(); }
    // The matches on a page in reading order, at most that many. The text page must be parsed.
    QList<G_TextMatch> FindIn(const IG_TextPage& page, int pageIndex, int most = maxMatchesAPage) const;
    QList<G_TextMatch> FindIn(const QList<G_TextGlyph>& glyphs, int pageIndex, int most = maxMatchesAPage) const;
    // The same for a page of a document that need not be loaded, and is not kept loaded. Main thread only. A page that
    // cannot be read has no matches; `isReadable` tells, when it is given.
    // With a cache, a page that cannot have the text by what the cache knows is not read.
    QList<G_TextMatch> FindOnPage(IG_Document* document, int pageIndex, int most = maxMatchesAPage,
                                  bool* isReadable = nullptr, G_PageTextCache* cache = nullptr) const;

    // Whether the text cannot stand on the page by what the cache knows.
    bool IsRuledOut(IG_Document* document, int pageIndex, G_PageTextCache* cache) const;

    static constexpr int maxMatchesAPage = 100000;

private:
    G_TextQuery query;
    QString needle;   // folded, blanks collapsed
    QString squeezed; // what of it must stand on a page in any case, as in the cache
};
