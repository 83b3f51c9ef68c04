#include <tests/ofd/document/ofd_file.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/test_main.h>
#include <tests/tool/tool_run.h>
#include <tool/file_names.h>
#include <tool/new_file_writer.h>

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>

#include <unistd.h>

namespace {

QString PlainFile()
{
    return SamplePath(QStringLiteral("deviations/annotation_readable"));
}

// A document with attachments of these names and formats; each holds its own number.
QString FileWithAttachments(const QString& path, const QVector<QPair<QByteArray, QByteArray>>& names)
{
    OfdFile file = OfdFile::WithPage("");
    file.Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>");
    QByteArray list;
    for (int i = 0; i < names.size(); ++i) {
        const QByteArray number = QByteArray::number(i);
        list += "<ofd:Attachment ID=\"" + QByteArray::number(i + 500) + "\" Name=\"" + names.at(i).first +
                "\" Format=\"" + names.at(i).second + "\"><ofd:FileLoc>a" + number + "</ofd:FileLoc></ofd:Attachment>";
        file.Set(QStringLiteral("Doc_0/a%1").arg(i), number);
    }
    file.Set(QStringLiteral("Doc_0/Attachments.xml"), Element("Attachments", list));
    return file.Write(path);
}

// All files below the folder, relative to it.
QStringList FilesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files += QDir(folder).relativeFilePath(walk.next());
    files.sort();
    return files;
}

} // namespace

class TestToolExtract : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void allAttachmentsComeOut();
    void oneAttachmentIsNamedWithOrWithoutItsEnding();
    void anUnknownNameEndsWithOneAndWritesNothing();
    void aDocumentWithoutAttachmentsEndsWithOne();
    void aFileThatIsThereIsNeverOverwritten();
    void aLinkThatIsThereIsNotFollowed();
    void hostileNamesStayInTheFolder();
    void attachmentsOfOneNameGetNumbers();
    void anAttachmentWhosePartIsMissingIsToldAndTheOthersCome();
    void aFolderThatCannotBeWrittenIsTold();
    void namesBecomeFileNames_data();
    void namesBecomeFileNames();
    void aWriterThatIsNotFinishedLeavesNoFile();

private:
    QString Path(const QString& name) const { return folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> folder;
};

void TestToolExtract::init()
{
    folder = std::make_unique<QTemporaryDir>();
}

void TestToolExtract::allAttachmentsComeOut()
{
    const ToolRun run = RunTool({"extract", PlainFile(), "--all", "-d", Path("new/folder")});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(FilesBelow(Path("new/folder")), QStringList({"machine.xml", "note.txt"}));
    QCOMPARE(BytesOf(Path("new/folder/note.txt")), QByteArray("A text attachment.\r\n").repeated(20));
    QCOMPARE(BytesOf(Path("new/folder/machine.xml")), QByteArray("<machine/>\n"));
    QCOMPARE(run.Lines().size(), 2);
}

