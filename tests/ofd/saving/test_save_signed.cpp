#include "edit_kinds.h"
#include "saving_desk.h"

#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <frame/document/payloads.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <samples/digest.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QDate>
#include <QFile>
#include <QMap>
#include <QtTest>

namespace {

const QString EntryPart = QStringLiteral("OFD.xml");
const QString AnnotsPart = QStringLiteral("Doc_0/Annots.xml");
const QString PageAnnotsPart = QStringLiteral("Doc_0/PageAnnots.xml");

// A document whose signature refers to these parts.
OfdFile Signed(const QList<QByteArray>& references)
{
    OfdFile file = OfdFile::WithPages(1);
    file.Tail("<ofd:Outlines><ofd:OutlineElem Title=\"A\"/></ofd:Outlines><ofd:Annotations>Annots.xml"
              "</ofd:Annotations>");
    file.Set(AnnotsPart, Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>PageAnnots.xml</ofd:FileLoc>"
                                                "</ofd:Page>"));
    file.Set(PageAnnotsPart,
             Element("PageAnnot", "<ofd:Annot ID=\"3\" Type=\"Path\" Creator=\"c\" LastModDate=\"2020-01-01\">"
                                  "<ofd:Appearance Boundary=\"0 0 1 1\"/></ofd:Annot>"));
    QByteArray entry = file.Part(EntryPart);
    entry.replace("</ofd:DocInfo>", "<ofd:ModDate>2001-02-03</ofd:ModDate></ofd:DocInfo>");
    entry.replace("</ofd:DocBody>", "<ofd:Signatures>Signs/Signatures.xml</ofd:Signatures></ofd:DocBody>");
    file.Set(EntryPart, entry);
    file.Set(QStringLiteral("Signs/Signatures.xml"),
             Element("Signatures", "<ofd:Signature ID=\"s001\" BaseLoc=\"Sign_0/Signature.xml\"/>"));
    QByteArray list;
    for (const QByteArray& reference : references)
        list += "<ofd:Reference FileRef=\"" + reference + "\"><ofd:CheckValue>AA==</ofd:CheckValue></ofd:Reference>";
    file.Set(QStringLiteral("Signs/Sign_0/Signature.xml"),
             Element("Signature", "<ofd:SignedInfo><ofd:References>" + list + "</ofd:References></ofd:SignedInfo>"));
    return file;
}

// For each part that the sample's signature covers, whether it still has the digest that is stated for it.
QMap<QString, bool> MatchingDigests(const QString& path)
{
    const auto package = ofd::Package::Open(path);
    QMap<QString, bool> matches;
    for (const QString& name : package->GetPartNames()) {
        const auto xml = name.endsWith(QLatin1String("Signature.xml")) ? ofd::XmlPart::Load(*package, name) : nullptr;
        if (!xml)
            continue;
        for (const pugi::xml_node& reference :
             ofd::ChildElements(ofd::Descend(xml->GetRoot(), {"SignedInfo", "References"}), "Reference")) {
            const QString part = ofd::AttributeText(reference, "FileRef").mid(1); // they begin at the root
            const QByteArray stated = ofd::TrimmedText(ofd::ChildElement(reference, "CheckValue")).toLatin1();
            matches.insert(part, samples::Sm3(package->Read(part).bytes).toBase64() == stated);
        }
    }
    return matches;
}

void Rename(ofd::OfdDocument& document)
{
    auto* item = dynamic_cast<G_OutlineItem*>(document.GetOutlineRoot()->SubNode(0)->data);
    item->title = item->text = "B";
}

void EditRemark(ofd::OfdDocument& document)
{
    document.GetPage(0)->LoadAnnots();
    document.GetPage(0)->GetAnnotAt(0)->SetRemark("changed");
}

} // namespace

// What a save would do to signatures, and what it leaves alone.
class TestSaveSigned : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void onlyCoveredPartsBreakASignature();
    void referencesAreFollowedFromWhereTheyStand();
    void aSignatureThatCannotBeReadCoversAll();
    void aListOfSignaturesThatIsMissingProtectsNothing();
    void aListForTheWholePackageProtectsWhatItNames();
    void removingACoveredPartBreaks();
    void aSaveLeavesSignaturesAndOtherPartsAlone();
    void theDateOfTheLastChangeIsKeptWhereItIsCovered();
    void signaturesOfAnotherDocumentInThePackageCount();
    void undoneEditsBreakNothing();
    void digestsOfOtherPartsStillMatchAfterConsent();

