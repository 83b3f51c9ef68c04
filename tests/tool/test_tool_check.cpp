#include <tests/ofd/document/ofd_file.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>
#include <tests/tool/tool_run.h>

#include <QJsonArray>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Samples that `check` must find something in, and what. Of the deviations not named here none is a problem: they are
// ways to write a document that need no working around.
struct Finding
{
    const char* sample;
    const char* kind;
};

constexpr Finding findings[] = {
    {"deviations/annotation_ids_duplicate", "duplicate-identifier"},
    {"deviations/dangling_color_space", "dangling-reference"},
    {"deviations/dangling_dest_page", "dangling-reference"},
    {"deviations/dangling_draw_param", "dangling-reference"},
    {"deviations/draw_param_is_font", "dangling-reference"},
    {"deviations/duplicate_names", "duplicate-identifier"},
    {"deviations/duplicate_unit_ids", "duplicate-identifier"},
    {"deviations/escaped_references", "misspelt-reference"},
    {"deviations/folder_in_two_cases", "misspelt-reference"},
    {"deviations/image_without_resource", "dangling-reference"},
    {"deviations/media_in_other_folder", "misspelt-reference"},
    {"deviations/missing_annotation_list", "missing-part"},
    {"deviations/missing_page_annotations", "missing-part"},
    {"deviations/missing_public_res", "missing-part"},
    {"deviations/missing_signature_list", "missing-part"},
    {"deviations/objects_without_id", "dangling-reference"}, // its tag still names the object
    {"deviations/path_case_differs", "misspelt-reference"},
    {"damaged/bomb", "limit"},
    {"damaged/bomb_understated", "limit"},
    {"damaged/broken_image", "bad-image"},
    {"damaged/check_sum_wrong", "wrong-checksum"},
    {"damaged/cyclic_composite", "cycle"},
    {"damaged/cyclic_draw_param", "cycle"},
    {"damaged/cyclic_template", "cycle"},
    {"damaged/deep_xml", "bad-xml"},
    {"damaged/doctype_in_page", "page-failed"},
    {"damaged/dot_dot_names", "missing-part"},
    {"damaged/entry_outside_file", "unreadable-part"},
    {"damaged/huge_delta_count", "bad-value"},
    {"damaged/huge_image", "bad-image"},
    {"damaged/huge_numbers", "bad-value"},
    {"damaged/missing_page", "page-failed"},
};

QByteArray KindFor(const QString& sample)
{
    for (const Finding& finding : findings) {
        if (sample == QLatin1String(finding.sample))
            return finding.kind;
    }
    return QByteArray();
}

// The problems of a kind; with an empty kind, all that are more than information.
QVector<QJsonObject> ProblemsOf(const ToolRun& run, const QByteArray& kind = {})
{
    QVector<QJsonObject> problems;
    for (const QJsonValue& value : run.Json()["problems"].toArray()) {
        const QJsonObject problem = value.toObject();
        const bool isWanted = kind.isEmpty() ? problem["severity"].toString() == QLatin1String("problem")
                                             : problem["kind"].toString() == QLatin1String(kind);
        if (isWanted)
            problems.append(problem);
    }
    return problems;
}

} // namespace

class TestToolCheck : public QObject
{
    Q_OBJECT

private slots:
    void deviationsAreSoundOrTheirDamageIsFound_data() { ListSamples(QStringLiteral("deviations")); }
    void deviationsAreSoundOrTheirDamageIsFound();
    void damagedFilesNeverCrashAndTheirDamageIsFound_data() { ListSamples(QStringLiteral("damaged")); }
    void damagedFilesNeverCrashAndTheirDamageIsFound();
    void featuresAreCheckedToTheirEnd_data() { ListSamples(QStringLiteral("features")); }
    void featuresAreCheckedToTheirEnd();
    void changedBytesNeverCrashTheCheck();
    void ordinaryDocumentsAreSound();
    void aProblemTellsItsPartAndItsPlace();
    void damageOfAPartThatNothingRefersToIsFound();
    void manyProblemsOfOneKindAreCounted();
    void linesTellTheSameAsJson();
    void aLineNamesItsPartOnce();

private:
    static void ListSamples(const QString& folder);
};

