#pragma once

#include <QRectF>
#include <QSet>
#include <QSizeF>
#include <QString>

namespace ofd {

// Counts what the objects of one page ask for, and says when it is more than is painted. What a thing counts for
// depends neither on the zoom nor on the part of the page that is wanted, so that the command line, the view and each
// of its tiles leave out the same objects. Lives for one painting on one thread.
class PaintingWork
{
public:
    // The larger the file, the more its pages may ask for.
    PaintingWork(const QSizeF& pageMm, qint64 fileBytes);

    // Takes so many units, each about a nanosecond's work at 96 dpi. False, and reported, when that is too much: it is
    // then not to be done. One thing that is enormous by itself is left out alone; when many have used up what there
    // is, nothing more is painted.
    bool Take(double units);
    bool IsExhausted() const { return isExhausted; }

    // Whether a picture of so many pixels is still there from its last use; counts this one.
    bool IsDecodedFor(const QString& part, double pixels);

    // Standard pixels, in which areas are counted: 96 an inch, fewer on pages of enormous size.
    double GetPixelsPerMm() const { return pixelsPerMm; }
    // The page in standard pixels.
    QRectF GetPageRect() const { return pageRect; }

    // While it lives, everything counts so many times: what is painted once stands for that many.
    class TimesScope
    {
    public:
        TimesScope(PaintingWork& work, double times);
        ~TimesScope();
        TimesScope(const TimesScope&) = delete;
        TimesScope& operator=(const TimesScope&) = delete;

    private:
        PaintingWork& work;
        const double outerTimes;
    };

private:
    double pixelsPerMm;
    QRectF pageRect;
    const double allowed;
    double used = 0;
    QSet<QString> pictures;   // used so far
    double picturePixels = 0; // of them
    double times = 1;
    bool isExhausted = false;
};

} // namespace ofd
