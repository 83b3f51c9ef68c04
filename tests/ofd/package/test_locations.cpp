#include <ofd/model/problem_log.h>
#include <ofd/package/locations.h>
#include <ofd/package/package.h>
#include <tests/ofd/package/raw_zip.h>
#include <tests/support/test_main.h>

#include <QtTest>

using namespace ofd;

Q_DECLARE_METATYPE(ofd::LocationStep)

// References between parts: what they mean by the book, and what is found when they are wrong.
class TestLocations : public QObject
{
    Q_OBJECT

private slots:
    void referencesAreNormalised_data();
    void referencesAreNormalised();
    void referencesResolve_data();
    void referencesResolve();
    void ambiguousCandidatesAreNotFound();
    void whatWasReadInsteadIsToldAsItShouldBeNamed_data();
    void whatWasReadInsteadIsToldAsItShouldBeNamed();
    void newReferencesAreRelativeUnlessAskedOtherwise();
};

void TestLocations::referencesAreNormalised_data()
{
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QString>("expected"); // empty: invalid
    QTest::newRow("relative") << "Pages/Page_0.xml"
                              << "Doc_0/Pages/Page_0.xml";
    QTest::newRow("absolute") << "/Doc_1/a.xml"
                              << "Doc_1/a.xml";
    QTest::newRow("blanks") << " \n Pages/a.xml\t"
                            << "Doc_0/Pages/a.xml";
    QTest::newRow("backslashes") << "Pages\\a.xml"
                                 << "Doc_0/Pages/a.xml";
    QTest::newRow("dots") << "./Pages/../Res/./a.xml"
                          << "Doc_0/Res/a.xml";
    QTest::newRow("up to the root") << "../OFD.xml"
                                    << "OFD.xml";
    QTest::newRow("above the root") << "../../OFD.xml"
                                    << "";
    QTest::newRow("above the root, absolute") << "/../OFD.xml"
                                              << "";
    QTest::newRow("down and above") << "a/../../../b/../../../etc/passwd"
                                    << "";
    QTest::newRow("empty") << "  "
                           << "";
    QTest::newRow("only the root") << "/"
                                   << "";
    QTest::newRow("double slashes") << "/Doc_0//a.xml"
                                    << "Doc_0/a.xml";
}

void TestLocations::referencesAreNormalised()
{
    QFETCH(QString, reference);
    QFETCH(QString, expected);
    QCOMPARE(NormaliseLocation(reference, QStringLiteral("Doc_0/")).value_or(QString()), expected);
}

void TestLocations::referencesResolve_data()
{
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<QString>("baseLoc");
    QTest::addColumn<bool>("isMedia");
    QTest::addColumn<QString>("part");
    QTest::addColumn<LocationStep>("step");
    const QString document = QStringLiteral("Doc_0/Document.xml");
    const QString resources = QStringLiteral("Doc_0/PublicRes.xml");
    const QString page = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");
    const QString image = QStringLiteral("Doc_0/Res/image.png");
    QTest::newRow("beside the holder") << "PublicRes.xml" << document << "" << false << resources
                                       << LocationStep::Exact;
    QTest::newRow("absolute") << "/Doc_0/PublicRes.xml" << page << "" << false << resources << LocationStep::Exact;
    QTest::newRow("up and over") << "../../PublicRes.xml" << page << "" << false << resources << LocationStep::Exact;
    QTest::newRow("below BaseLoc") << "image.png" << resources << "Res" << true << image << LocationStep::Exact;
    QTest::newRow("absolute BaseLoc") << "image.png" << resources << "/Doc_0/Res/" << true << image
                                      << LocationStep::Exact;
    QTest::newRow("BaseLoc is a dot") << "Res/image.png" << resources << "." << true << image << LocationStep::Exact;
    QTest::newRow("BaseLoc leads to the root")
        << "Doc_0/Res/image.png" << resources << ".." << true << image << LocationStep::Exact;
    QTest::newRow("absolute beats BaseLoc")
        << "/Doc_0/Res/image.png" << resources << "No" << true << image << LocationStep::Exact;
    QTest::newRow("no BaseLoc") << "Res/image.png" << resources << " " << true << image << LocationStep::Exact;
    QTest::newRow("other case") << "pages/page_0/content.XML" << document << "" << false << page
                                << LocationStep::IgnoringCase;
    QTest::newRow("meant from the root") << "Doc_0/PublicRes.xml" << document << "" << false << resources
                                         << LocationStep::FromRoot;
    QTest::newRow("meant from the document")
        << "PublicRes.xml" << page << "" << false << resources << LocationStep::FromDocumentFolder;
    QTest::newRow("absolute but meant from the document")
        << "/PublicRes.xml" << page << "" << false << resources << LocationStep::FromDocumentFolder;
    QTest::newRow("BaseLoc that is not there")
        << "image.png" << resources << "Nowhere" << true << image << LocationStep::ByFileName;
    QTest::newRow("only media go by file name")
        << "image.png" << resources << "Nowhere" << false << "" << LocationStep::NotFound;
    QTest::newRow("escaped") << "%50ublic%52es.xml" << document << "" << false << resources << LocationStep::Unescaped;
    QTest::newRow("escaped, below BaseLoc")
        << "%69mage.png" << resources << "Res" << true << image << LocationStep::Unescaped;
    QTest::newRow("a bare percent sign") << "100%.png" << resources << "Res" << true << "" << LocationStep::NotFound;
    QTest::newRow("climbs, escaped") << "%2e%2e/%2e%2e/Doc_0/Res/image.png" << resources << "" << false << ""
                                     << LocationStep::NotFound;
    QTest::newRow("climbs") << "../../../image.png" << resources << "Res" << true << "" << LocationStep::NotFound;
    QTest::newRow("empty") << "" << resources << "Res" << true << "" << LocationStep::NotFound;
    QTest::newRow("missing") << "no.png" << resources << "Res" << true << "" << LocationStep::NotFound;
}

