#include "ofd_file.h"

#include <frame/base/converters.h>
#include <frame/document/ig_annot.h>
#include <frame/document/ig_page.h>
#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString DocumentPart = QStringLiteral("Doc_0/Document.xml");

// The document itself has a page 1; the versions lead to documents with a page 11, 12, … Their elements are given.
OfdFile FileWithVersions(const QByteArray& versions, int count)
{
    OfdFile file = OfdFile::WithPages(1);
    QByteArray entry = file.Part(QStringLiteral("OFD.xml"));
    entry.replace("</ofd:DocRoot>", "</ofd:DocRoot><ofd:Versions>" + versions + "</ofd:Versions>");
    file.Set(QStringLiteral("OFD.xml"), entry);
    for (int i = 1; i <= count; ++i) {
        const QByteArray number = QByteArray::number(i);
        file.Set(QStringLiteral("V/%1.xml").arg(i),
                 Element("DocVersion", "<ofd:DocRoot>/Doc_0/Document_" + number + ".xml</ofd:DocRoot>"));
        file.Set(QStringLiteral("Doc_0/Document_%1.xml").arg(i),
                 file.Part(DocumentPart).replace("ID=\"1\"", "ID=\"1" + number + "\""));
    }
    return file;
}

QByteArray Version(int number, const QByteArray& more = {})
{
    const QByteArray digits = QByteArray::number(number);
    return "<ofd:Version ID=\"v" + digits + "\" BaseLoc=\"V/" + digits + ".xml\" " + more + "/>";
}

QStringList TextsOf(const ofd::OfdDocument& document, ofd::ProblemKind kind)
{
    QStringList texts;
    for (const ofd::Problem& problem : document.GetProblems()) {
        if (problem.kind == kind)
            texts.append(problem.text);
    }
    return texts;
}

} // namespace

// Files that keep several states of their document, and those whose pages are not all there: what is shown and may be
// edited is told.
class TestOfdVersions : public QObject
{
    Q_OBJECT

private slots:
    void theVersionThatIsOpenIsTold_data();
    void theVersionThatIsOpenIsTold();
    void aFileWithoutVersionsSaysNothingOfThem();
    void aVersionTakesItsNameFromItsPart();
    void editsGoIntoTheVersionThatIsOpen();
    void annotationsOfAMissingPageAreLocked();

private:
    std::unique_ptr<ofd::OfdDocument> Open(const OfdFile& file)
    {
        path = file.Write(folder.filePath(QStringLiteral("%1.ofd").arg(++count)));
        ofd::OpenResult result = ofd::OfdDocument::Open(path);
        if (!result)
            qFatal("%s", qPrintable(result.error));
        return std::move(result.document);
    }

    QTemporaryDir folder;
    QString path;
    int count = 0;
};

void TestOfdVersions::theVersionThatIsOpenIsTold_data()
{
    QTest::addColumn<QByteArray>("versions");
    QTest::addColumn<int>("pageId");
    QTest::addColumn<int>("shown");
    QTest::addColumn<bool>("isNewest");
    QTest::addColumn<bool>("isWanted");
    QTest::addColumn<QString>("text");
    const QByteArray current = "Current=\"true\"";
    QTest::newRow("the last") << Version(1) + Version(2, current) << 12 << 2 << true << true
                              << QStringLiteral("Version 2 of 2 of the document is shown and edited.");
    QTest::newRow("an older one") << Version(1, current) + Version(2) << 11 << 1 << false << true
                                  << QStringLiteral("which is not the newest one");
    QTest::newRow("the last by number") << Version(1, current + " Index=\"5\"") + Version(2, "Index=\"4\"") << 11 << 1
                                        << true << true << QStringLiteral("Version 1 of 2");
    QTest::newRow("an older one by number") << Version(1, "Index=\"2\"") + Version(2, current + " Index=\"1\"") << 12
                                            << 2 << false << true << QStringLiteral("which is not the newest one");
    QTest::newRow("none is current") << Version(1) + Version(2) << 1 << 0 << false << true
                                     << QStringLiteral("none of them is shown");
    QTest::newRow("the current one is missing")
        << Version(1) + Version(7, current) << 1 << 0 << false << false << QStringLiteral("none of them is shown");
}

