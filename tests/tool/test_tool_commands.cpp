#include <tests/ofd/document/ofd_file.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>
#include <tests/tool/tool_run.h>

#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Two pages, an outline of two entries, a bookmark, a stamp with a remark, two attachments, three tags, one template.
QString PlainFile()
{
    return SamplePath(QStringLiteral("deviations/annotation_readable"));
}

QJsonArray Items(const QString& kind, const QString& path)
{
    return RunTool({QStringLiteral("list"), kind, path, QStringLiteral("--json")})
        .Json()[QStringLiteral("items")]
        .toArray();
}

QJsonValue At(const QJsonArray& items, int position, const char* key)
{
    return items.at(position).toObject()[QLatin1String(key)];
}

} // namespace

class TestToolCommands : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(folder.isValid()); }
    void everyCommandTellsItsHelp_data();
    void everyCommandTellsItsHelp();
    void theProgramListsItsCommands();
    void wrongUsageIsToldOnTheErrorsOnly_data();
    void wrongUsageIsToldOnTheErrorsOnly();
    void whatCannotBeOpenedEndsWithTwo_data();
    void whatCannotBeOpenedEndsWithTwo();
    void infoTellsWhatTheDocumentHas();
    void infoKeepsEachFactOnOneLine();
    void theOutlineIsListedWithItsPages();
    void bookmarksAreListedWithTheirPlaces();
    void tagsAreListedWithTheirObjects();
    void annotationsAreListedWithTheirPages();
    void attachmentsAreListedWithTheHiddenOnes();
    void layersAndTemplatesAreListedByPage();
    void aListOfNothingEndsWithOne();
    void textComesPageByPage();
    void textOfAPageWithoutAnyEndsWithOne();
    void textThatIsNotWholeEndsWithOne();
    void aTextIsFoundOnItsPages();
    void caseAndWholeWordsCount();
    void aTextThatIsNowhereEndsWithOne();
    void controlCharactersDoNotReachTheTerminal();

private:
    QTemporaryDir folder;
};

void TestToolCommands::everyCommandTellsItsHelp_data()
{
    QTest::addColumn<QString>("command");
    for (const char* command : {"info", "list", "text", "find", "render", "extract", "resave", "check"})
        QTest::newRow(command) << QString::fromLatin1(command);
}

void TestToolCommands::everyCommandTellsItsHelp()
{
    QFETCH(const QString, command);
    const ToolRun run = RunTool({command, QStringLiteral("--help")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.out.contains("--json"));
    QVERIFY(run.out.contains(command.toUtf8()));
    QVERIFY(run.errors.isEmpty());
}

void TestToolCommands::theProgramListsItsCommands()
{
    const ToolRun run = RunTool({QStringLiteral("--help")});
    QCOMPARE(run.exitCode, 0);
    for (const char* command : {"info", "list", "text", "find", "render", "extract", "resave", "check"})
        QVERIFY(run.out.contains("\n  " + QByteArray(command) + ' '));
    QVERIFY(RunTool({QStringLiteral("--version")}).out.startsWith("tetotool "));
}

void TestToolCommands::wrongUsageIsToldOnTheErrorsOnly_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no command") << QStringList();
    QTest::newRow("unknown command") << QStringList{"paint"};
    QTest::newRow("unknown option") << QStringList{"info", "--colour", PlainFile()};
    QTest::newRow("no file") << QStringList{"info"};
    QTest::newRow("two files") << QStringList{"info", PlainFile(), PlainFile()};
    QTest::newRow("unknown kind") << QStringList{"list", "fonts", PlainFile()};
    QTest::newRow("page zero") << QStringList{"text", PlainFile(), "--page", "0"};
    QTest::newRow("page by name") << QStringList{"text", PlainFile(), "--page", "one"};
    QTest::newRow("nothing to find") << QStringList{"find", PlainFile(), ""};
    QTest::newRow("render without a file") << QStringList{"render", PlainFile(), "--page", "1"};
    QTest::newRow("render without a page") << QStringList{"render", PlainFile(), "-o", "/tmp/no.png"};
    QTest::newRow("render with no dpi") << QStringList{"render", PlainFile(), "--page", "1", "--dpi", "0", "-o", "x"};
    QTest::newRow("render over the document") << QStringList{"render", PlainFile(), "--page", "1", "-o", PlainFile()};
    QTest::newRow("extract without a folder") << QStringList{"extract", PlainFile(), "--all"};
    QTest::newRow("extract nothing") << QStringList{"extract", PlainFile(), "-d", "x"};
    QTest::newRow("extract all and one") << QStringList{"extract", PlainFile(), "--all", "note", "-d", "x"};
    QTest::newRow("resave nowhere") << QStringList{"resave", PlainFile()};
}

