#include "saving_desk.h"

#include <frame/base/converters.h>
#include <ofd/model/attachment_table.h>
#include <ofd/package/byte_source.h>
#include <ofd/package/package.h>
#include <ofd/package/zip_records.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

#include <atomic>
#include <thread>

#include <sys/resource.h>

namespace {

const QString ListPart = QStringLiteral("Doc_0/Attachments.xml");

OfdFile File()
{
    return OfdFile::WithPages(1)
        .Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>")
        .Set(ListPart,
             Element("Attachments", "\n <ofd:Attachment ID=\"7\" Name=\"data\" Visible=\"false\" Own=\"1\">"
                                    "<ofd:FileLoc>Attachs/data.xml</ofd:FileLoc></ofd:Attachment>"
                                    "\n <ofd:Attachment ID=\"8\" Name=\"same\"><ofd:FileLoc>Attachs/data.xml"
                                    "</ofd:FileLoc></ofd:Attachment>"
                                    "\n <ofd:Attachment ID=\"9\" Name=\"other\"><ofd:FileLoc>Attachs/other.bin"
                                    "</ofd:FileLoc><own/></ofd:Attachment>\n"))
        .Set(QStringLiteral("Doc_0/Attachs/data.xml"), "<data/>")
        .Set(QStringLiteral("Doc_0/Attachs/other.bin"), "other bytes");
}

bool Add(IG_Document& document, const QByteArray& bytes, const char* name, const char* format = "txt",
         bool isBig = false)
{
    return document.AddAttachment(new BytesReader(bytes), isBig, name, format, name, format, 0);
}

// Empty when they cannot be read.
QByteArray BytesOfAttachment(IG_Document& document, int index)
{
    BytesWriter bytes;
    return document.WriteAttachment(index, &bytes) ? bytes.bytes : QByteArray();
}

QByteArray RandomBytes(int count)
{
    QByteArray bytes(count, 0);
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32*>(bytes.data()), count / 4);
    return bytes;
}

quint16 MethodOf(const QString& path, const QString& part)
{
    const auto package = ofd::Package::Open(path);
    return package->GetDirectory().entries[size_t(package->FindEntry(part))].method;
}

// Gives the same bytes again and again, without ever holding them.
class LongReader : public ICA_StreamReader
{
public:
    explicit LongReader(qint64 size)
        : block(RandomBytes(1 << 20))
        , left(size)
    {
    }
    qint64 GetSize() override { return -1; }
    qint64 Read(void* buffer, qint64 size) override
    {
        const qint64 count = qMin(qMin(size, left), qint64(block.size()));
        std::memcpy(buffer, block.constData(), size_t(count));
        left -= count;
        return count;
    }

private:
    const QByteArray block;
    qint64 left;
};

// Counts what it is given.
class CountingWriter : public ICA_StreamWriter
{
public:
    bool Write(const void*, qint64 size) override
    {
        count += size;
        return true;
    }
    void Abandon() override { count = -1; }

    qint64 count = 0;
};