void TestOfdVersions::theVersionThatIsOpenIsTold()
{
    QFETCH(const QByteArray, versions);
    QFETCH(const int, pageId);
    QFETCH(const int, shown);
    QFETCH(const bool, isNewest);
    QFETCH(const bool, isWanted);
    QFETCH(const QString, text);
    const auto document = Open(FileWithVersions(versions, 2));
    QCOMPARE(document->PageIdFromIndex(0), pageId);
    const ofd::VersionFacts facts = document->GetFacts().version;
    QCOMPARE(facts.count, 2);
    QCOMPARE(facts.shown, shown);
    QCOMPARE(facts.isNewest, isNewest);
    QCOMPARE(facts.isWanted, isWanted);
    const QStringList told = TextsOf(*document, ofd::ProblemKind::VersionShown);
    QCOMPARE(told.size(), 1);
    QVERIFY2(told.first().contains(text), qPrintable(told.first()));
    const QStringList missing = TextsOf(*document, ofd::ProblemKind::MissingPart);
    QCOMPARE(missing.filter(QStringLiteral("The current version")).isEmpty(), isWanted);
}

void TestOfdVersions::aFileWithoutVersionsSaysNothingOfThem()
{
    const auto document = Open(OfdFile::WithPages(1));
    QCOMPARE(document->GetFacts().version.count, 0);
    QVERIFY(TextsOf(*document, ofd::ProblemKind::VersionShown).isEmpty());
    QVERIFY(document->GetProblems().empty());
}

void TestOfdVersions::aVersionTakesItsNameFromItsPart()
{
    OfdFile file = FileWithVersions(Version(1, "Current=\"true\""), 1);
    QCOMPARE(Open(file)->GetFacts().version.name, QStringLiteral("v1"));
    QByteArray part = file.Part(QStringLiteral("V/1.xml"));
    file.Set(QStringLiteral("V/1.xml"), part.replace("<ofd:DocVersion", "<ofd:DocVersion Version=\"2.0\""));
    QCOMPARE(Open(file)->GetFacts().version.name, QStringLiteral("2.0"));
    file.Set(QStringLiteral("V/1.xml"), part.replace("<ofd:DocVersion", "<ofd:DocVersion Name=\" Final \""));
    QCOMPARE(Open(file)->GetFacts().version.name, QStringLiteral("Final"));
}

void TestOfdVersions::editsGoIntoTheVersionThatIsOpen()
{
    const OfdFile file = FileWithVersions(Version(1, "Current=\"1\"") + Version(2), 2);
    const auto document = Open(file);
    QVERIFY(document->CreateBookmarkRoot());
    auto* bookmark = new G_Bookmark; // owned by its node
    bookmark->name = "added";
    document->GetBookmarkRoot()->AddSubNode(0, bookmark);
    QVERIFY(document->Save());
    QVERIFY(PartOf(path, QStringLiteral("Doc_0/Document_1.xml")).contains("added"));
    for (const char* part : {"OFD.xml", "Doc_0/Document.xml", "Doc_0/Document_2.xml", "V/1.xml", "V/2.xml"})
        QCOMPARE(PartOf(path, QString::fromLatin1(part)), file.Part(QString::fromLatin1(part)));
}

void TestOfdVersions::annotationsOfAMissingPageAreLocked()
{
    const QByteArray annotations =
        Element("PageAnnot", "<ofd:Annot ID=\"21\" Type=\"Path\" ReadOnly=\"false\"><ofd:Remark>one</ofd:Remark>"
                             "<ofd:Appearance Boundary=\"0 0 9 9\"/></ofd:Annot>");
    OfdFile file = OfdFile::WithPages(2);
    file.Tail("<ofd:Annotations>Annotations.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/Annotations.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>A1.xml</ofd:FileLoc></ofd:Page>"
                                    "<ofd:Page PageID=\"2\"><ofd:FileLoc>A2.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/A1.xml"), annotations).Set(QStringLiteral("Doc_0/A2.xml"), annotations);
    file.Remove(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"));
    const auto document = Open(file);
    for (int page = 0; page < 2; ++page) {
        QVERIFY(document->GetPage(page)->Load());
        QCOMPARE(document->GetPage(page)->LoadAnnots(), 0);
        QCOMPARE(document->GetPage(page)->GetAnnotAt(0)->IsLocked(), page == 0);
    }
}

TETO_TEST_MAIN(TestOfdVersions)

#include "test_ofd_versions.moc"