void TestToolCheck::ListSamples(const QString& folder)
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("isRefused");
    for (const SampleFile& sample : SamplesOf(folder)) {
        const bool isRefused = sample.mustDo.startsWith(QStringLiteral("refuse"));
        QTest::newRow(qPrintable(sample.name)) << folder + QLatin1Char('/') + sample.name << sample.path << isRefused;
    }
}

void TestToolCheck::deviationsAreSoundOrTheirDamageIsFound()
{
    QFETCH(const QString, name);
    QFETCH(const QString, path);
    const ToolRun run = RunTool({"check", path, "--json"});
    const QByteArray kind = KindFor(name);
    QVERIFY2(run.exitCode == (kind.isEmpty() ? 0 : 1), run.out + run.errors);
    QCOMPARE(run.Json()["isSound"].toBool(kind.isEmpty() ? false : true), kind.isEmpty());
    if (kind.isEmpty())
        QVERIFY(ProblemsOf(run).isEmpty());
    else
        QVERIFY2(!ProblemsOf(run, kind).isEmpty(), run.out);
}

void TestToolCheck::damagedFilesNeverCrashAndTheirDamageIsFound()
{
    QFETCH(const QString, name);
    QFETCH(const QString, path);
    QFETCH(const bool, isRefused);
    const ToolRun run = RunTool({"check", path, "--json"});
    if (isRefused) {
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.errors.startsWith("tetotool: "));
        return;
    }
    const QByteArray kind = KindFor(name);
    QVERIFY2(run.exitCode == 0 || run.exitCode == 1, run.errors);
    QCOMPARE(run.Json()["isSound"].toBool(), run.exitCode == 0);
    if (!kind.isEmpty())
        QVERIFY2(run.exitCode == 1 && !ProblemsOf(run, kind).isEmpty(), run.out);
}

void TestToolCheck::featuresAreCheckedToTheirEnd()
{
    QFETCH(const QString, path);
    const ToolRun run = RunTool({"check", path, "--json"});
    QVERIFY2(run.exitCode == 0 || run.exitCode == 1, run.errors);
    QCOMPARE(ProblemsOf(run).isEmpty(), run.exitCode == 0);
}