private:
    bool Breaks(const OfdFile& file, const SavingDesk::Edit& edit)
    {
        const auto document = desk->Open(file.Write(desk->Path(QStringLiteral("a.ofd"))));
        if (document->BreaksSignatures())
            qFatal("an edit is not needed");
        edit(*document);
        return document->BreaksSignatures();
    }

    std::unique_ptr<SavingDesk> desk;
};

void TestSaveSigned::onlyCoveredPartsBreakASignature()
{
    QVERIFY(!Breaks(OfdFile::WithPages(1).Tail("<ofd:Outlines><ofd:OutlineElem Title=\"A\"/></ofd:Outlines>"), Rename));
    const OfdFile file = Signed({"/Doc_0/Document.xml", "/Doc_0/Pages/Page_0/Content.xml"});
    QVERIFY(Breaks(file, Rename));
    QVERIFY(!Breaks(file, EditRemark));
    QVERIFY(Breaks(Signed({"/Doc_0/PageAnnots.xml"}), EditRemark));
}

void TestSaveSigned::referencesAreFollowedFromWhereTheyStand()
{
    QVERIFY(Breaks(Signed({"../../Doc_0/Document.xml"}), Rename));
    QVERIFY(Breaks(Signed({"/doc_0/DOCUMENT.xml"}), Rename));
    QVERIFY(!Breaks(Signed({"/no/such/part.xml", "../../../outside.xml"}), Rename));
}

void TestSaveSigned::aSignatureThatCannotBeReadCoversAll()
{
    OfdFile file = Signed({"/Doc_0/PageAnnots.xml"});
    QVERIFY(!Breaks(file, Rename));
    file.Set(QStringLiteral("Signs/Sign_0/Signature.xml"), "not XML");
    QVERIFY(Breaks(file, Rename));
    file.Remove(QStringLiteral("Signs/Sign_0/Signature.xml"));
    QVERIFY(Breaks(file, Rename));
    QVERIFY(Breaks(Signed({}), EditRemark));
    QVERIFY(Breaks(Signed({"/Doc_0/PageAnnots.xml", " "}), Rename)); // what it means is not said
    OfdFile broken = Signed({"/Doc_0/PageAnnots.xml"});
    broken.Set(QStringLiteral("Signs/Signatures.xml"), "<ofd:Signatures>");
    QVERIFY(Breaks(broken, Rename));
    QVERIFY(desk->Open(broken.Write(desk->Path(QStringLiteral("b.ofd"))))->IsSignProtected());
}

void TestSaveSigned::aListOfSignaturesThatIsMissingProtectsNothing()
{
    OfdFile file = Signed({"/Doc_0/Document.xml"});
    file.Remove(QStringLiteral("Signs/Signatures.xml"));
    QVERIFY(!Breaks(file, Rename));
}

void TestSaveSigned::aListForTheWholePackageProtectsWhatItNames()
{
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Outlines><ofd:OutlineElem Title=\"A\"/></ofd:Outlines>");
    file.Set(QStringLiteral("OFDEntries.xml"),
             Element("OFDEntries", "<ofd:FileList><ofd:FileLoc>/Doc_0/Document.xml</ofd:FileLoc></ofd:FileList>"));
    QVERIFY(Breaks(file, Rename));
    file.Set(QStringLiteral("OFDEntries.xml"),
             Element("OFDEntries", "<ofd:FileList><ofd:FileLoc>/OFD.xml</ofd:FileLoc></ofd:FileList>"));
    QVERIFY(!Breaks(file, Rename));
}

void TestSaveSigned::removingACoveredPartBreaks()
{
    const auto removeAnnot = [](ofd::OfdDocument& document) {
        document.GetPage(0)->LoadAnnots();
        document.RemoveAnnot(document.GetPage(0)->GetAnnotAt(0));
    };
    QVERIFY(Breaks(Signed({"/Doc_0/PageAnnots.xml"}), removeAnnot));
    QVERIFY(Breaks(Signed({"/Doc_0/Annots.xml"}), removeAnnot));
    QVERIFY(!Breaks(Signed({"/Doc_0/Document.xml"}), removeAnnot));
    const auto attach = [](ofd::OfdDocument& document) {
        document.AddAttachment(new BytesReader("x"), false, "a", "txt", "a", "txt", 0);
    };
    QVERIFY(Breaks(Signed({"/Doc_0/Document.xml"}), attach));
    QVERIFY(!Breaks(Signed({"/OFD.xml"}), attach));
}

