#include <tests/ofd/document/ofd_file.h>
#include <tests/support/test_main.h>
#include <tests/tool/tool_run.h>

#include <QDate>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QJsonObject Info(const QString& path)
{
    return RunTool({QStringLiteral("info"), path, QStringLiteral("--json")}).Json();
}

QJsonObject FirstItem(const QString& kind, const QString& path)
{
    const QJsonObject answer = RunTool({QStringLiteral("list"), kind, path, QStringLiteral("--json")}).Json();
    return answer[QStringLiteral("items")].toArray().at(0).toObject();
}

// A page with an identifier beyond what an int holds, and everything that may point at it.
OfdFile FileWithLargeIds()
{
    OfdFile file = OfdFile::WithPages(1).Tail(
        "<ofd:Bookmarks><ofd:Bookmark Name=\"b\"><ofd:Dest Type=\"Fit\" PageID=\"4294967295\"/></ofd:Bookmark>"
        "</ofd:Bookmarks><ofd:Annotations>Annotations.xml</ofd:Annotations>"
        "<ofd:CustomTags>CustomTags.xml</ofd:CustomTags>");
    const QString document = QStringLiteral("Doc_0/Document.xml");
    file.Set(document, file.Part(document).replace("<ofd:Page ID=\"1\"", "<ofd:Page ID=\"4294967295\""));
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"4294967295\"><ofd:FileLoc>A.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/A.xml"),
             Element("PageAnnot", "<ofd:Annot ID=\"3000000000\" Type=\"Path\"><ofd:Remark>one</ofd:Remark>"
                                  "<ofd:Appearance Boundary=\"0 0 9 9\"/></ofd:Annot>"));
    file.Set(QStringLiteral("Doc_0/CustomTags.xml"),
             Element("CustomTags", "<ofd:CustomTag NameSpace=\"u\"><ofd:FileLoc>T.xml</ofd:FileLoc></ofd:CustomTag>"));
    return file.Set(QStringLiteral("Doc_0/T.xml"),
                    Element("Tag", "<ofd:ObjectRef PageRef=\"4294967295\">2147483648</ofd:ObjectRef>"));
}

} // namespace

// What the tool says of documents with versions, periods, large numbers and stamps.
class TestToolFacts : public QObject
{
    Q_OBJECT

private slots:
    void infoTellsWhichVersionIsRead();
    void outsideOfItsPeriodADocumentMayNotBeEdited_data();
    void outsideOfItsPeriodADocumentMayNotBeEdited();
    void infoTellsWhoMayPrintHowMuch_data();
    void infoTellsWhoMayPrintHowMuch();
    void largeIdentifiersAreNotNegative();
    void everyActionOfAnOutlineEntryIsListed();
    void checkTellsOfASealOnAPageThatDoesNotExist();

private:
    QString Write(const OfdFile& file) { return file.Write(folder.filePath(QStringLiteral("%1.ofd").arg(++count))); }

    QTemporaryDir folder;
    int count = 0;
};

void TestToolFacts::infoTellsWhichVersionIsRead()
{
    OfdFile file = OfdFile::WithPages(1);
    QVERIFY(!Info(Write(file)).contains(QStringLiteral("versions")));
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocRoot>",
                  "</ofd:DocRoot><ofd:Versions><ofd:Version ID=\"a\" Current=\"true\" BaseLoc=\"V.xml\"/>"
                  "<ofd:Version ID=\"b\" BaseLoc=\"W.xml\"/></ofd:Versions>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    file.Set(QStringLiteral("V.xml"), Element("DocVersion", "<ofd:DocRoot>Doc_0/Document.xml</ofd:DocRoot>"));
    const QString path = Write(file);
    const QJsonObject info = Info(path);
    QCOMPARE(info["versions"].toInt(), 2);
    QCOMPARE(info["versionShown"].toInt(), 1);
    QCOMPARE(info["versionName"].toString(), QStringLiteral("a"));
    QCOMPARE(info["isNewestVersion"].toBool(true), false);
    // It is no problem, but worth a line.
    const ToolRun check = RunTool({QStringLiteral("check"), path});
    QCOMPARE(check.exitCode, 0);
    QVERIFY2(check.out.contains("info\tversion-shown\t"), check.out);
    QVERIFY(check.out.contains("not the newest"));
}

