// One part of an otherwise sound document; the first byte chooses which. Reaches the lists (outline, tags, annotations,
// attachments, resources) that a whole file, with its packing and check sums, is changed into too seldom.
#include "fuzz_support.h"

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    fuzz::StartApplication(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QString part = fuzz::PartNames().at(data[0] % fuzz::PartNames().size());
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size) - 1);
    fuzz::ReadWholeFile(fuzz::DocumentWith(part, bytes));
    return 0;
}
