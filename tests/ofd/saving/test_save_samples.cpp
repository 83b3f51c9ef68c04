#include "edit_kinds.h"
#include "part_structure.h"
#include "saving_desk.h"

#include <ofd/package/byte_source.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_part.h>
#include <ofd/parse/document_reader.h>
#include <tests/ofd/document/description.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>

#include <QFile>
#include <QMap>
#include <QtTest>

namespace {

constexpr int DescribedEvery = 4;

// Local header, data and whatever stands behind them, of every entry, by name; of several with one name all.
QMap<QString, QByteArray> RawEntries(const ofd::Package& package)
{
    QMap<QString, QByteArray> entries;
    for (const ofd::ZipEntry& entry : package.GetDirectory().entries) {
        if (entry.isUsable)
            entries[entry.name] += package.GetSource().ReadAt(entry.headerOffset, entry.regionEnd - entry.headerOffset);
    }
    return entries;
}

// Names of entries that are not the same byte for byte, or are in one of the packages only.
QStringList RawDifferences(const ofd::Package& a, const ofd::Package& b)
{
    const QMap<QString, QByteArray> before = RawEntries(a);
    const QMap<QString, QByteArray> after = RawEntries(b);
    QStringList names = before.keys() + after.keys();
    names.removeDuplicates();
    QStringList differing;
    for (const QString& name : names) {
        if (!before.contains(name) || !after.contains(name) || before.value(name) != after.value(name))
            differing.append(name);
    }
    return differing;
}

// The part of the list that an edit is about.
QString ListPart(const ofd::DocumentStructure& structure, const QByteArray& list)
{
    if (list == "CustomTags")
        return structure.customTagsPart;
    if (list == "Attachments")
        return structure.attachmentsPart;
    return list == "Annotations" ? structure.annotationsPart : QString();
}

} // namespace

// Every sample: what is not edited comes back byte for byte, what is edited comes back as it was left.
class TestSaveSamples : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void theCheckOfStructureFindsFaults();
    void withoutAnEditTheFileIsTheSame_data() { ListSamples(); }
    void withoutAnEditTheFileIsTheSame();
    void anEditThatIsUndoneLeavesTheFileTheSame_data() { ListSamples(); }
    void anEditThatIsUndoneLeavesTheFileTheSame();
    void anEditOfEachKindChangesItsPartsOnly_data() { ListSamples(); }
    void anEditOfEachKindChangesItsPartsOnly();

private:
    void ListSamples();
    QString Copy(const QString& original) const
    {
        const QString path = desk->Path(QStringLiteral("copy.ofd"));
        QFile::remove(path);
        if (!QFile::copy(original, path))
            qFatal("%s cannot be copied", qPrintable(original));
        return path;
    }
    void VerifyEdit(const EditKind& kind, const QString& original, bool isDescribed, bool& done);

    std::unique_ptr<SavingDesk> desk;
};

void TestSaveSamples::ListSamples()
{
    QTest::addColumn<QString>("original");
    QTest::addColumn<int>("row");
    int row = 0;
    for (const char* name : {"tour", "letter", "invoice"})
        QTest::newRow(name) << SamplePath(QString::fromLatin1(name)) << row++;
    for (const SampleFile& sample : SamplesOf(QStringLiteral("deviations")))
        QTest::newRow(qPrintable(sample.name)) << sample.path << row++;
}

void TestSaveSamples::theCheckOfStructureFindsFaults()
{
    const auto faults = [](const QByteArray& name, const QByteArray& content) {
        return StructureFaults(Element(name, content)).join(QLatin1Char('|'));
    };
    const QByteArray head = "<ofd:CommonData><ofd:MaxUnitID>5</ofd:MaxUnitID><ofd:PageArea/></ofd:CommonData>"
                            "<ofd:Pages><ofd:Page ID=\"1\" BaseLoc=\"p.xml\"/></ofd:Pages>";
    QCOMPARE(faults("Document", head), QString());
    QCOMPARE(faults("Document", head + "<ofd:Bookmarks/><ofd:Outlines/>"),
             QStringLiteral("Document : Outlines stands too late|Outlines : has 0 of OutlineElem|"
                            "Bookmarks : has 0 of Bookmark"));
    QCOMPARE(faults("Document", head + "<ofd:Bookmarks><ofd:Bookmark Name=\"a\"><ofd:Dest Type=\"XY\" PageID=\"0\" "
                                       "Top=\"1e3\"/></ofd:Bookmark></ofd:Bookmarks>"),
             QStringLiteral("Dest : Type is no mode|Dest : PageID is no id|Dest : Top is no number"));
    QCOMPARE(
        faults("Attachments", "<ofd:Attachment ID=\"1\"><ofd:Size/></ofd:Attachment>"),
        QStringLiteral("Attachment 1: has the child Size|Attachment 1: has 0 of FileLoc|Attachment 1: lacks Name"));
    QCOMPARE(faults("PageAnnot", ""), QStringLiteral("PageAnnot : has 0 of Annot"));
    QCOMPARE(faults("Annotations", "<ofd:Page PageID=\"x\"><ofd:FileLoc>a</ofd:FileLoc></ofd:Page>"),
             QStringLiteral("Page : PageID is no id"));
    QCOMPARE(faults("CustomTags", "<ofd:CustomTag><ofd:FileLoc> </ofd:FileLoc></ofd:CustomTag>"),
             QStringLiteral("CustomTag : lacks NameSpace|FileLoc : is no location"));
}