void TestToolCommands::wrongUsageIsToldOnTheErrorsOnly()
{
    QFETCH(const QStringList, arguments);
    const ToolRun run = RunTool(arguments);
    QCOMPARE(run.exitCode, 64);
    QVERIFY(run.out.isEmpty());
    QVERIFY(run.errors.startsWith("tetotool: "));
}

void TestToolCommands::whatCannotBeOpenedEndsWithTwo_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << folder.filePath(QStringLiteral("missing.ofd"));
    QTest::newRow("folder") << folder.path();
    for (const char* name : {"empty", "not_a_zip", "truncated", "encrypted", "no_ofd_xml", "no_doc_root", "no_pages"})
        QTest::newRow(name) << SamplePath(QStringLiteral("damaged/") + QString::fromLatin1(name));
}

void TestToolCommands::whatCannotBeOpenedEndsWithTwo()
{
    QFETCH(const QString, path);
    const QString out = folder.filePath(QStringLiteral("out"));
    const QList<QStringList> calls{{"info", path},
                                   {"list", "outline", path},
                                   {"text", path},
                                   {"find", path, "x"},
                                   {"render", path, "--page", "1", "-o", out},
                                   {"extract", path, "--all", "-d", out},
                                   {"resave", path, out},
                                   {"check", path, "--json"}};
    for (const QStringList& call : calls) {
        const ToolRun run = RunTool(call);
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.out.isEmpty());
        QVERIFY(run.errors.startsWith("tetotool: " + path.toUtf8() + ": "));
        QVERIFY(!QFileInfo::exists(out));
    }
}

void TestToolCommands::infoTellsWhatTheDocumentHas()
{
    const ToolRun run = RunTool({QStringLiteral("info"), PlainFile(), QStringLiteral("--json")});
    QCOMPARE(run.exitCode, 0);
    const QJsonObject facts = run.Json();
    QCOMPARE(facts["file"].toString(), PlainFile());
    QCOMPARE(facts["bytes"].toDouble(), double(QFileInfo(PlainFile()).size()));
    QCOMPARE(facts["title"].toString(), QStringLiteral("annotation_readable"));
    QCOMPARE(facts["formatVersion"].toString(), QStringLiteral("1.0"));
    QCOMPARE(facts["author"].toString(), QStringLiteral("tetobaisfla"));
    QCOMPARE(facts["creationDate"].toString(), QStringLiteral("2024-05-20"));
    QVERIFY(facts["keywords"].isString());
    QCOMPARE(facts["pages"].toInt(), 2);
    QCOMPARE(facts["templates"].toInt(), 1);
    QCOMPARE(facts["outlineEntries"].toInt(), 2);
    QCOMPARE(facts["bookmarks"].toInt(), 1);
    QCOMPARE(facts["tags"].toInt(), 3);
    QCOMPARE(facts["attachments"].toInt(), 2);
    QCOMPARE(facts["isSigned"].toBool(true), false);
    QCOMPARE(facts["mayEdit"].toBool(false), true);
    const QJsonArray sizes = facts["pageSizes"].toArray();
    QCOMPARE(sizes.size(), 1);
    QCOMPARE(At(sizes, 0, "first").toInt(), 1);
    QCOMPARE(At(sizes, 0, "last").toInt(), 2);
    QCOMPARE(At(sizes, 0, "widthMm").toDouble(), 210.0);
    QCOMPARE(At(sizes, 0, "heightMm").toDouble(), 297.0);
    const ToolRun isSigned =
        RunTool({QStringLiteral("info"), SamplePath(QStringLiteral("deviations/signed")), QStringLiteral("--json")});
    QCOMPARE(isSigned.Json()["isSigned"].toBool(false), true);
}

void TestToolCommands::infoKeepsEachFactOnOneLine()
{
    const ToolRun run = RunTool({QStringLiteral("info"), PlainFile()});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.Lines().contains(QStringLiteral("pages: 2")));
    QVERIFY(run.Lines().contains(QStringLiteral("isSigned: no")));
    QVERIFY(run.Lines().contains(QStringLiteral("pageSizes: 210 x 297 mm (pages 1-2)")));
}

void TestToolCommands::theOutlineIsListedWithItsPages()
{
    const QJsonArray items = Items(QStringLiteral("outline"), PlainFile());
    QCOMPARE(items.size(), 2);
    QCOMPARE(At(items, 0, "title").toString(), QStringLiteral("First page"));
    QCOMPARE(At(items, 0, "level").toInt(), 1);
    QCOMPARE(At(items, 0, "page").toInt(), 1);
    QCOMPARE(At(items, 1, "page").toInt(), 2);
    QCOMPARE(At(items, 1, "type").toString(), QStringLiteral("XYZ"));
    QCOMPARE(At(items, 1, "top").toDouble(), 10.0);
    const ToolRun run = RunTool({QStringLiteral("list"), QStringLiteral("outline"), PlainFile()});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.Lines(), QStringList({QStringLiteral("First page\tpage 1"), QStringLiteral("Second page\tpage 2")}));
    const QJsonArray dangling =
        Items(QStringLiteral("outline"), SamplePath(QStringLiteral("deviations/dangling_dest_page")));
    bool leadsNowhere = false;
    for (int i = 0; i < dangling.size(); ++i)
        leadsNowhere |= At(dangling, i, "page").toInt(-1) == 0;
    QVERIFY(leadsNowhere);
}

