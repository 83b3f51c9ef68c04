#include "profiles.h"

#include <QtGlobal>

#include <lcms2.h>

namespace samples {

namespace {

QByteArray Saved(cmsHPROFILE profile)
{
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile, nullptr, &size))
        qFatal("the profile cannot be made");
    QByteArray bytes(int(size), '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

// What four inks look like, for the table of the profile.
int LookOf(const cmsUInt16Number in[], cmsUInt16Number out[], void*)
{
    const double first = in[0] / 65535.0, light = 1 - in[3] / 65535.0;
    const cmsCIELab lab = {(100 + (InkLab[0] - 100) * first) * light, InkLab[1] * first * light,
                           InkLab[2] * first * light};
    cmsFloat2LabEncoded(out, &lab);
    return TRUE;
}

} // namespace

QByteArray LinearGrayProfile()
{
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1.0); // owned
    const QByteArray bytes = Saved(cmsCreateGrayProfile(cmsD50_xyY(), linear));
    cmsFreeToneCurve(linear);
    return bytes;
}

QByteArray LinearRgbProfile()
{
    cmsToneCurve* linear = cmsBuildGamma(nullptr, 1.0); // owned
    cmsToneCurve* const curves[] = {linear, linear, linear};
    const cmsCIExyY white = {0.3127, 0.3290, 1.0};
    const cmsCIExyYTRIPLE primaries = {{0.6400, 0.3300, 1.0}, {0.3000, 0.6000, 1.0}, {0.1500, 0.0600, 1.0}};
    const QByteArray bytes = Saved(cmsCreateRGBProfile(&white, &primaries, curves));
    cmsFreeToneCurve(linear);
    return bytes;
}

QByteArray InkProfile()
{
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr); // owned until saved
    cmsSetProfileVersion(profile, 4.3);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* table = cmsPipelineAlloc(nullptr, 4, 3); // owned
    cmsStage* stage = cmsStageAllocCLut16bit(nullptr, 2, 4, 3, nullptr);
    cmsStageSampleCLut16bit(stage, &LookOf, nullptr, 0);
    cmsPipelineInsertStage(table, cmsAT_END, cmsStageAllocToneCurves(nullptr, 4, nullptr)); // as they are
    cmsPipelineInsertStage(table, cmsAT_END, stage);
    cmsPipelineInsertStage(table, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, nullptr));
    cmsWriteTag(profile, cmsSigAToB0Tag, table);
    cmsPipelineFree(table);
    return Saved(profile);
}

} // namespace samples
