// A colour profile that a document brings along, for each number of channels.
#include <ofd/model/color_profile.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    for (const int channels : {1, 3, 4}) {
        const auto profile = ofd::ColorProfile::FromBytes(bytes, channels);
        for (const double value : {0.0, 0.3, 1.0}) {
            if (profile)
                profile->ColorOf({value, 0.5, 1 - value, value / 2});
        }
    }
    return 0;
}
