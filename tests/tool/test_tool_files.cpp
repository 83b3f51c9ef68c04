#include <frame/document/page_renderer.h>
#include <ofd/ofd_document.h>
#include <tests/ofd/document/ofd_file.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>
#include <tests/tool/tool_run.h>

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

namespace {

QString PlainFile()
{
    return SamplePath(QStringLiteral("deviations/annotation_readable"));
}

QImage RenderedHere(const QString& path, int pageIndex, double dpi)
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(path, true);
    if (!opened)
        return QImage();
    G_RenderRequest request;
    request.pageIndex = pageIndex;
    request.pixelsPerMm = dpi / 25.4;
    return opened.document->Renderer()->RenderPage(request).image.convertToFormat(QImage::Format_RGB32);
}

} // namespace

Q_DECLARE_METATYPE(SampleFile)

class TestToolFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { folder = std::make_unique<QTemporaryDir>(); }
    void aRenderedPageIsThePictureOfTheRenderer_data();
    void aRenderedPageIsThePictureOfTheRenderer();
    void aPictureTellsItsResolution();
    void aPictureGoesToTheStandardOutput();
    void aPageThatCannotBeReadIsToldAndIsABlankSheet();
    void aPictureThatIsTooLargeIsRefused();
    void aPictureThatCannotBeWrittenIsTold();
    void aPictureNeverReplacesTheDocument();
    void resavingChangesNoByte_data();
    void resavingChangesNoByte();
    void resavingReplacesWhatIsThere();
    void resavingInPlaceChangesNoByte();
    void resavingWhereNothingCanBeWrittenIsTold();
    void aReaderThatGoesAwayIsTold();
    void aFullDiskBehindTheOutputIsTold();
    void filesThatCannotGrowAreToldAndLeaveNothingBehind_data();
    void filesThatCannotGrowAreToldAndLeaveNothingBehind();

private:
    QString Path(const QString& name) const { return folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> folder;
};

void TestToolFiles::aRenderedPageIsThePictureOfTheRenderer_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("page");
    QTest::addColumn<double>("dpi");
    QTest::newRow("plain") << PlainFile() << 1 << 96.0;
    QTest::newRow("fine") << PlainFile() << 2 << 200.0;
    QTest::newRow("tour 1") << SamplePath(QStringLiteral("tour")) << 1 << 96.0;
    QTest::newRow("tour 3") << SamplePath(QStringLiteral("tour")) << 3 << 72.5;
    QTest::newRow("invoice") << SamplePath(QStringLiteral("invoice")) << 1 << 96.0;
    QTest::newRow("signed") << SamplePath(QStringLiteral("deviations/signed")) << 1 << 96.0;
}

void TestToolFiles::aRenderedPageIsThePictureOfTheRenderer()
{
    QFETCH(const QString, path);
    QFETCH(const int, page);
    QFETCH(const double, dpi);
    const QString png = Path("page.png");
    const ToolRun run =
        RunTool({"render", path, "--page", QString::number(page), "--dpi", QString::number(dpi), "-o", png, "--json"});
    QVERIFY2(run.exitCode == 0, run.errors);
    const QImage expected = RenderedHere(path, page - 1, dpi);
    const QImage picture = QImage(png).convertToFormat(QImage::Format_RGB32);
    QVERIFY(!expected.isNull());
    QCOMPARE(picture.size(), expected.size());
    QVERIFY(picture == expected);
    QCOMPARE(run.Json()["widthPx"].toInt(), expected.width());
    QCOMPARE(run.Json()["heightPx"].toInt(), expected.height());
    QCOMPARE(run.Json()["page"].toInt(), page);
}

void TestToolFiles::aPictureTellsItsResolution()
{
    const QString png = Path("page.png");
    QCOMPARE(RunTool({"render", PlainFile(), "--page", "1", "--dpi", "254", "-o", png}).exitCode, 0);
    const QImage picture(png);
    QCOMPARE(picture.dotsPerMeterX(), 10000);
    QCOMPARE(picture.size(), QSize(2100, 2970));
}