void TestToolFacts::outsideOfItsPeriodADocumentMayNotBeEdited_data()
{
    QTest::addColumn<QString>("edit");
    QTest::addColumn<int>("firstDay"); // from today
    QTest::addColumn<int>("lastDay");
    QTest::addColumn<bool>("mayEdit");
    QTest::newRow("within") << "true" << -1 << 1 << true;
    QTest::newRow("over") << "true" << -9 << -3 << false;
    QTest::newRow("not yet") << "true" << 3 << 9 << false;
    QTest::newRow("within, but forbidden") << "false" << -1 << 1 << false;
}

void TestToolFacts::outsideOfItsPeriodADocumentMayNotBeEdited()
{
    QFETCH(const QString, edit);
    QFETCH(const int, firstDay);
    QFETCH(const int, lastDay);
    QFETCH(const bool, mayEdit);
    const auto day = [](int fromToday) { return QDate::currentDate().addDays(fromToday).toString(Qt::ISODate); };
    const QString permissions =
        QStringLiteral("<ofd:Permissions><ofd:Edit>%1</ofd:Edit><ofd:ValidPeriod StartDate=\"%2T00:00:00\" "
                       "EndDate=\"%3T00:00:00\"/></ofd:Permissions>")
            .arg(edit, day(firstDay), day(lastDay));
    const QJsonObject info = Info(Write(OfdFile::WithPages(1).Tail(permissions.toUtf8())));
    QCOMPARE(info["mayEdit"].toBool(!mayEdit), mayEdit);
    QCOMPARE(info["mayExport"].toBool(false), true);
    QCOMPARE(info["validFrom"].toString(), day(firstDay));
    QCOMPARE(info["validUntil"].toString(), day(lastDay));
}

void TestToolFacts::infoTellsWhoMayPrintHowMuch_data()
{
    QTest::addColumn<QByteArray>("permissions");
    QTest::addColumn<bool>("mayPrint");
    QTest::addColumn<int>("mostCopies"); // negative: none is told
    const auto row = [](const char* name, const char* print, bool mayPrint, int mostCopies) {
        QTest::newRow(name) << QByteArray("<ofd:Permissions>") + print + "</ofd:Permissions>" << mayPrint << mostCopies;
    };
    QTest::newRow("no permissions") << QByteArray() << true << -1;
    row("nothing said of it", "<ofd:Edit>true</ofd:Edit>", true, -1);
    row("any number", "<ofd:Print Printable=\"true\"/>", true, -1);
    row("some", "<ofd:Print Printable=\"true\" Copies=\"3\"/>", true, 3);
    row("none", "<ofd:Print Printable=\"true\" Copies=\"0\"/>", false, 0);
    row("forbidden", "<ofd:Print Printable=\"false\" Copies=\"3\"/>", false, 3);
}

void TestToolFacts::infoTellsWhoMayPrintHowMuch()
{
    QFETCH(const QByteArray, permissions);
    QFETCH(const bool, mayPrint);
    QFETCH(const int, mostCopies);
    const QString path = Write(OfdFile::WithPages(1).Tail(permissions));
    const QJsonObject info = Info(path);
    QCOMPARE(info["mayPrint"].toBool(!mayPrint), mayPrint);
    QCOMPARE(info["mostCopies"].toInt(-1), mostCopies);
    const QStringList lines = RunTool({QStringLiteral("info"), path}).Lines();
    QVERIFY(lines.contains(mayPrint ? QStringLiteral("mayPrint: yes") : QStringLiteral("mayPrint: no")));
    QCOMPARE(lines.contains(QStringLiteral("mostCopies: %1").arg(mostCopies)), mostCopies >= 0);
}

