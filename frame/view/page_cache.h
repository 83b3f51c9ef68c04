#pragma once

#include "picture_budget.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QRect>
#include <QSet>
#include <QString>
#include <QVector>

#include <memory>

// What makes one picture of a page differ from another, beside the part it shows.
struct PageLook
{
    double pixelsPerMm = 0; // physical
    int rotation = 0;
    QSize whole; // physical pixels of the whole shown page
    QSet<int> ignoredTemplates;
    bool withAnnotations = true;

    // The same content, at whatever size.
    bool ShowsSameAs(const PageLook& other) const
    {
        return rotation == other.rotation && ignoredTemplates == other.ignoredTemplates &&
               withAnnotations == other.withAnnotations;
    }
    friend bool operator==(const PageLook& a, const PageLook& b)
    {
        return a.pixelsPerMm == b.pixelsPerMm && a.whole == b.whole && a.ShowsSameAs(b);
    }
};

// The picture of a page or of a part of it, turned as the view was turned.
struct PagePicture
{
    QImage image; // physical pixels; its own device pixel ratio is 1
    QRect region; // the part it shows, in physical pixels of the whole shown page
    PageLook look;
    QString error;          // why the page could not be painted; empty when it could
    bool isStale = false;   // what it shows has changed; good only until a new one comes
    bool isPartial = false; // some of its objects have still to be painted
    std::shared_ptr<PictureBudget::Hold> hold;
    bool isWanted = false; // in view, or next to it: not given up for others
    quint64 lastUse = 0;

    bool IsGood() const { return !isStale && !isPartial; }
    bool IsWhole() const { return region == QRect(QPoint(0, 0), look.whole); }
};

// The pictures of one view's pages. All caches together stay within the PictureBudget. Main thread only.
class PageCache
{
public:
    PageCache();
    ~PageCache();
    PageCache(const PageCache&) = delete;
    PageCache& operator=(const PageCache&) = delete;

    // In the order in which they came.
    const QVector<PagePicture>& Pictures(int page) const;
    // Replaces what shows the same or a part of it in the same look.
    void Put(int page, const PagePicture& picture);
    // Null when there is no picture of that part that shows what it should.
    const PagePicture* FindGood(int page, const PageLook& look, const QRect& region) const;
    // Whether anything lies under that part already, be it coarse or of another zoom.
    bool HasAnything(int page, const PageLook& look, const QRect& region) const;
    // A coarse picture of the whole page that may lie under its tiles.
    bool HasUnderlay(int page, const PageLook& look) const;

    // Nothing is wanted until it is marked again.
    void WantNothing();
    void Want(int page, const PageLook& look, const QRect& region);
    // Marks all of the page as just used.
    void Touch(int page);
    // Gives up what another look left of the page, but for an underlay of one in tiles.
    void DropOthers(int page, const PageLook& look);
    void Remove(int page);
    void Clear();
    void MarkStale(int page);
    QList<int> Pages() const { return pictures.keys(); }

    // Gives up pictures of any view, those longest unused first, until so many more bytes are within the budget. False
    // when what is left is wanted.
    static bool MakeRoom(qint64 bytes);

private:
    // Of the picture longest unused that is not wanted; the highest number when there is none.
    quint64 OldestUse() const;
    void GiveUp(quint64 use);
    QHash<int, QVector<PagePicture>> pictures; // by page; no entry is empty
};
