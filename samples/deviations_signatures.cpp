#include "deviations.h"

#include "digest.h"
#include "pictures.h"

namespace samples {

namespace {

const QString kSignatureList = "Doc_0/Signs/Signatures.xml", kSignature = "Doc_0/Signs/Sign_0/Signature.xml",
              kSeal = "Doc_0/Signs/Sign_0/Seal.esl", kSignedValue = "Doc_0/Signs/Sign_0/SignedValue.dat";

// DER: type, length, content.
QByteArray Der(char type, const QByteArray& content)
{
    QByteArray length;
    for (int rest = content.size(); rest > 0 || length.isEmpty(); rest >>= 8)
        length.prepend(char(rest & 0xFF));
    if (content.size() >= 128)
        length.prepend(char(0x80 | length.size()));
    return type + length + content;
}

QByteArray Sequence(const QByteArray& content)
{
    return Der(0x30, content);
}

QByteArray Ia5(const QByteArray& text)
{
    return Der(0x16, text);
}

QByteArray Integer(int value)
{
    QByteArray bytes;
    do {
        bytes.prepend(char(value & 0xFF));
        value >>= 8;
    } while (value > 0);
    return Der(0x02, quint8(bytes[0]) & 0x80 ? '\0' + bytes : bytes);
}

// An electronic seal around a picture. Who made it and whether it is genuine is nobody's concern here: certificate and
// signature are place holders.
QByteArray Seal(const QByteArray& pictureType, const QByteArray& picture)
{
    const QByteArray time = Der(0x18, "20240520083000Z"), bits = Der(0x03, QByteArray(9, '\0'));
    const QByteArray header = Sequence(Ia5("ES") + Integer(4) + Ia5("tetobaisfla"));
    const QByteArray property = Sequence(Integer(1) + Der(0x0C, "Sample seal") + Integer(1) +
                                         Sequence(Der(0x04, "no certificate")) + time + time + time);
    const QByteArray image = Sequence(Ia5(pictureType) + Der(0x04, picture) + Integer(30) + Integer(30));
    const QByteArray info = Sequence(header + Ia5("12345678901234") + property + image);
    const QByteArray method = Der(0x06, QByteArray::fromHex("2a811ccf55018375"));
    return Sequence(info + Der(0x04, "no certificate") + method + bits);
}

QByteArray References(Package& package, const std::vector<QString>& covered)
{
    QByteArray text;
    for (const QString& name : covered)
        text += "<ofd:Reference FileRef=\"/" + name.toUtf8() + "\">\n<ofd:CheckValue>" +
                Sm3(package.Data(name)).toBase64() + "</ofd:CheckValue>\n</ofd:Reference>\n";
    return text;
}

std::vector<QString> AllParts(const Package& package)
{
    std::vector<QString> names;
    for (const Part& part : package.Parts())
        if (!part.name.startsWith("Doc_0/Signs/"))
            names.push_back(part.name);
    return names;
}

// The signed value holds the seal and the digest of the signature part, so it is made anew when that part changes.
void PutSignedValue(Package& package)
{
    const QByteArray digest = Der(0x03, '\0' + Sm3(package.Data(kSignature)));
    const QByteArray content = Integer(4) + package.Data(kSeal) + Der(0x18, "20240520083000Z") + digest +
                               Ia5("/Doc_0/Signs/Sign_0/Signature.xml");
    package.Data(kSignedValue) =
        Sequence(Sequence(content) + Der(0x04, "no certificate") +
                 Der(0x06, QByteArray::fromHex("2a811ccf5501837501")) + Der(0x03, QByteArray(9, '\0')));
}

// Adds one signature over all parts; digests are true when it is done, so it comes last.
void Sign(Package& package, const QByteArray& pictureType = "png", const QByteArray& picture = LogoPng())
{
    const QByteArray uri = "http://www.ofdspec.org/2016", head = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    package.Replace(kEntryPart, "</ofd:DocBody>",
                    "<ofd:Signatures>Doc_0/Signs/Signatures.xml</ofd:Signatures>\n</ofd:DocBody>");
    const QByteArray references = References(package, AllParts(package));
    package.Add(kSignatureList,
                head + "<ofd:Signatures xmlns:ofd=\"" + uri +
                    "\">\n<ofd:MaxSignId>s001</ofd:MaxSignId>\n"
                    "<ofd:Signature ID=\"s001\" Type=\"Seal\" BaseLoc=\"Sign_0/Signature.xml\"/>\n</ofd:Signatures>\n");
    package.Add(kSignature, head + "<ofd:Signature xmlns:ofd=\"" + uri +
                                "\">\n<ofd:SignedInfo>\n"
                                "<ofd:Provider ProviderName=\"tetobaisfla\" Version=\"1.0\" Company=\"Sample\"/>\n"
                                "<ofd:SignatureMethod>1.2.156.10197.1.501</ofd:SignatureMethod>\n"
                                "<ofd:SignatureDateTime>2024-05-20 08:30:00</ofd:SignatureDateTime>\n"
                                "<ofd:References CheckMethod=\"1.2.156.10197.1.401\">\n" +
                                references +
                                "</ofd:References>\n"
                                "<ofd:StampAnnot ID=\"s002\" PageRef=\"6\" Boundary=\"140 150 30 30\"/>\n"
                                "<ofd:Seal>\n<ofd:BaseLoc>Seal.esl</ofd:BaseLoc>\n</ofd:Seal>\n</ofd:SignedInfo>\n"
                                "<ofd:SignedValue>SignedValue.dat</ofd:SignedValue>\n</ofd:Signature>\n");
    package.Add(kSeal, Seal(pictureType, picture));
    package.Add(kSignedValue, QByteArray());
    PutSignedValue(package);
}

void Signed(Package& package)
{
    Sign(package);
}

void DigestMismatch(Package& package)
{
    Sign(package);
    package.Replace(kSecondPage, ">Second page<", ">Altered one<");
}

void SignatureOrder(Package& package)
{
    Sign(package);
    MoveLast(package, kSignature, "Provider", "SignedInfo");
    MoveLast(package, kSignature, "References", "SignedInfo");
    MoveLast(package, kSignature, "SignedInfo", "Signature");
    PutSignedValue(package);
    MoveLast(package, kSignatureList, "MaxSignId", "Signatures");
}

void ProviderAsChildren(Package& package)
{
    Sign(package);
    package.Replace(kSignature, "<ofd:Provider ProviderName=\"tetobaisfla\" Version=\"1.0\" Company=\"Sample\"/>",
                    "<ofd:Provider><ofd:ProviderName>tetobaisfla</ofd:ProviderName><ofd:Version>1.0</ofd:Version>"
                    "<ofd:Company>Sample</ofd:Company></ofd:Provider>");
    PutSignedValue(package);
    package.Replace(kSignatureList, "<ofd:MaxSignId>s001</ofd:MaxSignId>\n",
                    "<ofd:MaxSignId>s001</ofd:MaxSignId>\n<ofd:MaxSignId>1</ofd:MaxSignId>\n");
}

void SealIsPackage(Package& package)
{
    Sign(package, "ofd", PackedBytes(PlainDocument("seal", "a document inside a seal")));
}

void SlicedSeal(Package& package)
{
    Sign(package);
    package.Replace(kSignature, "<ofd:StampAnnot ID=\"s002\" PageRef=\"6\" Boundary=\"140 150 30 30\"/>",
                    "<ofd:StampAnnot ID=\"s002\" PageRef=\"6\" Boundary=\"195 150 30 30\" Clip=\"0 0 15 30\"/>\n"
                    "<ofd:StampAnnot ID=\"s003\" PageRef=\"11\" Boundary=\"180 150 30 30\" Clip=\"15 0 15 30\"/>");
    PutSignedValue(package);
}

void NoStamp(Package& package)
{
    Sign(package);
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
    package.Add("signedvalue.dat", Sequence(Integer(1) + Der(0x04, "no signature")));
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
