#include "painting_work.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace ofd {

namespace {

constexpr double StandardPixelsPerMm = 96 / 25.4;
constexpr double KeptPixels = 40e6; // of all pictures of a page; when there are more, they may have to be decoded again
constexpr double EnormousShare = 0.75; // of what is allowed: one thing that asks for that much is left out alone

double Allowed(qint64 fileBytes)
{
    return std::clamp(double(fileBytes) * limits::PageWorkPerByte, limits::PageWork, limits::MaxPageWork);
}

} // namespace

PaintingWork::PaintingWork(const QSizeF& pageMm, qint64 fileBytes)
    : allowed(Allowed(fileBytes))
{
    const double areaMm = std::max(1.0, pageMm.width() * pageMm.height());
    pixelsPerMm = std::min(StandardPixelsPerMm, std::sqrt(limits::MaxCountedPagePixels / areaMm));
    pageRect = QRectF(QPointF(), pageMm * pixelsPerMm);
}

bool PaintingWork::Take(double units)
{
    const double asked = units * times;
    const bool isWithin = !isExhausted && used + asked <= allowed; // false for what is no number
    if (isWithin) {
        used += asked;
        return true;
    }
    if (!isExhausted)
        ReportProblem(ProblemKind::Limit,
                      QCoreApplication::translate(
                          "OfdDocument", "The page asks for more painting than is done; not all of it is shown."));
    isExhausted = isExhausted || asked <= allowed * EnormousShare;
    return false;
}

bool PaintingWork::IsDecodedFor(const QString& part, double pixels)
{
    if (pictures.contains(part))
        return picturePixels <= KeptPixels;
    pictures.insert(part);
    picturePixels += pixels;
    return false;
}

PaintingWork::TimesScope::TimesScope(PaintingWork& work, double times)
    : work(work)
    , outerTimes(work.times)
{
    work.times *= times;
}

PaintingWork::TimesScope::~TimesScope()
{
    work.times = outerTimes;
}

} // namespace ofd
