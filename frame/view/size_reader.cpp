#include "size_reader.h"

#include <QtConcurrent>

#include <new>
#include <utility>

namespace {
constexpr int kPagesAtOnce = 500;
} // namespace

SizeReader::SizeReader(IG_PageRenderer* renderer, int pageCount, Told told)
    : renderer(renderer)
    , pageCount(pageCount)
    , told(std::move(told))
{
    pool.setMaxThreadCount(1);
}

SizeReader::~SizeReader()
{
    isGivenUp = true;
    pool.waitForDone();
}

void SizeReader::Start()
{
    if (!IsStarted())
        ReadMore();
}

// Nothing when it was given up, or when memory runs out: then the sizes that are still unknown stay so until their
// pages come into view.
QVector<QSizeF> SizeReader::Read(int first, int end)
{
    try {
        QVector<QSizeF> sizes;
        sizes.reserve(end - first);
        for (int page = first; page < end && !isGivenUp; ++page)
            sizes.append(renderer->PageSizeMm(page));
        return isGivenUp ? QVector<QSizeF>() : sizes;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

void SizeReader::ReadMore()
{
    const int first = next;
    next = qMin(pageCount, first + kPagesAtOnce);
    if (first == next)
        return;
    QtConcurrent::run(&pool, [this, first, end = next] {
        const QVector<QSizeF> sizes = Read(first, end);
        if (sizes.isEmpty())
            return;
        QMetaObject::invokeMethod(
            this,
            [this, first, sizes] {
                ReadMore(); // first: being told may end this reader
                told(first, sizes);
            },
            Qt::QueuedConnection);
    });
}