void TestToolFacts::largeIdentifiersAreNotNegative()
{
    const QString path = Write(FileWithLargeIds());
    const QJsonObject bookmark = FirstItem(QStringLiteral("bookmarks"), path);
    QCOMPARE(bookmark["pageId"].toDouble(), 4294967295.0);
    QCOMPARE(bookmark["page"].toInt(), 1);
    QCOMPARE(FirstItem(QStringLiteral("annotations"), path)["id"].toDouble(), 3000000000.0);
    const QJsonObject objects = FirstItem(QStringLiteral("tags"), path)["objects"].toArray().at(0).toObject();
    QCOMPARE(objects["pageId"].toDouble(), 4294967295.0);
    QCOMPARE(objects["objectIds"].toArray().at(0).toDouble(), 2147483648.0);
    for (const char* kind : {"bookmarks", "annotations", "tags"})
        QVERIFY(!RunTool({QStringLiteral("list"), QString::fromLatin1(kind), path}).out.contains('-'));
    QVERIFY(RunTool({QStringLiteral("list"), QStringLiteral("tags"), path}).out.contains("4294967295:2147483648"));
}

void TestToolFacts::everyActionOfAnOutlineEntryIsListed()
{
    const QByteArray actions[] = {"<ofd:Movie ResourceID=\"3\"/>", "<ofd:URI URI=\"http://a.example/\"/>",
                                  "<ofd:Goto><ofd:Dest Type=\"Fit\" PageID=\"2\"/></ofd:Goto>",
                                  "<ofd:GotoA AttachID=\"7\"/>", "<ofd:Dance/>"};
    QByteArray list;
    for (const QByteArray& action : actions)
        list += "<ofd:Action Event=\"CLICK\">" + action + "</ofd:Action>";
    const OfdFile file =
        OfdFile::WithPages(2).Tail("<ofd:Outlines><ofd:OutlineElem Title=\"a\"><ofd:Actions>" + list +
                                   "</ofd:Actions></ofd:OutlineElem><ofd:OutlineElem Title=\"b\"/></ofd:Outlines>");
    const QString path = Write(file);
    const QJsonObject entry = FirstItem(QStringLiteral("outline"), path);
    QCOMPARE(entry[QStringLiteral("uri")].toString(), QStringLiteral("http://a.example/"));
    QVERIFY(!entry.contains(QStringLiteral("page"))); // the second one that leads somewhere
    const QJsonArray listed = entry[QStringLiteral("actions")].toArray();
    QStringList kinds;
    for (const QJsonValue& action : listed)
        kinds.append(action.toObject()[QStringLiteral("kind")].toString());
    QCOMPARE(kinds, (QStringList{"movie", "uri", "goto", "attachment", "other"}));
    QCOMPARE(listed.at(1).toObject()[QStringLiteral("uri")].toString(), QStringLiteral("http://a.example/"));
    QCOMPARE(listed.at(2).toObject()[QStringLiteral("page")].toInt(), 2);
    QCOMPARE(listed.at(3).toObject()[QStringLiteral("attachment")].toInt(), 7);
    const ToolRun lines = RunTool({QStringLiteral("list"), QStringLiteral("outline"), path});
    QCOMPARE(lines.out, QByteArray("a\tmovie\thttp://a.example/\tpage 2\tattachment 7\tother\nb\t\n"));
}

void TestToolFacts::checkTellsOfASealOnAPageThatDoesNotExist()
{
    OfdFile file = OfdFile::WithPages(1);
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocBody>", "<ofd:Signatures>Signatures.xml</ofd:Signatures></ofd:DocBody>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    file.Set(QStringLiteral("Signatures.xml"),
             Element("Signatures", "<ofd:Signature ID=\"1\" Type=\"Seal\" BaseLoc=\"Signature.xml\"/>"));
    file.Set(QStringLiteral("Signature.xml"),
             Element("Signature", "<ofd:SignedInfo><ofd:StampAnnot ID=\"s\" PageRef=\"4000000000\" "
                                  "Boundary=\"1 1 9 9\"/></ofd:SignedInfo>"));
    const ToolRun check = RunTool({QStringLiteral("check"), Write(file)});
    QCOMPARE(check.exitCode, 1);
    QVERIFY2(check.out.contains("problem\tdangling-reference\tSignature.xml\tA seal is to be painted on the page "
                                "4000000000, which does not exist."),
             check.out);
}

TETO_TEST_MAIN(TestToolFacts)

#include "test_tool_facts.moc"
