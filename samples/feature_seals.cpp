#include "der.h"
#include "features.h"
#include "picture_kinds.h"
#include "pictures.h"
#include "signing.h"

namespace samples {

namespace {

void FormerLayout(Package& package)
{
    Sign(package, SealData("png", LogoPng(), SealLayout::Former));
}

void SealInSignedValue(Package& package)
{
    Sign(package, SealData("PNG", LogoPng()));
    package.Replace(kSignature, "<ofd:Seal>\n<ofd:BaseLoc>Seal.esl</ofd:BaseLoc>\n</ofd:Seal>\n", "");
    PutSignedValue(package);
    package.Remove(kSeal);
}

void BmpSeal(Package& package)
{
    Sign(package, SealData("bmp", QuadrantsBmp()));
}

void JpegSeal(Package& package)
{
    Sign(package, SealData("jpg", QuadrantsJpeg()));
}

void BrokenSeal(Package& package)
{
    const QByteArray seal = SealData("png", LogoPng());
    Sign(package, seal.left(seal.size() / 2));
}

void SealInSealInSeal(Package& package)
{
    Package inner = PlainDocument("inner", "a document inside a seal, with a seal of its own");
    Sign(inner, SealData("png", LogoPng()));
    Sign(package, SealData("ofd", PackedBytes(inner)));
}

constexpr const char* kGroup = "Seals";

const Deviation kTable[] = {
    {"seal_former_layout", kGroup, "a seal in the layout that was used before", "show its picture", FormerLayout},
    {"seal_in_signed_value", kGroup, "no seal part: the signed value holds the seal", "show its picture",
     SealInSignedValue},
    {"seal_bmp", kGroup, "a seal with a BMP picture", "show its picture", BmpSeal},
    {"seal_jpeg", kGroup, "a seal with a JPEG picture", "show its picture", JpegSeal},
    {"seal_cut_off", kGroup, "a seal that ends in its middle", "show the page without it", BrokenSeal},
    {"seal_in_seal", kGroup, "a seal whose picture is a document that carries a seal",
     "show the inner page without its seal", SealInSealInSeal},
};

} // namespace

std::vector<Deviation> SealFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
