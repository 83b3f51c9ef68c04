#include "size_reader.h"

#include <QtConcurrent>

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

void SizeReader::ReadMore()
{
    const int first = next;
    next = qMin(pageCount, first + kPagesAtOnce);
    if (first == next)
        return;
    QtConcurrent::run(&pool, [this, first, end = next] {
        QVector<QSizeF> sizes;
        sizes.reserve(end - first);
        for (int page = first; page < end; ++page) {
            if (isGivenUp)
                return;
            sizes.append(renderer->PageSizeMm(page));
        }
        QMetaObject::invokeMethod(
            this,
            [this, first, sizes] {
                ReadMore(); // first: being told may end this reader
                told(first, sizes);
            },
            Qt::QueuedConnection);
    });
}