void TestSaveSigned::aSaveLeavesSignaturesAndOtherPartsAlone()
{
    const OfdFile file = Signed({"/Doc_0/Document.xml", "/OFD.xml"});
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path = desk->Saved(file, Rename);
    QCOMPARE(DifferingParts(original, path), QStringList(DocumentPart));
    QVERIFY(desk->Open(path)->IsSignProtected());
}

void TestSaveSigned::theDateOfTheLastChangeIsKeptWhereItIsCovered()
{
    const QString today = QDate::currentDate().toString(Qt::ISODate);
    const OfdFile covered = Signed({"/OFD.xml"});
    QCOMPARE(desk->SavedPart(covered, EntryPart, Rename), covered.Part(EntryPart));
    const OfdFile open = Signed({"/Doc_0/Document.xml"});
    QCOMPARE(desk->SavedPart(open, EntryPart, Rename), open.Part(EntryPart).replace("2001-02-03", today.toUtf8()));
}

void TestSaveSigned::signaturesOfAnotherDocumentInThePackageCount()
{
    const QByteArray own = "<ofd:Signatures>Signs/Signatures.xml</ofd:Signatures></ofd:DocBody>";
    OfdFile file = Signed({"/OFD.xml"});
    const QByteArray another = "</ofd:DocBody><ofd:DocBody><ofd:DocRoot>Other/Document.xml</ofd:DocRoot>" + own;
    file.Set(EntryPart, file.Part(EntryPart).replace(own, another));
    QVERIFY(!Breaks(file, Rename));
    QCOMPARE(desk->SavedPart(file, EntryPart, Rename), file.Part(EntryPart)); // not even the date of the change
    file.Set(QStringLiteral("Signs/Sign_0/Signature.xml"),
             file.Part(QStringLiteral("Signs/Sign_0/Signature.xml")).replace("/OFD.xml", "/Doc_0/Document.xml"));
    QVERIFY(Breaks(file, Rename));
}

void TestSaveSigned::undoneEditsBreakNothing()
{
    const auto document = desk->Open(Signed({"/Doc_0/Document.xml"}).Write(desk->Path(QStringLiteral("a.ofd"))));
    Rename(*document);
    QVERIFY(document->BreaksSignatures());
    auto* item = dynamic_cast<G_OutlineItem*>(document->GetOutlineRoot()->SubNode(0)->data);
    item->title = item->text = "A";
    QVERIFY(!document->BreaksSignatures());
    Rename(*document);
    QVERIFY(document->Save());
    QVERIFY(!document->BreaksSignatures());
}

void TestSaveSigned::digestsOfOtherPartsStillMatchAfterConsent()
{
    const QString original = SamplePath(QStringLiteral("deviations/signed"));
    const QMap<QString, bool> before = MatchingDigests(original);
    QVERIFY(before.size() > 5);
    QVERIFY(!before.values().contains(false));
    for (const EditKind& kind : EditKinds()) {
        const QString path = desk->Path(QStringLiteral("signed.ofd"));
        QFile::remove(path);
        QVERIFY(QFile::copy(original, path));
        const auto document = desk->Open(path);
        bool done = true;
        kind.apply(*document, done);
        if (!done)
            continue;
        QVERIFY2(document->BreaksSignatures(), kind.name); // this signature covers everything
        QVERIFY2(document->Save(), kind.name);
        const QStringList differing = DifferingParts(original, path);
        const QMap<QString, bool> after = MatchingDigests(path);
        QCOMPARE(after.keys(), before.keys());
        for (auto match = after.cbegin(); match != after.cend(); ++match)
            QVERIFY2(*match != differing.contains(match.key()), qPrintable(match.key()));
        for (const QString& part : differing)
            QVERIFY2(!part.startsWith(QLatin1String("Doc_0/Signs")), qPrintable(part));
        QVERIFY(!differing.contains(EntryPart)); // covered, so its date stays
        QVERIFY(desk->Open(path)->IsSignProtected());
    }
}

TETO_TEST_MAIN(TestSaveSigned)

#include "test_save_signed.moc"