qint64 PeakMemoryKb()
{
    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

// Attachments that were added and removed.
class TestSaveAttachments : public QObject
{
    Q_OBJECT

private slots:
    void init() { desk = std::make_unique<SavingDesk>(); }

    void anAddedOneJoinsTheList();
    void theListIsMadeWhenThereIsNone();
    void anElementThatNamedAMissingListIsPutRight();
    void aListInsideTheDocumentPartIsEditedThere();
    void aMissingHighestIdentifierIsAdded();
    void removedOnesGoWithTheirParts();
    void aRemovedOneThatWasNeverSavedLeavesNoTrace();
    void namesAreHarmlessAndNeverTheSame();
    void namesAreShownAsTheyAreWhereTheyLeadNowhere();
    void referencesFromTheRootStaySo();
    void dataIsPackedOnlyWhenThatHelps();
    void bigDataNeedsLittleMemory();
    void savesFollowEachOther();
    void whatOtherThreadsChangeDuringASaveIsStillUnsaved();
    void threadsMayAddAndReadWhileTheFileIsSaved();

private:
    std::unique_ptr<SavingDesk> desk;
};

void TestSaveAttachments::whatOtherThreadsChangeDuringASaveIsStillUnsaved()
{
    ofd::AttachmentEntry first;
    first.info.id = 1;
    first.ordinal = 0;
    ofd::AttachmentEntry second = first;
    second.info.id = 2;
    second.ordinal = 1;
    ofd::AttachmentTable table({first, second}, ListPart, [](int above) { return above + 1; });
    const QVector<ofd::AttachmentEntry> written = table.GetEntries();
    QVERIFY(table.Remove(0));
    BytesReader bytes("new");
    QVERIFY(table.AddFrom(&bytes, G_AttachmentInfo(), false));
    table.AdoptSaved(written, QStringLiteral("Doc_0/Other.xml"));
    QVERIFY(table.IsChanged()); // one is to go, one to be added
    QCOMPARE(table.GetListPart(), QStringLiteral("Doc_0/Other.xml"));
    table.AdoptSaved(table.GetEntries(), ListPart);
    QVERIFY(!table.IsChanged());
}

void TestSaveAttachments::threadsMayAddAndReadWhileTheFileIsSaved()
{
    constexpr int added = 30;
    const QString path = OfdFile::WithPages(1).Write(desk->Path(QStringLiteral("a.ofd"))); // its list is made by a save
    const auto document = desk->Open(path);
    std::atomic<bool> isDone = false;
    std::atomic<int> wrong = 0;
    std::thread thread([&] {
        for (int i = 0; i < added; ++i) {
            wrong += !Add(*document, QByteArray::number(i), "one");
            wrong += BytesOfAttachment(*document, i / 2) != QByteArray::number(i / 2);
        }
        isDone = true;
    });
    bool isSaved = true;
    while (!isDone)
        isSaved = document->Save() && isSaved;
    thread.join();
    QCOMPARE(wrong.load(), 0);
    QVERIFY(isSaved);
    QVERIFY(document->Save());
    QVERIFY(!document->IsModified());
    const auto again = desk->Open(path);
    QCOMPARE(again->GetAttachmentCount(), added);
    for (int i = 0; i < added; ++i)
        QCOMPARE(BytesOfAttachment(*again, i), QByteArray::number(i));
}

void TestSaveAttachments::anAddedOneJoinsTheList()
{
    const OfdFile file = File();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    const QString path =
        desk->Saved(file, [](IG_Document& document) { QVERIFY(Add(document, QByteArray(3000, 'a'), "report")); });
    const QString part = QStringLiteral("Doc_0/Attachs/report.txt");
    QCOMPARE(DifferingParts(original, path), QStringList({ListPart, part, DocumentPart}));
    QCOMPARE(PartOf(path, part), QByteArray(3000, 'a'));
    const QByteArray list = PartOf(path, ListPart);
    const QRegularExpression added(QStringLiteral(
        "\n <ofd:Attachment ID=\"1001\" Name=\"report\" Format=\"txt\" "
        "CreationDate=\"\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\" Size=\"2.9297\"><ofd:FileLoc>Attachs/report.txt"
        "</ofd:FileLoc></ofd:Attachment>"));
    QVERIFY2(added.match(QString::fromUtf8(list)).hasMatch(), list.constData());
    QCOMPARE(QString::fromUtf8(list).remove(added).toUtf8(), file.Part(ListPart));
    QCOMPARE(PartOf(path, DocumentPart), file.Part(DocumentPart).replace(">1000<", ">1001<"));
    const auto document = desk->Open(path);
    QCOMPARE(document->GetAttachmentCount(), 4);
    QCOMPARE(document->GetAttachment(3).id, 1001);
    QVERIFY(!document->GetAttachment(0).visible);
}

void TestSaveAttachments::theListIsMadeWhenThereIsNone()
{
    const OfdFile file = OfdFile::WithPages(1)
                             .Tail("<ofd:CustomTags>x.xml</ofd:CustomTags><ofd:Extensions>e.xml</ofd:Extensions>")
                             .Set(QStringLiteral("Doc_0/ATTACHMENTS.xml"), "<another/>");
    const QString path = desk->Saved(file, [](IG_Document& document) { QVERIFY(Add(document, "bytes", "a")); });
    QVERIFY(PartOf(path, DocumentPart)
                .contains("</ofd:CustomTags><ofd:Attachments>Attachments_1.xml</ofd:Attachments><ofd:Extensions>"));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Attachments_1.xml")).contains("<ofd:FileLoc>Attachs/a.txt<"));
    BytesWriter bytes;
    QVERIFY(desk->Open(path)->WriteAttachment(0, &bytes));
    QCOMPARE(bytes.bytes, QByteArray("bytes"));
}

void TestSaveAttachments::anElementThatNamedAMissingListIsPutRight()
{
    const OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Attachments>gone/list.xml</ofd:Attachments>");
    const QString path = desk->Saved(file, [](IG_Document& document) { QVERIFY(Add(document, "bytes", "a")); });
    QVERIFY(PartOf(path, DocumentPart).contains("<ofd:Attachments>Attachments.xml</ofd:Attachments>"));
    QCOMPARE(desk->Open(path)->GetAttachmentCount(), 1);
}

void TestSaveAttachments::aListInsideTheDocumentPartIsEditedThere()
{
    const OfdFile file = OfdFile::WithPages(1)
                             .Tail("<ofd:Attachments><ofd:Attachment ID=\"1\" Name=\"in\"><ofd:FileLoc>in.bin"
                                   "</ofd:FileLoc></ofd:Attachment></ofd:Attachments>")
                             .Set(QStringLiteral("Doc_0/in.bin"), "in");
    const QString path = desk->Saved(file, [](IG_Document& document) {
        QVERIFY(Add(document, "bytes", "a"));
        QVERIFY(document.RemoveAttachment(0));
    });
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/in.bin")).isEmpty());
    const auto document = desk->Open(path);
    QCOMPARE(document->GetAttachmentCount(), 1);
    QCOMPARE(GQ_ToQStringFromUtf8(document->GetAttachment(0).name), QStringLiteral("a"));
}

void TestSaveAttachments::aMissingHighestIdentifierIsAdded()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Set(DocumentPart, file.Part(DocumentPart).replace("<ofd:MaxUnitID>1000</ofd:MaxUnitID>", ""));
    const QString path = desk->Saved(file, [](IG_Document& document) { QVERIFY(Add(document, "bytes", "a")); });
    QVERIFY(PartOf(path, DocumentPart).contains("<ofd:CommonData><ofd:MaxUnitID>501</ofd:MaxUnitID><ofd:PageArea>"));
}