void TestToolCommands::bookmarksAreListedWithTheirPlaces()
{
    const QJsonArray items = Items(QStringLiteral("bookmarks"), PlainFile());
    QCOMPARE(items.size(), 1);
    QCOMPARE(At(items, 0, "name").toString(), QStringLiteral("Second page"));
    QCOMPARE(At(items, 0, "page").toInt(), 2);
    QCOMPARE(At(items, 0, "pageId").toInt(), 11);
    QCOMPARE(At(items, 0, "top").toDouble(), 20.0);
}

void TestToolCommands::tagsAreListedWithTheirObjects()
{
    const QJsonArray items = Items(QStringLiteral("tags"), PlainFile());
    QCOMPARE(items.size(), 3);
    QCOMPARE(At(items, 0, "name").toString(), QStringLiteral("Sample"));
    QCOMPARE(At(items, 0, "attributes").toArray(), QJsonArray({QStringLiteral("version=1.0")}));
    QCOMPARE(At(items, 1, "level").toInt(), 2);
    const QJsonObject reference = At(items, 1, "objects").toArray().at(0).toObject();
    QCOMPARE(reference["pageId"].toInt(), 6);
    QCOMPARE(reference["objectIds"].toArray(), QJsonArray({8}));
    const ToolRun run = RunTool({QStringLiteral("list"), QStringLiteral("tags"), PlainFile()});
    QVERIFY(run.Lines().at(1).startsWith(QStringLiteral("  Name\t6:8")));
}

void TestToolCommands::annotationsAreListedWithTheirPages()
{
    const QJsonArray items = Items(QStringLiteral("annotations"), PlainFile());
    QVERIFY(items.size() >= 1);
    bool isFound = false;
    for (int i = 0; i < items.size(); ++i) {
        if (At(items, i, "remark").toString() != QLatin1String("A stamp"))
            continue;
        isFound = true;
        QCOMPARE(At(items, i, "page").toInt(), 1);
        QCOMPARE(At(items, i, "type").toString(), QStringLiteral("Stamp"));
        const QJsonObject box = At(items, i, "boundaryMm").toObject();
        QCOMPARE(box["left"].toDouble(), 150.0);
        QCOMPARE(box["bottom"].toDouble(), 40.0);
    }
    QVERIFY(isFound);
}

void TestToolCommands::attachmentsAreListedWithTheHiddenOnes()
{
    const QJsonArray items = Items(QStringLiteral("attachments"), PlainFile());
    QCOMPARE(items.size(), 2);
    QCOMPARE(At(items, 0, "name").toString(), QStringLiteral("note"));
    QCOMPARE(At(items, 0, "format").toString(), QStringLiteral("txt"));
    QCOMPARE(At(items, 0, "visible").toBool(false), true);
    QCOMPARE(At(items, 1, "name").toString(), QStringLiteral("machine"));
    QCOMPARE(At(items, 1, "visible").toBool(true), false);
    const ToolRun run = RunTool({QStringLiteral("list"), QStringLiteral("attachments"), PlainFile()});
    QVERIFY(run.Lines().at(1).endsWith(QStringLiteral("\thidden")));
}

void TestToolCommands::layersAndTemplatesAreListedByPage()
{
    const QJsonArray items = Items(QStringLiteral("layers"), PlainFile());
    QCOMPARE(items.size(), 4); // a template and a layer on each page
    QCOMPARE(At(items, 0, "template").toInt(), 3);
    QCOMPARE(At(items, 0, "kind").toString(), QStringLiteral("Background"));
    QCOMPARE(At(items, 1, "layer").toInt(), 1);
    QCOMPARE(At(items, 1, "kind").toString(), QStringLiteral("Body"));
    QCOMPARE(At(items, 3, "page").toInt(), 2);
}

void TestToolCommands::aListOfNothingEndsWithOne()
{
    const QString path = OfdFile::WithPage("").Write(folder.filePath(QStringLiteral("bare.ofd")));
    for (const char* kind : {"outline", "bookmarks", "tags", "annotations", "attachments"}) {
        const ToolRun run = RunTool({QStringLiteral("list"), QString::fromLatin1(kind), path});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.out.isEmpty());
        QVERIFY(Items(QString::fromLatin1(kind), path).isEmpty());
    }
}

