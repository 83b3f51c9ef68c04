#include "signing.h"

#include "der.h"
#include "deviations.h"
#include "digest.h"

namespace samples {

const QString kSignatureList = "Doc_0/Signs/Signatures.xml", kSignature = "Doc_0/Signs/Sign_0/Signature.xml",
              kSeal = "Doc_0/Signs/Sign_0/Seal.esl", kSignedValue = "Doc_0/Signs/Sign_0/SignedValue.dat";

namespace {

QByteArray References(Package& package, const std::vector<QString>& covered)
{
    QByteArray text;
    for (const QString& name : covered)
        text += "<ofd:Reference FileRef=\"/" + name.toUtf8() + "\">\n<ofd:CheckValue>" +
                Sm3(package.Data(name)).toBase64() + "</ofd:CheckValue>\n</ofd:Reference>\n";
    return text;
}

} // namespace

std::vector<QString> AllParts(const Package& package)
{
    std::vector<QString> names;
    for (const Part& part : package.Parts())
        if (!part.name.startsWith("Doc_0/Signs/"))
            names.push_back(part.name);
    return names;
}

void PutSignedValue(Package& package)
{
    package.Data(kSignedValue) = SignedValueData(package.Data(kSeal), Sm3(package.Data(kSignature)));
}

void Sign(Package& package, const QByteArray& seal)
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
    package.Add(kSeal, seal);
    package.Add(kSignedValue, QByteArray());
    PutSignedValue(package);
}

} // namespace samples