void TestToolExtract::oneAttachmentIsNamedWithOrWithoutItsEnding()
{
    QCOMPARE(RunTool({"extract", PlainFile(), "note", "-d", Path("a")}).exitCode, 0);
    QCOMPARE(FilesBelow(Path("a")), QStringList({"note.txt"}));
    const ToolRun run = RunTool({"extract", PlainFile(), "machine.xml", "-d", Path("b"), "--json"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(FilesBelow(Path("b")), QStringList({"machine.xml"}));
    const QJsonObject file = run.Json()["files"].toArray().at(0).toObject();
    QCOMPARE(file["name"].toString(), QStringLiteral("machine"));
    QCOMPARE(file["path"].toString(), Path("b/machine.xml"));
}

void TestToolExtract::anUnknownNameEndsWithOneAndWritesNothing()
{
    const ToolRun run = RunTool({"extract", PlainFile(), "other", "-d", Path("a")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.errors.contains("\"other\""));
    QVERIFY(!QFileInfo::exists(Path("a")));
}

void TestToolExtract::aDocumentWithoutAttachmentsEndsWithOne()
{
    const QString bare = OfdFile::WithPage("").Write(Path("bare.ofd"));
    QCOMPARE(RunTool({"extract", bare, "--all", "-d", Path("a")}).exitCode, 1);
    QVERIFY(!QFileInfo::exists(Path("a")));
}

void TestToolExtract::aFileThatIsThereIsNeverOverwritten()
{
    QFile own(Path("note.txt"));
    QVERIFY(own.open(QIODevice::WriteOnly));
    own.write("mine");
    own.close();
    const ToolRun run = RunTool({"extract", PlainFile(), "--all", "-d", folder->path()});
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.contains("note.txt: File exists"));
    QCOMPARE(BytesOf(Path("note.txt")), QByteArray("mine"));
    QCOMPARE(BytesOf(Path("machine.xml")), QByteArray("<machine/>\n")); // the others come all the same
}

void TestToolExtract::aLinkThatIsThereIsNotFollowed()
{
    QVERIFY(QDir().mkpath(Path("in")));
    QVERIFY(QFile::link(Path("outside.txt"), Path("in/note.txt"))); // leads to no file yet
    QCOMPARE(RunTool({"extract", PlainFile(), "note", "-d", Path("in")}).exitCode, 3);
    QVERIFY(!QFileInfo::exists(Path("outside.txt")));
}

void TestToolExtract::hostileNamesStayInTheFolder()
{
    const QString file = FileWithAttachments(Path("hostile.ofd"), {{"../../escape", "txt"},
                                                                   {"/etc/passwd", ""},
                                                                   {"..", ".."},
                                                                   {"C:\\windows\\win", "ini"},
                                                                   {"&#10;&#x202e;txt", "exe"},
                                                                   {".bashrc", ""},
                                                                   {"con", "txt"},
                                                                   {"trailing. . .", "t.x."},
                                                                   {"a/b", "/../../x"},
                                                                   {"", ""},
                                                                   {"~", "sh"},
                                                                   {QByteArray("\xe9\x95\xbf").repeated(300), "txt"}});
    QVERIFY(QDir().mkpath(Path("deep/er")));
    const ToolRun run = RunTool({"extract", file, "--all", "-d", Path("deep/er/out")});
    QCOMPARE(run.exitCode, 0);
    const QStringList all = FilesBelow(folder->path());
    QCOMPARE(all.size(), 12 + 1);
    int inside = 0;
    for (const QString& name : all)
        inside += name.startsWith(QStringLiteral("deep/er/out/"));
    QCOMPARE(inside, 12);
    QSet<QByteArray> contents;
    for (const QString& name : FilesBelow(Path("deep/er/out"))) {
        QVERIFY(!name.contains(QLatin1Char('/')) && !name.startsWith(QLatin1Char('.')));
        QVERIFY(!name.contains(QChar(0x202e)) && !name.contains(QLatin1Char('\n')));
        contents.insert(BytesOf(Path("deep/er/out/") + name));
    }
    QCOMPARE(contents.size(), 12); // none took another's place
}

void TestToolExtract::attachmentsOfOneNameGetNumbers()
{
    const QString file = FileWithAttachments(Path("twins.ofd"),
                                             {{"data", "xml"}, {"data", "xml"}, {"DATA", "XML"}, {"data (2)", "xml"}});
    QCOMPARE(RunTool({"extract", file, "--all", "-d", Path("out")}).exitCode, 0);
    QCOMPARE(BytesOf(Path("out/data.xml")), QByteArray("0"));
    QCOMPARE(BytesOf(Path("out/data (2).xml")), QByteArray("1"));
    QCOMPARE(BytesOf(Path("out/DATA (3).XML")), QByteArray("2"));
    QCOMPARE(BytesOf(Path("out/data (2) (2).xml")), QByteArray("3"));
}

void TestToolExtract::anAttachmentWhosePartIsMissingIsToldAndTheOthersCome()
{
    const QByteArray list = Element("Attachments", "<ofd:Attachment ID=\"500\" Name=\"gone\" Format=\"txt\">"
                                                   "<ofd:FileLoc>gone.txt</ofd:FileLoc></ofd:Attachment>"
                                                   "<ofd:Attachment ID=\"501\" Name=\"here\" Format=\"txt\">"
                                                   "<ofd:FileLoc>here.txt</ofd:FileLoc></ofd:Attachment>");
    OfdFile file = OfdFile::WithPage("");
    file.Tail("<ofd:Attachments>Attachments.xml</ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/Attachments.xml"), list);
    file.Set(QStringLiteral("Doc_0/here.txt"), "here");
    const ToolRun run = RunTool({"extract", file.Write(Path("gone.ofd")), "--all", "-d", Path("out")});
    QCOMPARE(run.exitCode, 1);
    QVERIFY(run.errors.contains("gone.txt"));
    QCOMPARE(FilesBelow(Path("out")), QStringList({"here.txt"}));
}

void TestToolExtract::aFolderThatCannotBeWrittenIsTold()
{
    QFile file(Path("a file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const ToolRun run = RunTool({"extract", PlainFile(), "--all", "-d", Path("a file")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY(run.errors.contains("a file"));
    QCOMPARE(RunTool({"extract", PlainFile(), "--all", "-d", "/proc/nothing/here"}).exitCode, 3);
}

void TestToolExtract::namesBecomeFileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("plain") << "letter"
                           << "txt"
                           << "letter.txt";
    QTest::newRow("no format") << "letter"
                               << ""
                               << "letter";
    QTest::newRow("nothing") << ""
                             << ""
                             << "attachment";
    QTest::newRow("dots") << ".."
                          << ".."
                          << "attachment";
    QTest::newRow("climbs") << "../x"
                            << "txt"
                            << "_x.txt";
    QTest::newRow("device") << "NUL"
                            << "txt"
                            << "_NUL.txt";
    QTest::newRow("device with an ending") << "com1.a"
                                           << "txt"
                                           << "_com1.a.txt";
    QTest::newRow("no device") << "console"
                               << "txt"
                               << "console.txt";
    QTest::newRow("trailing dots") << "a. ."
                                   << "t."
                                   << "a.t";
    QTest::newRow("separators") << "a/b\\c:d"
                                << "x/y"
                                << "a_b_c_d.x_y";
}

void TestToolExtract::namesBecomeFileNames()
{
    QFETCH(const QString, name);
    QFETCH(const QString, format);
    QFETCH(const QString, fileName);
    QCOMPARE(AttachmentFileName(name, format), fileName);
    QVERIFY(AttachmentFileName(QString(1000, QChar(0x957f)), QString(1000, QChar(0x957f))).toUtf8().size() < 250);
    QCOMPARE(NumberedFileName(QStringLiteral("a.b.c"), 2), QStringLiteral("a.b (2).c"));
    QCOMPARE(NumberedFileName(QStringLiteral("a"), 2), QStringLiteral("a (2)"));
}

void TestToolExtract::aWriterThatIsNotFinishedLeavesNoFile()
{
    {
        NewFileWriter writer(Path("half"));
        QVERIFY(writer.Write("abc", 3));
    }
    QVERIFY(!QFileInfo::exists(Path("half")));
    {
        NewFileWriter writer(Path("given up"));
        writer.Abandon();
        QVERIFY(!writer.Write("abc", 3));
        QVERIFY(!writer.Finish());
    }
    QVERIFY(!QFileInfo::exists(Path("given up")));
    {
        NewFileWriter writer(Path("whole"));
        QVERIFY(writer.Write("abc", 3) && writer.Finish());
    }
    QCOMPARE(BytesOf(Path("whole")), QByteArray("abc"));
    NewFileWriter second(Path("whole"));
    QCOMPARE(second.Error(), EEXIST);
    QVERIFY(!second.Write("x", 1));
}

TETO_TEST_MAIN(TestToolExtract)
#include "test_tool_extract.moc"
