// Bilevel pictures: what follows the file's mark, since hardly a random change keeps the mark.
#include <ofd/render/jbig2_decoder.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes("\x97\x4a\x42\x32\x0d\x0a\x1a\x0a", 8);
    bytes.append(reinterpret_cast<const char*>(data), static_cast<int>(size));
    ofd::DecodeJbig2(bytes);
    return 0;
}
