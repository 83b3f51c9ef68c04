#include <frame/base/streams.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <sys/stat.h>

namespace {

QByteArray ContentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

void Fill(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

std::unique_ptr<ICA_StreamReader> OpenReader(const QString& path)
{
    return std::unique_ptr<ICA_StreamReader>(ICA_StreamReader::CreateFileStreamReader(path.toStdWString().c_str(), 0));
}

std::unique_ptr<ICA_StreamWriter> OpenWriter(const QString& path)
{
    return std::unique_ptr<ICA_StreamWriter>(ICA_StreamWriter::CreateFileStreamWriter(path.toStdWString().c_str(), 0));
}

QString openDocumentPath;

bool IsOpenDocument(const wchar_t* path)
{
    return QString::fromWCharArray(path) == openDocumentPath;
}

} // namespace

class TestStreams : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void aReaderGivesTheWholeFileInPieces();
    void whatIsNoRegularFileCannotBeRead();
    void aNonAsciiNameIsReadAndWritten();
    void aWrittenFileAppearsWhenTheWriterIsDeleted();
    void afterAFailedWriteTheEarlierFileStaysWhole();
    void anAbandonedWriterLeavesNothing();
    void whatCannotBeWrittenGivesNoWriter();
    void theFileOfAnOpenDocumentGivesNoWriter();

private:
    QString Path(const QString& name) const { return folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> folder;
};

void TestStreams::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

void TestStreams::cleanup()
{
    ICA_StreamWriter::SetOpenFileTest(nullptr);
    folder.reset();
}

void TestStreams::aReaderGivesTheWholeFileInPieces()
{
    Fill(Path(QStringLiteral("a.bin")), "0123456789");
    const auto reader = OpenReader(Path(QStringLiteral("a.bin")));
    QVERIFY(reader);
    QCOMPARE(reader->GetSize(), qint64(10));
    char buffer[8] = {};
    QCOMPARE(reader->Read(buffer, 4), qint64(4));
    QCOMPARE(QByteArray(buffer, 4), QByteArray("0123"));
    QCOMPARE(reader->Read(buffer, 0), qint64(0));
    QCOMPARE(reader->Read(buffer, 8), qint64(6));
    QCOMPARE(QByteArray(buffer, 6), QByteArray("456789"));
    QCOMPARE(reader->Read(buffer, 8), qint64(0));
    QCOMPARE(reader->Read(nullptr, 8), qint64(-1));
    QCOMPARE(reader->Read(buffer, -1), qint64(-1));
}

void TestStreams::whatIsNoRegularFileCannotBeRead()
{
    QVERIFY(!ICA_StreamReader::CreateFileStreamReader(nullptr, 0));
    QVERIFY(!OpenReader(QString()));
    QVERIFY(!OpenReader(Path(QStringLiteral("missing"))));
    QVERIFY(!OpenReader(folder->path()));
    const QByteArray pipe = QFile::encodeName(Path(QStringLiteral("pipe")));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(!OpenReader(Path(QStringLiteral("pipe")))); // and does not wait for a writer
}

void TestStreams::aNonAsciiNameIsReadAndWritten()
{
    const QString path = Path(QString::fromUtf8("\xE5\x8F\x91\xE7\xA5\xA8.xml"));
    {
        const auto writer = OpenWriter(path);
        QVERIFY(writer && writer->Write("x", 1));
    }
    const auto reader = OpenReader(path);
    QVERIFY(reader);
    QCOMPARE(reader->GetSize(), qint64(1));
}

void TestStreams::aWrittenFileAppearsWhenTheWriterIsDeleted()
{
    const QString path = Path(QStringLiteral("out"));
    {
        const auto writer = OpenWriter(path);
        QVERIFY(writer);
        QVERIFY(writer->Write("one ", 4));
        QVERIFY(!QFile::exists(path));
        QVERIFY(writer->Write(nullptr, 0));
        QVERIFY(writer->Write("two", 3));
    }
    QCOMPARE(ContentOf(path), QByteArray("one two"));
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void TestStreams::afterAFailedWriteTheEarlierFileStaysWhole()
{
    const QString path = Path(QStringLiteral("out"));
    Fill(path, "earlier");
    {
        const auto writer = OpenWriter(path);
        QVERIFY(writer);
        QVERIFY(writer->Write("half", 4));
        QVERIFY(!writer->Write(nullptr, 5));
        QVERIFY(!writer->Write("more", 4)); // once failed, it stays failed
    }
    QCOMPARE(ContentOf(path), QByteArray("earlier"));
}

void TestStreams::anAbandonedWriterLeavesNothing()
{
    const QString path = Path(QStringLiteral("out"));
    {
        const auto writer = OpenWriter(path);
        QVERIFY(writer);
        QVERIFY(writer->Write("half", 4));
        writer->Abandon();
        writer->Abandon();
        QVERIFY(!writer->Write("more", 4));
    }
    QVERIFY(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

void TestStreams::whatCannotBeWrittenGivesNoWriter()
{
    QVERIFY(!ICA_StreamWriter::CreateFileStreamWriter(nullptr, 0));
    QVERIFY(!OpenWriter(QString()));
    QVERIFY(!OpenWriter(folder->path()));
    QVERIFY(!OpenWriter(Path(QStringLiteral("missing/folder/file"))));
}

void TestStreams::theFileOfAnOpenDocumentGivesNoWriter()
{
    openDocumentPath = Path(QStringLiteral("open.ofd"));
    Fill(openDocumentPath, "document");
    ICA_StreamWriter::SetOpenFileTest(IsOpenDocument);
    QVERIFY(!OpenWriter(openDocumentPath));
    QVERIFY(OpenWriter(Path(QStringLiteral("other"))));
    QCOMPARE(ContentOf(openDocumentPath), QByteArray("document"));
}

TETO_TEST_MAIN(TestStreams)
#include "test_streams.moc"
