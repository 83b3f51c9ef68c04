#include "color_profile.h"

#include <algorithm>
#include <cmath>

#include <lcms2.h>

namespace ofd {

namespace {

constexpr int MaxChannels = 4;
constexpr double Top = 65535;

void IgnoreMessage(cmsContext, cmsUInt32Number, const char*) {}

// Closes a profile at the end of a scope.
struct ProfileCloser
{
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using ProfilePointer = std::unique_ptr<void, ProfileCloser>;

cmsUInt32Number FormatOf(int channelCount)
{
    return channelCount == 1 ? TYPE_GRAY_16 : channelCount == 4 ? TYPE_CMYK_16 : TYPE_RGB_16;
}

cmsColorSpaceSignature SpaceOf(int channelCount)
{
    return channelCount == 1 ? cmsSigGrayData : channelCount == 4 ? cmsSigCmykData : cmsSigRgbData;
}

} // namespace

std::shared_ptr<const ColorProfile> ColorProfile::FromBytes(const QByteArray& bytes, int channelCount)
{
    std::shared_ptr<ColorProfile> result(new ColorProfile);
    result->channelCount = channelCount;
    cmsContext context = cmsCreateContext(nullptr, nullptr); // owned by the result
    result->context = context;
    if (!context)
        return nullptr;
    cmsSetLogErrorHandlerTHR(context, &IgnoreMessage);
    const ProfilePointer source(cmsOpenProfileFromMemTHR(context, bytes.constData(), cmsUInt32Number(bytes.size())));
    if (!source || cmsGetColorSpace(source.get()) != SpaceOf(channelCount))
        return nullptr;
    const ProfilePointer screen(cmsCreate_sRGBProfileTHR(context));
    if (!screen)
        return nullptr;
    // No tables are worked out in advance, since single colours pass; no cache, since threads share the transform.
    const cmsUInt32Number flags = cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE | cmsFLAGS_BLACKPOINTCOMPENSATION;
    result->transform = cmsCreateTransformTHR(context, source.get(), FormatOf(channelCount), screen.get(), TYPE_RGB_16,
                                              INTENT_RELATIVE_COLORIMETRIC, flags);
    return result->transform ? result : nullptr;
}

ColorProfile::~ColorProfile()
{
    if (transform)
        cmsDeleteTransform(transform);
    if (context)
        cmsDeleteContext(static_cast<cmsContext>(context));
}

QColor ColorProfile::ColorOf(const QVector<double>& channels) const
{
    cmsUInt16Number in[MaxChannels] = {};
    cmsUInt16Number out[3] = {};
    for (int i = 0; i < channelCount; ++i)
        in[i] = cmsUInt16Number(std::lround(std::clamp(channels.value(i, 0), 0.0, 1.0) * Top));
    cmsDoTransform(transform, in, out, 1);
    return QColor::fromRgbF(out[0] / Top, out[1] / Top, out[2] / Top);
}

} // namespace ofd