void TestToolFiles::aPictureGoesToTheStandardOutput()
{
    const ToolRun run = RunTool({"render", PlainFile(), "--page", "1", "-o", "-"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(QImage::fromData(run.out, "PNG").convertToFormat(QImage::Format_RGB32) == RenderedHere(PlainFile(), 0, 96));
    QCOMPARE(RunTool({"render", PlainFile(), "--page", "1", "-o", "-", "--json"}).exitCode, 64);
}

void TestToolFiles::aPageThatCannotBeReadIsToldAndIsABlankSheet()
{
    const QString png = Path("page.png");
    const ToolRun run =
        RunTool({"render", SamplePath(QStringLiteral("damaged/missing_page")), "--page", "2", "-o", png});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.errors.contains("Page 2"));
    QVERIFY(!QImage(png).isNull());
    QCOMPARE(RunTool({"render", PlainFile(), "--page", "3", "-o", Path("no.png")}).exitCode, 1);
    QVERIFY(!QFileInfo::exists(Path("no.png")));
}

void TestToolFiles::aPictureThatIsTooLargeIsRefused()
{
    const ToolRun run = RunTool({"render", PlainFile(), "--page", "1", "--dpi", "4800", "-o", Path("huge.png")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.errors.contains("too large"));
    QVERIFY(!QFileInfo::exists(Path("huge.png")));
}

void TestToolFiles::aPictureThatCannotBeWrittenIsTold()
{
    const ToolRun run = RunTool({"render", PlainFile(), "--page", "1", "-o", Path("no/such/folder.png")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.contains("folder.png"));
}

void TestToolFiles::aPictureNeverReplacesTheDocument()
{
    QVERIFY(QFile::copy(PlainFile(), Path("shown.ofd")));
    QVERIFY(QFile::link(Path("shown.ofd"), Path("link.png")));
    for (const QString& target : {Path("shown.ofd"), Path("./shown.ofd"), Path("link.png")}) {
        const ToolRun run = RunTool({"render", Path("shown.ofd"), "--page", "1", "-o", target});
        QCOMPARE(run.exitCode, 64);
        QVERIFY(run.errors.contains("would replace the document"));
        QCOMPARE(BytesOf(Path("shown.ofd")), BytesOf(PlainFile()));
    }
}

void TestToolFiles::resavingChangesNoByte_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("opens");
    for (const char* name : {"tour", "invoice", "letter", "report"})
        QTest::newRow(name) << SamplePath(QString::fromLatin1(name)) << true;
    for (const char* group : {"features", "deviations", "damaged"}) {
        for (const SampleFile& sample : SamplesOf(QString::fromLatin1(group))) {
            const bool opens = sample.mustDo.startsWith(QStringLiteral("open")) || QByteArray(group) != "damaged";
            QTest::newRow(qPrintable(sample.name)) << sample.path << opens;
        }
    }
}

void TestToolFiles::resavingChangesNoByte()
{
    QFETCH(const QString, path);
    QFETCH(const bool, opens);
    const QByteArray before = BytesOf(path);
    const ToolRun run = RunTool({"resave", path, Path("copy.ofd")});
    QCOMPARE(run.exitCode, opens ? 0 : 2);
    QCOMPARE(BytesOf(path), before);
    if (opens)
        QVERIFY(BytesOf(Path("copy.ofd")) == before);
    else
        QVERIFY(!QFileInfo::exists(Path("copy.ofd")));
    QVERIFY(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).size() <= 1); // nothing else is left behind
}

void TestToolFiles::resavingReplacesWhatIsThere()
{
    QFile old(Path("copy.ofd"));
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    const ToolRun run = RunTool({"resave", PlainFile(), Path("copy.ofd"), "--json"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(BytesOf(Path("copy.ofd")) == BytesOf(PlainFile()));
    QCOMPARE(run.Json()["bytes"].toInt(), BytesOf(PlainFile()).size());
    QCOMPARE(run.Json()["output"].toString(), Path("copy.ofd"));
}

void TestToolFiles::resavingInPlaceChangesNoByte()
{
    QVERIFY(QFile::copy(PlainFile(), Path("same.ofd")));
    QCOMPARE(RunTool({"resave", Path("same.ofd"), Path("same.ofd")}).exitCode, 0);
    QVERIFY(BytesOf(Path("same.ofd")) == BytesOf(PlainFile()));
}

void TestToolFiles::resavingWhereNothingCanBeWrittenIsTold()
{
    const ToolRun run = RunTool({"resave", PlainFile(), Path("no/such/folder.ofd")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.contains("folder.ofd"));
}

void TestToolFiles::aReaderThatGoesAwayIsTold()
{
    const QString report = SamplePath(QStringLiteral("report"));
    const ToolRun run = RunInShell(QStringLiteral("'%1' list outline --json '") + report +
                                   QStringLiteral("' | true; exit ${PIPESTATUS[0]}"));
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.contains("tetotool: The output cannot be written: "));
}

void TestToolFiles::aFullDiskBehindTheOutputIsTold()
{
    const ToolRun run = RunInShell(QStringLiteral("'%1' info '") + PlainFile() + QStringLiteral("' > /dev/full"));
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.contains("No space left"));
}

void TestToolFiles::filesThatCannotGrowAreToldAndLeaveNothingBehind_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::newRow("render") << "render '%2' --page 1 -o '%3/page.png'";
    QTest::newRow("extract") << "extract '%2' --all -d '%3'";
    QTest::newRow("resave") << "resave '%2' '%3/copy.ofd'";
}

void TestToolFiles::filesThatCannotGrowAreToldAndLeaveNothingBehind()
{
    QFETCH(const QString, arguments);
    const QString call = QString(arguments).replace("%2", PlainFile()).replace("%3", folder->path());
    const ToolRun run = RunInShell(QStringLiteral("ulimit -f 0; '%1' ") + call);
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.startsWith("tetotool: "));
    QVERIFY(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden | QDir::System).isEmpty());
}

TETO_TEST_MAIN(TestToolFiles)
#include "test_tool_files.moc"
