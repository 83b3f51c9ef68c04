// The short text form of documents in memory.
#include <frame/document/memory_document.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QString error;
    const auto document = MemoryDocument::FromText(
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<int>(size)), &error);
    if (document)
        document->Prepare();
    return 0;
}