void TestLocations::referencesResolve()
{
    QFETCH(QString, reference);
    QFETCH(QString, holder);
    QFETCH(QString, baseLoc);
    QFETCH(bool, isMedia);
    QFETCH(QString, part);
    QFETCH(LocationStep, step);
    RawZip zip = SmallRawZip();
    zip.Add("Doc_0/PublicRes.xml", "<a/>");
    zip.Add("Doc_0/Pages/Page_0/Content.xml", "<a/>");
    zip.Add("Doc_0/Res/image.png", "x");
    zip.Add("Other/image.png", "x");
    const auto package = Package::OpenBytes(zip.Build());
    LocationContext context;
    context.holderPart = holder;
    context.documentFolder = QStringLiteral("Doc_0/");
    context.baseLoc = baseLoc;
    context.isMedia = isMedia;
    const ResolvedLocation found = ResolveLocation(*package, reference, context);
    QCOMPARE(found.part, part);
    QCOMPARE(found.step, step);
}

void TestLocations::ambiguousCandidatesAreNotFound()
{
    RawZip zip = SmallRawZip();
    zip.Add("Doc_0/res/a.png", "1");
    zip.Add("Doc_0/RES/a.png", "2");
    const auto package = Package::OpenBytes(zip.Build());
    LocationContext context;
    context.holderPart = QStringLiteral("Doc_0/PublicRes.xml");
    context.documentFolder = QStringLiteral("Doc_0/");
    context.isMedia = true;
    QVERIFY(!ResolveLocation(*package, QStringLiteral("Res/a.png"), context));
    QCOMPARE(ResolveLocation(*package, QStringLiteral("RES/a.png"), context).part, QStringLiteral("Doc_0/RES/a.png"));
}

void TestLocations::whatWasReadInsteadIsToldAsItShouldBeNamed_data()
{
    QTest::addColumn<QString>("reference");
    QTest::addColumn<QString>("told");
    QTest::newRow("right") << QStringLiteral("Res/image.png") << QString();
    QTest::newRow("from the root") << QStringLiteral(" Doc_0/Res/image.png ")
                                   << QStringLiteral("\"Doc_0/Res/image.png\" leads nowhere; "
                                                     "\"/Doc_0/Res/image.png\" was read instead.");
    QTest::newRow("another case") << QStringLiteral("Res/IMAGE.png")
                                  << QStringLiteral("\"Res/IMAGE.png\" leads nowhere; "
                                                    "\"Doc_0/Res/image.png\" was read instead.");
    QTest::newRow("missing") << QStringLiteral("no.png") << QStringLiteral("\"no.png\" leads to no part.");
}

void TestLocations::whatWasReadInsteadIsToldAsItShouldBeNamed()
{
    QFETCH(const QString, reference);
    QFETCH(const QString, told);
    RawZip zip = SmallRawZip();
    zip.Add("Doc_0/Res/image.png", "x");
    const auto package = Package::OpenBytes(zip.Build());
    LocationContext context;
    context.holderPart = QStringLiteral("Doc_0/Document.xml");
    context.documentFolder = QStringLiteral("Doc_0/");
    ProblemLog log;
    const ProblemScope scope(log, context.holderPart);
    ResolveLocation(*package, reference, context);
    const std::vector<Problem> problems = log.GetProblems();
    QCOMPARE(int(problems.size()), told.isEmpty() ? 0 : 1);
    if (!told.isEmpty())
        QCOMPARE(problems[0].text, told);
}

void TestLocations::newReferencesAreRelativeUnlessAskedOtherwise()
{
    const QString page = QStringLiteral("Doc_0/Pages/Page_0/Content.xml");
    const QString list = QStringLiteral("Doc_0/Annots/Annotations.xml");
    QCOMPARE(MakeReference(page, QStringLiteral("Doc_0/Document.xml"), false),
             QStringLiteral("Pages/Page_0/Content.xml"));
    QCOMPARE(MakeReference(page, list, false), QStringLiteral("../Pages/Page_0/Content.xml"));
    QCOMPARE(MakeReference(page, QStringLiteral("OFD.xml"), false), page);
    QCOMPARE(MakeReference(page, list, true), QStringLiteral("/Doc_0/Pages/Page_0/Content.xml"));
    // What is written means the same part when it is read.
    QCOMPARE(NormaliseLocation(MakeReference(page, list, false), QStringLiteral("Doc_0/Annots/")).value_or(QString()),
             page);
}

TETO_TEST_MAIN(TestLocations)
#include "test_locations.moc"
