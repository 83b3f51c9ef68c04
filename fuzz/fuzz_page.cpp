// The content of a page: read into objects, painted to a small picture, its text placed.
#include "fuzz_support.h"

#include <samples/deviations.h>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::StartApplication(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray page(reinterpret_cast<const char*>(data), static_cast<int>(size));
    fuzz::PaintFirstPage(fuzz::DocumentWith(samples::kFirstPage, page));
    return 0;
}