void TestSaveAttachments::removedOnesGoWithTheirParts()
{
    const OfdFile file = File();
    const QString original = file.Write(desk->Path(QStringLiteral("original.ofd")));
    QString path = desk->Saved(file, [](IG_Document& document) { QVERIFY(document.RemoveAttachment(2)); });
    QCOMPARE(DifferingParts(original, path), QStringList({ListPart, QStringLiteral("Doc_0/Attachs/other.bin")}));
    QByteArray expected = file.Part(ListPart);
    const int begin = expected.indexOf("\n <ofd:Attachment ID=\"9\"");
    QCOMPARE(PartOf(path, ListPart), expected.remove(begin, expected.indexOf("\n</ofd:Attachments>") - begin));
    // The other entry still needs the part.
    path = desk->Saved(file, [](IG_Document& document) { QVERIFY(document.RemoveAttachment(0)); });
    QCOMPARE(DifferingParts(original, path), QStringList(ListPart));
    path = desk->Saved(file, [](IG_Document& document) {
        while (document.RemoveAttachment(0))
            continue;
    });
    QCOMPARE(PartOf(path, ListPart), Element("Attachments", "\n"));
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Attachs/data.xml")).isEmpty());
}

void TestSaveAttachments::aRemovedOneThatWasNeverSavedLeavesNoTrace()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const QByteArray before = BytesOf(path);
    const auto document = desk->Open(path);
    QVERIFY(Add(*document, "bytes", "for a moment"));
    QVERIFY(document->IsModified());
    QVERIFY(document->RemoveAttachment(3));
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), before);
}

void TestSaveAttachments::namesAreHarmlessAndNeverTheSame()
{
    const char* const names[] = {"../../etc/passwd",     "A",    "a", "a\\b:c*?\"<>|\n", "", "..",
                                 "\xe2\x80\xae txt.exe", "other"};
    const QString path = desk->Saved(File(), [&names](IG_Document& document) {
        for (const char* name : names)
            QVERIFY(Add(document, name, name, "bin"));
    });
    const auto package = ofd::Package::Open(path);
    const QRegularExpression harmless(QStringLiteral("^Doc_0/Attachs/[^/\\\\:*?\"<>|\\x00-\\x1f\\x{202e}]+$"));
    QSet<QString> folded;
    int count = 0;
    for (const QString& name : package->GetPartNames()) {
        QVERIFY2(!folded.contains(name.toLower()), qPrintable(name));
        folded.insert(name.toLower());
        QVERIFY(!name.split(QLatin1Char('/')).contains(QStringLiteral("..")));
        if (!name.startsWith(QLatin1String("Doc_0/Attachs/")))
            continue;
        QVERIFY2(harmless.match(name).hasMatch(), qPrintable(name));
        ++count;
    }
    QCOMPARE(count, 2 + int(std::size(names)));
    const auto document = desk->Open(path);
    for (int i = 0; i < int(std::size(names)); ++i) {
        BytesWriter bytes;
        QVERIFY(document->WriteAttachment(3 + i, &bytes));
        QCOMPARE(bytes.bytes, QByteArray(names[i]));
    }
}