void TestSaveSamples::withoutAnEditTheFileIsTheSame()
{
    QFETCH(const QString, original);
    const QByteArray before = BytesOf(original);
    const QString path = Copy(original);
    const auto document = desk->Open(path);
    DescribeDocument(*document); // reads everything
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
    QVERIFY(document->SaveAs(desk->Path(QStringLiteral("other.ofd"))));
    QCOMPARE(BytesOf(desk->Path(QStringLiteral("other.ofd"))), before);
}

void TestSaveSamples::anEditThatIsUndoneLeavesTheFileTheSame()
{
    QFETCH(const QString, original);
    const QByteArray before = BytesOf(original);
    const QString path = Copy(original);
    int undone = 0;
    for (const EditKind& kind : EditKinds()) {
        const auto document = desk->Open(path);
        bool done = true;
        const std::function<void()> undo = kind.apply(*document, done);
        if (!done || !undo)
            continue;
        QVERIFY2(document->IsModified(), kind.name);
        undo();
        QVERIFY2(!document->IsModified(), kind.name);
        QVERIFY2(document->Save(), kind.name);
        QVERIFY2(BytesOf(path) == before, kind.name);
        if (undone++ > 0)
            continue; // the same road for all kinds
        QVERIFY2(document->SaveAs(desk->Path(QStringLiteral("other.ofd"))), kind.name);
        QVERIFY2(BytesOf(desk->Path(QStringLiteral("other.ofd"))) == before, kind.name);
    }
    QVERIFY(undone >= 3); // bookmark, outline entry and attachment can be added everywhere
}

void TestSaveSamples::anEditOfEachKindChangesItsPartsOnly()
{
    QFETCH(const QString, original);
    QFETCH(int, row);
    int count = 0;
    for (const EditKind& kind : EditKinds()) {
        bool done = true;
        // Describing a document takes long, so each sample is told anew after some kinds of edits only.
        VerifyEdit(kind, original, row++ % DescribedEvery == 0, done);
        QVERIFY2(!QTest::currentTestFailed(), kind.name);
        count += done;
    }
    QVERIFY(count >= 4);
}

void TestSaveSamples::VerifyEdit(const EditKind& kind, const QString& original, bool isDescribed, bool& done)
{
    const QString path = Copy(original);
    const auto document = desk->Open(path);
    kind.apply(*document, done);
    if (!done)
        return;
    const ofd::DocumentSaveResult saved = document->Save();
    QVERIFY2(saved, qPrintable(saved.error));
    QVERIFY2(!document->IsModified(), kind.name);

    const auto before = ofd::Package::Open(original);
    const auto after = ofd::Package::Open(path);
    const ofd::DocumentStructure oldStructure = ofd::ReadDocument(*before).structure;
    const ofd::DocumentStructure newStructure = ofd::ReadDocument(*after).structure;
    const QStringList differing = RawDifferences(*before, *after);
    QVERIFY(!differing.isEmpty());
    QStringList others;
    for (const QString& part : differing) {
        const bool isXml = after->HasPart(part) && part.endsWith(QLatin1String(".xml"));
        const QStringList faults = isXml ? NewFaults(before->Read(part).bytes, after->Read(part).bytes) : QStringList();
        QVERIFY2(faults.isEmpty(), qPrintable(QLatin1String(kind.name) + QLatin1String(": ") + faults.join('|')));
        const bool isUsual = part == oldStructure.documentPart || part == before->GetEntryPoint() ||
                             part == ListPart(oldStructure, kind.list) || part == ListPart(newStructure, kind.list);
        if (!isUsual)
            others.append(part);
    }
    // Besides the lists, one part: that of the tags, of the attachment, of the page's annotations.
    QVERIFY2(others.size() <= (*kind.list ? 1 : 0), qPrintable(others.join(QLatin1Char(' '))));
    const auto reopened = desk->Open(path);
    QCOMPARE(reopened->GetAttachmentCount(), document->GetAttachmentCount());
    // What the file gives no number has one in memory only, and another one when there are more.
    const bool hasOtherNumbers = original.endsWith(QLatin1String("attachment_id_missing.ofd"));
    if (isDescribed && !hasOtherNumbers)
        QCOMPARE(DescribeDocument(*reopened), DescribeDocument(*document));
}

TETO_TEST_MAIN(TestSaveSamples)

#include "test_save_samples.moc"
