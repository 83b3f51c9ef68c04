#include "description.h"
#include "deviation_differences.h"
#include "ofd_file.h"
#include "sample_files.h"

#include <ofd/ofd_document.h>
#include <ofd/package/package.h>
#include <tests/support/test_main.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

std::unique_ptr<ofd::OfdDocument> Open(const QString& path)
{
    return std::move(ofd::OfdDocument::Open(path).document);
}

// The description without what is different in every sample: its own name and purpose, and where exactly the letters
// of the installed fonts end.
QStringList ComparableLines(IG_Document& document, const SampleFile& sample)
{
    static const QRegularExpression text(QStringLiteral("^  text (.*) \\([-0-9. ]+\\)$"));
    QStringList lines;
    bool isNameSeen = false;
    for (const QString& line : DescribeDocument(document).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = text.match(line);
        if (!match.hasMatch()) {
            lines.append(line);
            continue;
        }
        const bool isName = match.captured(1) == sample.name && !isNameSeen;
        isNameSeen |= isName;
        if (!isName && match.captured(1) != sample.shows)
            lines.append(QStringLiteral("  text ") + match.captured(1));
    }
    return lines;
}

// Lines of `from` that `other` lacks, each behind the mark.
QString Missing(const QStringList& from, QStringList other, QChar mark)
{
    QString text;
    for (const QString& line : from) {
        if (!other.removeOne(line))
            text += mark + line + QLatin1Char('\n');
    }
    return text;
}

G_Bookmark* FirstBookmark(IG_Document& document)
{
    G_TreeNode* root = document.GetBookmarkRoot();
    return root && root->SubNodeCount() > 0 ? dynamic_cast<G_Bookmark*>(root->SubNode(0)->data) : nullptr;
}

int DarkPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qGray(image.pixel(x, y)) < 128;
    }
    return count;
}

} // namespace

Q_DECLARE_METATYPE(SampleFile)

class TestOfdSamples : public QObject
{
    Q_OBJECT

private slots:
    void aDeviationMakesOnlyTheDifferenceThatItMust_data() { ListSamples("deviations"); }
    void aDeviationMakesOnlyTheDifferenceThatItMust();
    void everyDeviationPaintsItsName_data() { ListSamples("deviations"); }
    void everyDeviationPaintsItsName();
    void aDeviationSurvivesEditUndoAndSave_data() { ListSamples("deviations"); }
    void aDeviationSurvivesEditUndoAndSave();
    void damagedFilesAreRefusedOrOpened_data() { ListSamples("damaged"); }
    void damagedFilesAreRefusedOrOpened();
    void aCutFileNeverCrashes();
    void flippedBytesNeverCrash();
    void ordinaryDocumentsOpenAndPaint_data();
    void ordinaryDocumentsOpenAndPaint();

private:
    void ListSamples(const char* folder);
};

void TestOfdSamples::ListSamples(const char* folder)
{
    QTest::addColumn<SampleFile>("sample");
    for (const SampleFile& sample : SamplesOf(QString::fromLatin1(folder)))
        QTest::newRow(qPrintable(sample.name)) << sample;
}

void TestOfdSamples::aDeviationMakesOnlyTheDifferenceThatItMust()
{
    QFETCH(SampleFile, sample);
    static const QVector<SampleFile> samples = SamplesOf(QStringLiteral("deviations"));
    const auto plain = std::find_if(samples.cbegin(), samples.cend(), [](const SampleFile& candidate) {
        return candidate.name == QLatin1String("annotation_readable");
    });
    QVERIFY(plain != samples.cend());
    const auto document = Open(sample.path);
    QVERIFY(document);
    const QStringList expected = ComparableLines(*Open(plain->path), *plain);
    QVERIFY(expected.size() > 15);
    const QStringList lines = ComparableLines(*document, sample);
    const QString difference = Missing(expected, lines, QLatin1Char('-')) + Missing(lines, expected, QLatin1Char('+'));
    QCOMPARE(difference, DeviationDifferences().value(sample.name));
}

void TestOfdSamples::everyDeviationPaintsItsName()
{
    QFETCH(SampleFile, sample);
    const auto document = Open(sample.path);
    QVERIFY(document);
    G_RenderRequest request;
    request.pixelsPerMm = 4;
    const G_RenderResult result = document->Renderer()->RenderPage(request);
    QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
    // The name stands at (20, 30) in letters of six millimetres.
    QVERIFY(DarkPixels(result.image.copy(80, 90, 500, 44)) > 300);
    QCOMPARE(DarkPixels(result.image.copy(0, 220, 60, 700)), 0); // and nothing on the left edge
}

