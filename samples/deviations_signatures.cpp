#include "deviations.h"

#include "der.h"
#include "pictures.h"
#include "signing.h"

namespace samples {

namespace {

void Signed(Package& package)
{
    Sign(package, SealData("png", LogoPng()));
}

void DigestMismatch(Package& package)
{
    Sign(package, SealData("png", LogoPng()));
    package.Replace(kSecondPage, ">Second page<", ">Altered one<");
}

void SignatureOrder(Package& package)
{
    Sign(package, SealData("png", LogoPng()));
    MoveLast(package, kSignature, "Provider", "SignedInfo");
    MoveLast(package, kSignature, "References", "SignedInfo");
    MoveLast(package, kSignature, "SignedInfo", "Signature");
    PutSignedValue(package);
    MoveLast(package, kSignatureList, "MaxSignId", "Signatures");
}

void ProviderAsChildren(Package& package)
{
    Sign(package, SealData("png", LogoPng()));
    package.Replace(kSignature, "<ofd:Provider ProviderName=\"tetobaisfla\" Version=\"1.0\" Company=\"Sample\"/>",
                    "<ofd:Provider><ofd:ProviderName>tetobaisfla</ofd:ProviderName><ofd:Version>1.0</ofd:Version>"
                    "<ofd:Company>Sample</ofd:Company></ofd:Provider>");
    PutSignedValue(package);
    package.Replace(kSignatureList, "<ofd:MaxSignId>s001</ofd:MaxSignId>\n",
                    "<ofd:MaxSignId>s001</ofd:MaxSignId>\n<ofd:MaxSignId>1</ofd:MaxSignId>\n");
}

void SealIsPackage(Package& package)
{
    Sign(package, SealData("ofd", PackedBytes(PlainDocument("seal", "a document inside a seal"))));
}

void SlicedSeal(Package& package)
{
    Sign(package, SealData("png", LogoPng()));
    package.Replace(kSignature, "<ofd:StampAnnot ID=\"s002\" PageRef=\"6\" Boundary=\"140 150 30 30\"/>",
                    "<ofd:StampAnnot ID=\"s002\" PageRef=\"6\" Boundary=\"195 150 30 30\" Clip=\"0 0 15 30\"/>\n"
                    "<ofd:StampAnnot ID=\"s003\" PageRef=\"11\" Boundary=\"180 150 30 30\" Clip=\"15 0 15 30\"/>");
    PutSignedValue(package);
}

void NoStamp(Package& package)
{
    Sign(package, SealData("png", LogoPng()));
    package.Replace(kSignature, "<ofd:StampAnnot ID=\"s002\" PageRef=\"6\" Boundary=\"140 150 30 30\"/>\n", "");
    PutSignedValue(package);
    package.Replace(kSignatureList, "Type=\"Seal\"", "Type=\"Sign\"");
}

void IntegrityList(Package& package)
{
    QByteArray list;
    for (const QString& name : AllParts(package))
        list += "<ofd:FileLoc ID=\"f" + QByteArray::number(list.count('\n') + 1) + "\">/" + name.toUtf8() +
                "</ofd:FileLoc>\n";
    package.Add(
        "OFDEntries.xml",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ofd:OFDEntries xmlns:ofd=\"http://www.ofdspec.org/2016\">\n"
        "<ofd:FileList>\n" +
            list + "</ofd:FileList>\n<ofd:SignedValueLoc>/signedvalue.dat</ofd:SignedValueLoc>\n</ofd:OFDEntries>\n");
    package.Add("signedvalue.dat", DerSequence(DerInteger(1) + Der(0x04, "no signature")));
}

constexpr const char* kGroup = "Signatures";

const Deviation kTable[] = {
    {"signed", kGroup, "a signature over all parts, with true digests and a seal on the first page",
     "open; ask before a save breaks it", Signed},
    {"signed_digest_mismatch", kGroup, "a signed part was altered afterwards", "open; show the signature as broken",
     DigestMismatch},
    {"signature_order", kGroup, "children of the signature parts stand in another order", "read children in any order",
     SignatureOrder},
    {"signature_provider_children", kGroup, "the provider's data are elements; MaxSignId stands twice",
     "read both forms", ProviderAsChildren},
    {"seal_picture_is_package", kGroup, "the seal's picture is a document of its own", "draw its first page, no deeper",
     SealIsPackage},
    {"seal_in_slices", kGroup, "a seal cut over the edges of two pages", "draw each slice in its clip", SlicedSeal},
    {"signature_without_stamp", kGroup, "a signature that shows nothing", "treat the document as signed", NoStamp},
    {"integrity_list", kGroup, "a list of parts with a signed value at the package root",
     "treat the document as signed", IntegrityList},
};

} // namespace

std::vector<Deviation> SignatureDeviations()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