void TestSaveAttachments::namesAreShownAsTheyAreWhereTheyLeadNowhere()
{
    OfdFile file = File();
    file.Set(ListPart, file.Part(ListPart).replace("Name=\"other\"", "Name=\"../a: &quot;c&quot;?\""));
    const QString path =
        desk->Saved(file, [](IG_Document& document) { QVERIFY(Add(document, "bytes", "What? 1*2", "b:n")); });
    const auto document = desk->Open(path);
    QVERIFY(document->GetAttachment(2).name == "_a: \"c\"?");
    QVERIFY(document->GetAttachment(3).name == "What? 1*2");
    QVERIFY(document->GetAttachment(3).format == "b:n");
    QVERIFY(PartOf(path, ListPart).contains("Attachs/What_ 1_2.b_n<"));
}

void TestSaveAttachments::referencesFromTheRootStaySo()
{
    OfdFile file = File();
    file.Set(ListPart, file.Part(ListPart).replace(">Attachs/", ">/Doc_0/Attachs/"));
    const QByteArray list =
        desk->SavedPart(file, ListPart, [](IG_Document& document) { QVERIFY(Add(document, "bytes", "a")); });
    QVERIFY(list.contains("<ofd:FileLoc>/Doc_0/Attachs/a.txt</ofd:FileLoc>"));
}

void TestSaveAttachments::dataIsPackedOnlyWhenThatHelps()
{
    const QByteArray noise = RandomBytes(300'000);
    const QString path = desk->Saved(File(), [&noise](IG_Document& document) {
        QVERIFY(Add(document, QByteArray(50'000, 'a'), "shrinks"));
        QVERIFY(Add(document, noise, "noise"));
        QVERIFY(Add(document, QByteArray(50'000, 'a'), "big", "txt", true));
        QVERIFY(Add(document, QByteArray(), "nothing"));
    });
    const QString folder = QStringLiteral("Doc_0/Attachs/");
    QCOMPARE(MethodOf(path, folder + QStringLiteral("shrinks.txt")), ofd::zip::MethodDeflated);
    for (const char* name : {"noise.txt", "big.txt", "nothing.txt"})
        QCOMPARE(MethodOf(path, folder + QLatin1String(name)), ofd::zip::MethodStored);
    QCOMPARE(PartOf(path, folder + QStringLiteral("noise.txt")), noise);
    QCOMPARE(PartOf(path, folder + QStringLiteral("big.txt")), QByteArray(50'000, 'a'));
    QCOMPARE(PartOf(path, folder + QStringLiteral("nothing.txt")), QByteArray());
}

void TestSaveAttachments::bigDataNeedsLittleMemory()
{
    constexpr qint64 bytes = qint64(300) << 20;
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    const qint64 before = PeakMemoryKb();
    QVERIFY(document->AddAttachment(new LongReader(bytes), false, "big", "bin", "big", "bin", 0));
    QVERIFY(document->Save());
    CountingWriter writer;
    QVERIFY(desk->Open(path)->WriteAttachment(3, &writer));
    QCOMPARE(writer.count, bytes);
    QVERIFY2(PeakMemoryKb() - before < 64 * 1024, qPrintable(QString::number(PeakMemoryKb() - before)));
}

void TestSaveAttachments::savesFollowEachOther()
{
    const QString path = File().Write(desk->Path(QStringLiteral("a.ofd")));
    const auto document = desk->Open(path);
    for (int round = 0; round < 3; ++round) {
        QVERIFY(Add(*document, QByteArray::number(round), "again"));
        QVERIFY(document->RemoveAttachment(0));
        QVERIFY(document->Save());
        QVERIFY(!document->IsModified());
        const auto reopened = desk->Open(path);
        QCOMPARE(reopened->GetAttachmentCount(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(reopened->GetAttachment(i).id, document->GetAttachment(i).id);
            BytesWriter saved;
            BytesWriter held;
            QVERIFY(reopened->WriteAttachment(i, &saved));
            QVERIFY(document->WriteAttachment(i, &held));
            QCOMPARE(saved.bytes, held.bytes);
        }
    }
}

TETO_TEST_MAIN(TestSaveAttachments)

#include "test_save_attachments.moc"