void TestOfdSamples::aDeviationSurvivesEditUndoAndSave()
{
    QFETCH(SampleFile, sample);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("copy.ofd"));
    QVERIFY(QFile::copy(sample.path, path));
    const QByteArray original = BytesOf(path);
    const auto document = Open(path);
    G_Bookmark* bookmark = FirstBookmark(*document);
    QVERIFY(bookmark);
    const CCA_String name = bookmark->name;
    bookmark->name = "changed & saved";
    QVERIFY(document->IsModified());
    bookmark->name = name;
    QVERIFY(!document->IsModified());
    QVERIFY(document->Save());
    QCOMPARE(BytesOf(path), original);
    bookmark->name = "changed & saved";
    const ofd::DocumentSaveResult saved = document->Save();
    QVERIFY2(saved, qPrintable(saved.error));

    const std::unique_ptr<ofd::Package> before = ofd::Package::OpenBytes(original);
    const std::unique_ptr<ofd::Package> after = ofd::Package::Open(path);
    QVERIFY(before && after);
    QCOMPARE(after->GetPartNames(), before->GetPartNames());
    int changedCount = 0;
    for (const QString& part : before->GetPartNames())
        changedCount += before->Read(part).bytes != after->Read(part).bytes;
    QVERIFY(changedCount >= 1 && changedCount <= 2); // the document part, and the entry part for its date
    const auto reopened = Open(path);
    QVERIFY(reopened);
    QVERIFY(FirstBookmark(*reopened)->name == "changed & saved");
    QCOMPARE(DescribeDocument(*reopened), DescribeDocument(*document));

    bookmark->name = name;
    QVERIFY(document->Save());
    const std::unique_ptr<ofd::Package> undone = ofd::Package::Open(path);
    for (const QString& part : before->GetPartNames()) {
        if (part.endsWith(QLatin1String("xml"), Qt::CaseInsensitive) && !part.contains(QLatin1Char('/')))
            continue; // the entry part keeps the new date
        // A name that was saved as another cannot know how it was once spelled, nor can a part that became UTF-8.
        static const QSet<QString> spelledAnew = {"character_references", "wide_without_mark", "zero_bytes_behind"};
        if (spelledAnew.contains(sample.name) && part == QLatin1String("Doc_0/Document.xml"))
            continue;
        QVERIFY2(before->Read(part).bytes == undone->Read(part).bytes, qPrintable(part));
    }
}

void TestOfdSamples::damagedFilesAreRefusedOrOpened()
{
    QFETCH(SampleFile, sample);
    const ofd::OpenResult result = ofd::OfdDocument::Open(sample.path);
    if (sample.mustDo.startsWith(QLatin1String("refuse"))) {
        QVERIFY(!result);
        QVERIFY(!result.error.isEmpty());
        if (sample.mustDo.contains(QLatin1String("encrypted")))
            QVERIFY(result.error.contains(QLatin1String("encrypted")));
        return;
    }
    QVERIFY2(result, qPrintable(result.error));
    const QString description = DescribeDocument(*result.document);
    for (int page = 0; page < result.document->GetPageCount(); ++page) {
        G_RenderRequest request;
        request.pageIndex = page;
        QVERIFY(!result.document->Renderer()->RenderPage(request).image.isNull());
    }
    if (!sample.mustDo.contains(QLatin1String("second page is empty")))
        return;
    QVERIFY(!description.contains(QLatin1String("text Second page")));
    QVERIFY(description.contains(QLatin1String("page 11 ")));
}

void TestOfdSamples::aCutFileNeverCrashes()
{
    const QByteArray whole = BytesOf(SamplePath(QStringLiteral("letter")));
    QVERIFY(whole.size() > 4096);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("cut.ofd"));
    for (int size = 0; size < whole.size(); size += 256) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(whole.left(size));
        file.close();
        const ofd::OpenResult result = ofd::OfdDocument::Open(path);
        QVERIFY(!result);
        QVERIFY(!result.error.isEmpty());
    }
}

void TestOfdSamples::flippedBytesNeverCrash()
{
    const QByteArray whole = BytesOf(SamplePath(QStringLiteral("letter")));
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("flipped.ofd"));
    int openedCount = 0;
    for (int at = 0; at < whole.size(); at += whole.size() / 150) {
        QByteArray bytes = whole;
        bytes[at] = char(bytes.at(at) ^ 0x5a);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const ofd::OpenResult result = ofd::OfdDocument::Open(path);
        QCOMPARE(bool(result), result.error.isEmpty());
        if (!result)
            continue;
        ++openedCount;
        DescribeDocument(*result.document);
        for (int page = 0; page < result.document->GetPageCount(); ++page) {
            G_RenderRequest request;
            request.pageIndex = page;
            request.pixelsPerMm = 1;
            QVERIFY(!result.document->Renderer()->RenderPage(request).image.isNull());
        }
    }
    QVERIFY(openedCount > 50); // most bytes belong to one part, and the document opens without it
}

void TestOfdSamples::ordinaryDocumentsOpenAndPaint_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("pageCount");
    QTest::newRow("tour") << QStringLiteral("tour") << 9;
    QTest::newRow("letter") << QStringLiteral("letter") << 2;
    QTest::newRow("invoice") << QStringLiteral("invoice") << 1;
    QTest::newRow("report") << QStringLiteral("report") << 1000;
}

void TestOfdSamples::ordinaryDocumentsOpenAndPaint()
{
    QFETCH(QString, name);
    QFETCH(int, pageCount);
    const auto document = Open(SamplePath(name));
    QVERIFY(document);
    QCOMPARE(document->GetPageCount(), pageCount);
    for (int page = 0; page < std::min(pageCount, 10); ++page) {
        G_RenderRequest request;
        request.pageIndex = page;
        const G_RenderResult result = document->Renderer()->RenderPage(request);
        QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
        QVERIFY(DarkPixels(result.image) > 500);
    }
}

TETO_TEST_MAIN(TestOfdSamples)

#include "test_ofd_samples.moc"
