// JSON text of operation parameters: what parses is written and parsed again.
#include <frame/json/ovjson.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto json = OVJsonFactory::ParseJsonString(reinterpret_cast<const char*>(data), static_cast<int>(size));
    if (!json)
        return 0;
    const QByteArray text = OVJsonFactory::BuildJsonString(json);
    if (!OVJsonFactory::ParseJsonString(text.constData(), text.size()))
        std::abort(); // what we write, we read
    return 0;
}
