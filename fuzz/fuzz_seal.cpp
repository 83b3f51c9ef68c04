// The data of a seal or of a signed value: its picture is looked for, nothing else is read.
#include <ofd/parse/seal_reader.h>

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const auto picture = ofd::FindSealPicture(bytes);
    if (picture && picture->bytes.size() > bytes.size())
        std::abort(); // nothing comes out that did not go in
    return 0;
}
