// The application object and the settings.
#include <tests/support/test_main.h>

#include <frame/base/log.h>
#include <frame/base/streams.h>
#include <frame/document/memory_document.h>
#include <frame/view/application.h>
#include <frame/view/settings.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

class TestApplication : public QObject
{
    Q_OBJECT
private slots:
    void partsOfALogLineAreJoinedByOneBlank();
    void restrictedMeansThatPermissionsForbidEditing();
    void openDocumentsAreKnownByPath();
    void theFileOfAnOpenDocumentIsNotOverwritten();
    void aLinkToTheFileOfAnOpenDocumentIsNotOverwritten();
    void savingIsTheServicesAffair();
    void settingsInMemoryAreForgotten();
    void settingsInAFileStay();
};

void TestApplication::partsOfALogLineAreJoinedByOneBlank()
{
    QList<QByteArray> lines;
    SetFrameLogListener([&](const QByteArray& line) { lines.append(line); });
    G_Application::Instance().Log("something failed", "Class Method");
    G_Application::Instance().Log("alone");
    SetFrameLogListener({});
    QCOMPARE(lines, (QList<QByteArray>{"something failed Class Method", "alone"}));
}

void TestApplication::restrictedMeansThatPermissionsForbidEditing()
{
    MemoryDocument document;
    const G_Application& application = G_Application::Instance();
    QVERIFY(!application.IsRestricted(nullptr));
    QVERIFY(!application.CheckDocumentRight(nullptr, 0));
    QVERIFY(!application.IsRestricted(&document));
    document.SetRights(true, true, true, true);
    QVERIFY(application.CheckDocumentRight(&document, 0));
    QVERIFY(application.CheckDocumentRight(&document, 1));
    QVERIFY(!application.IsRestricted(&document));
    document.SetRights(true, false, true, true);
    QVERIFY(!application.CheckDocumentRight(&document, 0));
    QVERIFY(application.IsRestricted(&document));
}

void TestApplication::openDocumentsAreKnownByPath()
{
    MemoryDocument document;
    document.SetDocumentKey("/some/folder/report.ofd");
    G_Application& application = G_Application::Instance();
    QVERIFY(!application.IsOpen("/some/folder/report.ofd"));
    application.DocumentOpened(&document);
    application.DocumentOpened(&document);
    QCOMPARE(application.OpenDocuments(), QList<IG_Document*>{&document});
    QVERIFY(application.IsOpen("/some/folder/report.ofd"));
    QVERIFY(application.IsOpen("/some/other/../folder//report.ofd"));
    QVERIFY(!application.IsOpen("/some/folder/other.ofd"));
    application.DocumentClosed(&document);
    QVERIFY(application.OpenDocuments().isEmpty());
    QVERIFY(!application.IsOpen("/some/folder/report.ofd"));
}

void TestApplication::theFileOfAnOpenDocumentIsNotOverwritten()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("open.ofd");
    MemoryDocument document;
    document.SetDocumentKey(path.toUtf8());
    G_Application::Instance().DocumentOpened(&document);
    std::unique_ptr<ICA_StreamWriter> writer(ICA_StreamWriter::CreateFileStreamWriter(path.toStdWString().c_str(), 0));
    QVERIFY(!writer);
    G_Application::Instance().DocumentClosed(&document);
    writer.reset(ICA_StreamWriter::CreateFileStreamWriter(path.toStdWString().c_str(), 0));
    QVERIFY(writer != nullptr);
}

void TestApplication::aLinkToTheFileOfAnOpenDocumentIsNotOverwritten()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("open.ofd");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("whole") == 5);
    file.close();
    const QString link = folder.filePath("link.txt");
    QVERIFY(QFile::link(path, link));
    MemoryDocument document;
    document.SetDocumentKey(path.toUtf8());
    G_Application::Instance().DocumentOpened(&document);
    const bool isOpen = G_Application::Instance().IsOpen(link);
    const std::unique_ptr<ICA_StreamWriter> writer(
        ICA_StreamWriter::CreateFileStreamWriter(link.toStdWString().c_str(), 0));
    G_Application::Instance().DocumentClosed(&document);
    QVERIFY(isOpen);
    QVERIFY(!writer);
}

void TestApplication::savingIsTheServicesAffair()
{
    MemoryDocument document;
    G_Application& application = G_Application::Instance();
    QVERIFY(!application.Save(&document));
    IG_Document* saved = nullptr;
    application.SetSaveService([&](IG_Document* asked) {
        saved = asked;
        return true;
    });
    QVERIFY(application.Save(&document));
    QCOMPARE(saved, static_cast<IG_Document*>(&document));
    QVERIFY(!application.Save(nullptr));
    application.SetSaveService({});
    QVERIFY(!application.Save(&document));
}

void TestApplication::settingsInMemoryAreForgotten()
{
    G_SettingMgr* settings = G_SettingMgr::Instance();
    settings->UseFile(QString());
    QVERIFY(!settings->ConfigValue("read.keepcurrentzoom").isValid());
    QVERIFY(!settings->ConfigValue("read.keepcurrentzoom").toBool());
    QCOMPARE(settings->ConfigValue("some.key", 7).toInt(), 7);
    settings->SetConfigValue("some.key", 8);
    QCOMPARE(settings->ConfigValue("some.key", 7).toInt(), 8);
    settings->UseFile(QString());
    QCOMPARE(settings->ConfigValue("some.key", 7).toInt(), 7);
}

void TestApplication::settingsInAFileStay()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("settings.ini");
    G_SettingMgr* settings = G_SettingMgr::Instance();
    settings->UseFile(path);
    settings->SetConfigValue("read.keepcurrentzoom", true);
    settings->UseFile(QString());
    QVERIFY(!settings->ConfigValue("read.keepcurrentzoom").isValid());
    settings->UseFile(path);
    QVERIFY(settings->ConfigValue("read.keepcurrentzoom").toBool());
    settings->UseFile(QString());
}

} // namespace

TETO_TEST_MAIN(TestApplication)
#include "test_application.moc"
