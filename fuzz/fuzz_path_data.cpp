// Abbreviated path data.
#include <ofd/parse/path_data.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ofd::ParsePathData(std::string_view(reinterpret_cast<const char*>(data), size)).boundingRect();
    return 0;
}