void TestToolCommands::textComesPageByPage()
{
    const ToolRun whole = RunTool({QStringLiteral("text"), PlainFile()});
    QCOMPARE(whole.exitCode, 0);
    const QList<QByteArray> pages = whole.out.split('\f');
    QCOMPARE(pages.size(), 3); // the last is what stands behind the last form feed: nothing
    QCOMPARE(pages.at(0), QByteArray("annotation_readable\n"));
    QVERIFY(pages.at(1).startsWith("Second page\n"));
    QVERIFY(pages.at(2).isEmpty());
    const ToolRun second =
        RunTool({QStringLiteral("text"), PlainFile(), QStringLiteral("--page"), QStringLiteral("2")});
    QCOMPARE(second.out, pages.at(1) + '\f');
    const QJsonArray array =
        RunTool({QStringLiteral("text"), PlainFile(), QStringLiteral("--json")}).Json()["pages"].toArray();
    QCOMPARE(array.size(), 2);
    QCOMPARE(At(array, 0, "lines").toArray(), QJsonArray({QStringLiteral("annotation_readable")}));
    const ToolRun beyond =
        RunTool({QStringLiteral("text"), PlainFile(), QStringLiteral("--page"), QStringLiteral("3")});
    QCOMPARE(beyond.exitCode, 1);
    QVERIFY(beyond.errors.contains("no page 3"));
}

void TestToolCommands::textOfAPageWithoutAnyEndsWithOne()
{
    const QString path = OfdFile::WithPage("").Write(folder.filePath(QStringLiteral("blank.ofd")));
    const ToolRun run = RunTool({QStringLiteral("text"), path});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.out, QByteArray("\f"));
}

void TestToolCommands::textThatIsNotWholeEndsWithOne()
{
    const QString path = SamplePath(QStringLiteral("damaged/deep_xml")); // its second page cannot be read
    const ToolRun whole = RunTool({QStringLiteral("text"), path});
    QCOMPARE(whole.exitCode, 1);
    QVERIFY(whole.out.split('\f').first().size() > 1); // what can be read comes
    QCOMPARE(whole.errors, QByteArray("tetotool: Page 2 cannot be read; its text is left out.\n"));
    QCOMPARE(RunTool({QStringLiteral("text"), path, QStringLiteral("--page"), QStringLiteral("1")}).exitCode, 0);
}

void TestToolCommands::aTextIsFoundOnItsPages()
{
    const ToolRun run = RunTool({QStringLiteral("find"), PlainFile(), QStringLiteral("second page")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.Lines().at(0).startsWith(QStringLiteral("page 2\t")));
    const QJsonArray matches =
        RunTool({QStringLiteral("find"), PlainFile(), QStringLiteral("SECOND"), QStringLiteral("--json")})
            .Json()["matches"]
            .toArray();
    QCOMPARE(matches.size(), 1);
    QCOMPARE(At(matches, 0, "page").toInt(), 2);
    QCOMPARE(At(matches, 0, "text").toString(), QStringLiteral("Second"));
    const QJsonObject rect = At(matches, 0, "rectsMm").toArray().at(0).toObject();
    QVERIFY(qAbs(rect["left"].toDouble() - 20) < 1);
    QVERIFY(rect["right"].toDouble() > rect["left"].toDouble() + 5);
    QVERIFY(rect["top"].toDouble() > 20 && rect["bottom"].toDouble() < 35);
}

void TestToolCommands::caseAndWholeWordsCount()
{
    QCOMPARE(RunTool({"find", PlainFile(), "second", "--case"}).exitCode, 1);
    QCOMPARE(RunTool({"find", PlainFile(), "Second", "--case"}).exitCode, 0);
    QCOMPARE(RunTool({"find", PlainFile(), "Secon", "--word"}).exitCode, 1);
    QCOMPARE(RunTool({"find", PlainFile(), "Second", "--word"}).exitCode, 0);
}

void TestToolCommands::aTextThatIsNowhereEndsWithOne()
{
    const ToolRun run = RunTool({QStringLiteral("find"), PlainFile(), QStringLiteral("nowhere to be found")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.out.isEmpty());
}

void TestToolCommands::controlCharactersDoNotReachTheTerminal()
{
    const QByteArray outline = "<ofd:Outlines><ofd:OutlineElem Title=\"a&#x1b;b&#x9b;c&#10;d\"/></ofd:Outlines>";
    const QString path = OfdFile::WithPage("").Tail(outline).Write(folder.filePath(QStringLiteral("escape.ofd")));
    const ToolRun run = RunTool({QStringLiteral("list"), QStringLiteral("outline"), path});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.Lines().size(), 1);
    QVERIFY(!run.out.contains('\x1b'));
    QVERIFY(run.out.startsWith("a b c d\t"));
}

TETO_TEST_MAIN(TestToolCommands)
#include "test_tool_commands.moc"
