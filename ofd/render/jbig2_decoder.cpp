#include "jbig2_decoder.h"

#include "jbig2_segments.h"

#include <ofd/package/limits.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

extern "C" {
#include <jbig2.h>
}

namespace ofd {

namespace {

constexpr char Magic[] = "\x97\x4a\x42\x32\x0d\x0a\x1a\x0a";
constexpr size_t MaxBytes = size_t(limits::MaxImagePixels) / 2; // in all; a bit a pixel, with room for working copies

// An allocator with a budget: the sizes come from the file. Each block remembers its size in front of it.
struct BudgetAllocator
{
    Jbig2Allocator base; // first: the decoder hands this back
    size_t used = 0;
    size_t maxBlock = MaxBytes;
};

constexpr size_t HeaderBytes = alignof(std::max_align_t);

void* Allocate(Jbig2Allocator* allocator, size_t size)
{
    auto* budget = reinterpret_cast<BudgetAllocator*>(allocator); // not owned
    if (size > budget->maxBlock || budget->used + size > MaxBytes)
        return nullptr;
    auto* block = static_cast<char*>(std::malloc(size + HeaderBytes)); // owned by the decoder
    if (!block)
        return nullptr;
    std::memcpy(block, &size, sizeof size);
    budget->used += size;
    return block + HeaderBytes;
}

void Free(Jbig2Allocator* allocator, void* pointer)
{
    if (!pointer)
        return;
    char* block = static_cast<char*>(pointer) - HeaderBytes; // owned
    size_t size = 0;
    std::memcpy(&size, block, sizeof size);
    reinterpret_cast<BudgetAllocator*>(allocator)->used -= size;
    std::free(block);
}

void* Reallocate(Jbig2Allocator* allocator, void* pointer, size_t size)
{
    if (!pointer)
        return Allocate(allocator, size);
    size_t oldSize = 0;
    std::memcpy(&oldSize, static_cast<char*>(pointer) - HeaderBytes, sizeof oldSize);
    void* moved = Allocate(allocator, size); // owned by the decoder
    if (moved) {
        std::memcpy(moved, pointer, std::min(size, oldSize));
        Free(allocator, pointer);
    }
    return moved;
}

void IgnoreMessage(void*, const char*, Jbig2Severity, uint32_t) {}

// Hands over one segment after the other, so that what dictionaries hold is small: it is copied many times.
bool FeedSegments(Jbig2Ctx* context, BudgetAllocator& allocator, const QByteArray& bytes,
                  const std::vector<Jbig2Segment>& segments)
{
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    qint64 fed = 0;
    const auto feedTo = [&](qint64 end) {
        const bool isFine = end <= fed || jbig2_data_in(context, data + fed, size_t(end - fed)) >= 0;
        fed = std::max(fed, end);
        return isFine;
    };
    for (const Jbig2Segment& segment : segments) {
        const auto room = size_t(std::max(limits::MaxJbig2SymbolBytes, 4 * (segment.dataEnd - fed))); // and its bytes
        allocator.maxBlock = segment.IsDictionary() ? room : MaxBytes;
        if (!feedTo(segment.dataEnd))
            return false;
    }
    allocator.maxBlock = MaxBytes;
    return feedTo(bytes.size());
}

// Rows of bits, 1 is black.
QImage ImageOf(const Jbig2Image& page)
{
    const qint64 pixels = qint64(page.width) * page.height;
    if (pixels <= 0 || pixels > limits::MaxImagePixels)
        return QImage();
    QImage image(int(page.width), int(page.height), QImage::Format_Mono);
    if (image.isNull())
        return image;
    image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    const size_t rowBytes = (size_t(page.width) + 7) / 8;
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.scanLine(y), page.data + size_t(y) * page.stride, rowBytes);
    return image;
}

} // namespace

bool IsJbig2(const QByteArray& bytes)
{
    return bytes.startsWith(QByteArray::fromRawData(Magic, 8));
}

QImage DecodeJbig2(const QByteArray& bytes)
{
    const std::optional<std::vector<Jbig2Segment>> segments = ReadJbig2Segments(bytes);
    if (!segments)
        return QImage();
    BudgetAllocator allocator{{&Allocate, &Free, &Reallocate}};
    Jbig2Ctx* context = jbig2_ctx_new(&allocator.base, Jbig2Options(0), nullptr, &IgnoreMessage, nullptr); // owned
    if (!context)
        return QImage();
    QImage result;
    if (FeedSegments(context, allocator, bytes, *segments)) {
        if (Jbig2Image* page = jbig2_page_out(context)) {
            result = ImageOf(*page);
            jbig2_release_page(context, page);
        }
    }
    jbig2_ctx_free(context);
    return result;
}

} // namespace ofd
