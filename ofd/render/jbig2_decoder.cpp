#include "jbig2_decoder.h"

#include <ofd/package/limits.h>

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
};

constexpr size_t HeaderBytes = alignof(std::max_align_t);

void* Allocate(Jbig2Allocator* allocator, size_t size)
{
    auto* budget = reinterpret_cast<BudgetAllocator*>(allocator); // not owned
    if (size > MaxBytes || budget->used + size > MaxBytes)
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
    BudgetAllocator allocator{{&Allocate, &Free, &Reallocate}};
    Jbig2Ctx* context = jbig2_ctx_new(&allocator.base, Jbig2Options(0), nullptr, &IgnoreMessage, nullptr); // owned
    if (!context)
        return QImage();
    QImage result;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.constData());
    if (jbig2_data_in(context, data, size_t(bytes.size())) >= 0) {
        if (Jbig2Image* page = jbig2_page_out(context)) {
            result = ImageOf(*page);
            jbig2_release_page(context, page);
        }
    }
    jbig2_ctx_free(context);
    return result;
}

} // namespace ofd
