// A picture of any kind, told by its bytes.
#include "fuzz_support.h"

#include <ofd/render/image_decoder.h>

#include <new>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::StartApplication(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        ofd::DecodeImage(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    } catch (const std::bad_alloc&) { // told to who paints the page
    }
    return 0;
}
