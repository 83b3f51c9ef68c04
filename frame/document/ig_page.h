#pragma once

#include <frame/base/arrays.h>
#include <frame/base/export.h>
#include <frame/base/geometry.h>
#include <frame/base/strings.h>
#include <frame/document/page_link.h>

#include <QList>

class G_PageObjRef;
class G_TreeNode;
class IG_Annot;
class IG_Document;

// A piece of text on a page with the box that encloses it. A blank may stand for a gap between words and be no glyph.
struct G_TextRun
{
    CCA_GRect rect; // page mm
    QString text;
};

// What one drawing on a page stands for: a character, or several that have one box together.
struct G_TextGlyph
{
    CCA_GRect rect; // page mm
    QString text;
    int run = 0; // which of IG_TextPage::AllRuns it belongs to
};

// The text of a page. Lives as long as its page's content is loaded. Main thread only.
class FRAME_EXPORT IG_TextPage
{
public:
    virtual ~IG_TextPage();
    virtual bool IsParsed() const = 0; // the text is at hand
    // The flags are reserved and are 0. False when the page has no readable content; the text is then empty.
    virtual bool Parse(int flags) = 0;
    // Text whose glyph boxes' centres lie in the rectangle (page mm), in reading order. Always sets `text` to a
    // null-terminated wide string that the caller frees with CCA_FreeWide.
    virtual void GetTextInRect(const CCA_GRect& rect, wchar_t** text) const = 0;
    // The runs (one a line piece) between two points of the page in reading order; empty when no text lies between. The
    // order of the points does not matter. A point above and left of all text is the beginning, one below and right of
    // all text the end.
    virtual QList<G_TextRun> RunsBetween(const CCA_GPoint& from, const CCA_GPoint& to) const = 0;
    // The runs of the whole page in reading order.
    virtual QList<G_TextRun> AllRuns() const = 0;
    // The glyphs of all runs in reading order; empty texts are left out. A text page that knows no glyphs need not have
    // this: its runs are then divided evenly.
    virtual QList<G_TextGlyph> AllGlyphs() const;
};

// A content layer of a page. Lives as long as the document. The visibility is session state, kept across ReleasePage
// and Load, never saved.
class FRAME_EXPORT IG_PageLayer
{
public:
    virtual ~IG_PageLayer();
    virtual CCA_WString GetName() = 0;
    virtual int GetKind() = 0; // 2 Foreground, 1 Body, 0 Background
    virtual void SetVisible(bool visible) = 0;
    virtual bool IsVisible() = 0;
};

// A page. The object lives as long as the document; ReleasePage lets only its heavy content go. Main thread only.
class FRAME_EXPORT IG_Page
{
public:
    virtual ~IG_Page();
    virtual IG_Document* GetDocument() = 0;
    virtual float GetPageWidth() = 0;  // mm
    virtual float GetPageHeight() = 0; // mm
    virtual int GetIndex() = 0;        // from 0; -1 once the page was removed
    virtual bool IsLoaded() = 0;
    virtual bool Load() = 0; // reads the content; false when it cannot be read
    virtual int GetTemplateRefCount() = 0;
    // The template's id; 0 when out of range.
    virtual int GetTemplateRefAt(int position) = 0;
    virtual int GetLayerCount() = 0;
    virtual IG_PageLayer* GetLayerAt(int position) = 0; // null when out of range
    // Makes the annotations known; 0 = success, also for a page that has none.
    virtual int LoadAnnots() = 0;
    virtual int GetAnnotCount() = 0;
    virtual IG_Annot* GetAnnotAt(int position) = 0; // null when out of range
    virtual IG_Annot* GetAnnotById(int id) = 0;     // null when there is none
    virtual IG_TextPage* GetTextPage() = 0;         // null when the page is not loaded
    virtual int PageId() = 0;
    // Adds the ids of the visible objects whose centres lie in the rectangle (page mm); returns how many were added.
    virtual int CollectObjectsInRect(const CCA_GRect& rect, G_PageObjRef* ref) = 0;
    // The tag of the smallest tagged object under a point (page mm). False when there is none.
    virtual bool CustomTagAtPoint(float x, float y, G_TreeNode** node, int* extra) = 0;
    // "Foreground", "Body" or "Background" for one reference of this page.
    virtual CCA_String GetTemplateRefZOrder(int position) = 0;
    // What a click runs, in the order of painting: of the links under a point the last one counts. Links of hidden
    // layers and templates, and of annotations that the session hides or that were removed, are left out; invisible
    // objects are links all the same. The page need not be loaded: what is needed is read at the first call. Empty when
    // it cannot be read, and of a page that has no links, as this one.
    virtual QVector<G_PageLink> GetLinks();
};
