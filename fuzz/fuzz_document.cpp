// A whole file: opened, listed, its first pages painted and read.
#include "fuzz_support.h"

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::StartApplication(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::ReadWholeFile(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}
