#pragma once

#include <frame/base/export.h>

#include <QImage>
#include <QRect>
#include <QSet>
#include <QSizeF>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

// What to paint of a page, and how.
struct G_RenderRequest
{
    int pageIndex = 0;
    double pixelsPerMm = 96 / 25.4;               // physical pixels
    QRect region;                                 // the wanted part in physical pixels of the whole page; empty = all
    QSet<int> ignoredTemplates;                   // ids of templates not to paint on this page
    bool withAnnotations = true;                  // seals are painted either way: they belong to what was signed
    bool isForPaper = false;                      // without the annotations that are not to be printed
    std::shared_ptr<std::atomic<bool>> cancelled; // may be null; set by the asker to give up
    // Called now and then with what is painted so far, on the thread that paints, when a page takes long. May be empty.
    std::function<void(const QImage& soFar)> partial;
};

// What came of it.
struct G_RenderResult
{
    QImage image;  // opaque, paper white; null when cancelled
    QString error; // why the page could not be painted; the image is then a blank sheet
};

// Paints pages. Callable from any thread, several at once.
class FRAME_EXPORT IG_PageRenderer
{
public:
    virtual ~IG_PageRenderer();
    virtual G_RenderResult RenderPage(const G_RenderRequest& request) = 0;
    // The size of a page in mm, as the document tells it; invalid when only the document itself can be asked.
    virtual QSizeF PageSizeMm(int pageIndex);
};
