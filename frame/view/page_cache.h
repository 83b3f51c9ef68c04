#pragma once

#include <QHash>
#include <QList>
#include <QPixmap>
#include <QRect>
#include <QSet>
#include <QString>

// The picture of a page or of a part of it, turned as the view was turned.
struct PagePicture
{
    QPixmap pixmap;         // physical pixels; its own device pixel ratio is 1
    QRect region;           // the part it shows, in physical pixels of the whole shown page
    QSize whole;            // physical pixels of the whole shown page
    double pixelsPerMm = 0; // physical
    int rotation = 0;
    QSet<int> ignoredTemplates;
    bool withAnnotations = true;
    QString error;        // why the page could not be painted; empty when it could
    bool isStale = false; // what it shows has changed; good only until a new one comes
};

// Pictures by page, held within a budget of bytes. Pictures of pages on the screen are never given up for others.
class PageCache
{
public:
    explicit PageCache(qint64 budgetBytes);
    const PagePicture* Find(int page) const; // null when there is none
    void Put(int page, const PagePicture& picture);
    // Marks as just used.
    void Touch(int page);
    void Remove(int page);
    void Clear();
    void MarkStale(int page);
    // Gives up the pictures longest unused until the budget holds.
    void Trim(const QSet<int>& onScreen);
    qint64 Bytes() const { return bytes; }
    QList<int> Pages() const { return recent; } // longest unused first

private:
    static qint64 BytesOf(const PagePicture& picture);
    qint64 budget;
    qint64 bytes = 0;
    QHash<int, PagePicture> pictures;
    QList<int> recent;
};