void TestToolCheck::changedBytesNeverCrashTheCheck()
{
    const QTemporaryDir folder;
    const QByteArray whole = BytesOf(SamplePath(QStringLiteral("deviations/stored_parts"))); // each byte is one of XML
    QVERIFY(!whole.isEmpty());
    QRandomGenerator random(20261121);
    int found = 0;
    for (int round = 0; round < 40; ++round) {
        QByteArray bytes = whole;
        for (int i = 0; i < 5; ++i)
            bytes[random.bounded(bytes.size())] = char(random.bounded(256));
        QFile file(folder.filePath(QStringLiteral("changed.ofd")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const ToolRun run = RunTool({"check", file.fileName()});
        QVERIFY2(run.exitCode >= 0 && run.exitCode <= 2,
                 qPrintable(QString::number(round) + QString::fromUtf8(run.errors)));
        found += run.exitCode != 0;
    }
    QVERIFY(found > 20); // the checksums alone tell of most
}

void TestToolCheck::ordinaryDocumentsAreSound()
{
    for (const char* name : {"tour", "invoice", "letter"}) {
        const ToolRun run = RunTool({"check", SamplePath(QString::fromLatin1(name)), "--json"});
        QVERIFY2(run.exitCode == 0, run.out);
    }
    const ToolRun lines = RunTool({"check", SamplePath(QStringLiteral("tour"))});
    QCOMPARE(lines.Lines().last(), QStringLiteral("sound"));
}

void TestToolCheck::aProblemTellsItsPartAndItsPlace()
{
    const QTemporaryDir folder;
    const OfdFile file = OfdFile::WithPage("<ofd:PathObject ID=\"77\" Boundary=\"0 0 10 10\" CTM=\"1 0 0 1\">"
                                           "<ofd:AbbreviatedData>M 0 0 L 5 5</ofd:AbbreviatedData></ofd:PathObject>");
    const ToolRun run = RunTool({"check", file.Write(folder.filePath(QStringLiteral("bad.ofd"))), "--json"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(ProblemsOf(run).size(), 1);
    const QJsonObject problem = ProblemsOf(run).first();
    QCOMPARE(problem["kind"].toString(), QStringLiteral("bad-value"));
    QCOMPARE(problem["objectId"].toInt(), 77);
    const QByteArray part = file.Part(problem["part"].toString());
    QVERIFY(part.mid(problem["offset"].toInt(-1)).startsWith("<ofd:PathObject ID=\"77\""));
}

void TestToolCheck::damageOfAPartThatNothingRefersToIsFound()
{
    const QTemporaryDir folder;
    const QByteArray marked = "a part that nobody refers to, and of which a byte changes";
    const QString path = OfdFile::WithPage("")
                             .Set(QStringLiteral("Doc_0/loose.txt"), marked)
                             .Write(folder.filePath(QStringLiteral("loose.ofd")));
    QCOMPARE(RunTool({"check", path}).exitCode, 0);
    QByteArray bytes = BytesOf(path);
    // The checksum in the directory: 16 bytes into the record whose name this is, the last time it stands in the file.
    const int name = bytes.lastIndexOf("Doc_0/loose.txt");
    QVERIFY(name > 46 && bytes.mid(name - 46, 4) == QByteArray("PK\x01\x02"));
    bytes[name - 46 + 16] = char(bytes.at(name - 46 + 16) ^ 1);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    const ToolRun run = RunTool({"check", path, "--json"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(ProblemsOf(run, "wrong-checksum").first()["part"].toString(), QStringLiteral("Doc_0/loose.txt"));
}

void TestToolCheck::manyProblemsOfOneKindAreCounted()
{
    QByteArray objects;
    for (int i = 1; i <= 100; ++i)
        objects += "<ofd:PathObject ID=\"" + QByteArray::number(i) +
                   "\" Boundary=\"none\"><ofd:AbbreviatedData>M 0 0 L 5 5</ofd:AbbreviatedData></ofd:PathObject>";
    const QTemporaryDir folder;
    const QString path = OfdFile::WithPage(objects).Write(folder.filePath(QStringLiteral("many.ofd")));
    const ToolRun run = RunTool({"check", path, "--json"});
    const QVector<QJsonObject> problems = ProblemsOf(run, "bad-value");
    QVERIFY(problems.size() < 100);
    QCOMPARE(problems.size() + problems.last()["more"].toInt(), 100);
    QVERIFY(RunTool({"check", path}).out.contains("more\n"));
}

void TestToolCheck::linesTellTheSameAsJson()
{
    const QString path = SamplePath(QStringLiteral("deviations/dangling_draw_param"));
    const QJsonArray problems = RunTool({"check", path, "--json"}).Json()["problems"].toArray();
    const QStringList lines = RunTool({"check", path}).Lines();
    QCOMPARE(lines.size(), problems.size() + 1);
    QCOMPARE(lines.last(), QStringLiteral("problems worked around"));
    for (int i = 0; i < problems.size(); ++i) {
        const QStringList fields = lines.at(i).split(QLatin1Char('\t'));
        QCOMPARE(fields.size(), 4);
        QCOMPARE(fields.at(0), problems.at(i).toObject()["severity"].toString());
        QCOMPARE(fields.at(1), problems.at(i).toObject()["kind"].toString());
        QVERIFY(fields.at(3).startsWith(problems.at(i).toObject()["text"].toString()));
    }
}

void TestToolCheck::aLineNamesItsPartOnce()
{
    const QString path = SamplePath(QStringLiteral("damaged/deep_xml"));
    const QStringList lines = RunTool({"check", path}).Lines();
    int named = 0;
    for (const QString& line : lines) {
        const int count = line.count(QStringLiteral("Doc_0/Pages/Page_1/Content.xml"));
        QVERIFY2(count <= 1, qPrintable(line));
        named += count;
    }
    QCOMPARE(named, 2); // the part that cannot be read, and the page that fails for it
    // In JSON a sentence says all by itself.
    const QString text = ProblemsOf(RunTool({"check", path, "--json"}), "bad-xml").first()["text"].toString();
    QVERIFY2(text.contains(QStringLiteral("\"Doc_0/Pages/Page_1/Content.xml\"")), qPrintable(text));
}

TETO_TEST_MAIN(TestToolCheck)
#include "test_tool_check.moc"
