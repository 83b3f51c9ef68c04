#include "ofd_file.h"

#include <frame/document/page_renderer.h>
#include <ofd/model/problem_log.h>
#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>

using namespace ofd;

namespace {

Problem MakeProblem(const QString& part, const QString& text, int objectId = 0)
{
    Problem problem;
    problem.kind = ProblemKind::BadValue;
    problem.part = part;
    problem.text = text;
    problem.objectId = objectId;
    return problem;
}

// The program's log is not what these tests are about.
void IgnoreProgramLog()
{
    QLoggingCategory::setFilterRules(QStringLiteral("tetobaisfla.ofd=false"));
}

} // namespace

class TestProblemLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { IgnoreProgramLog(); }
    void aProblemIsKeptOnceHoweverOftenItIsMet();
    void ofOneKindInOnePartTheFirstAreListedAndTheOthersCounted();
    void manyThreadsReportAtOnce();
    void aReportGoesToTheInnermostScopeOfItsThread();
    void reportsOutsideOfAScopeAreLost();
    void informationIsNoProblem();
    void everyKindHasAWordOfItsOwn();
    void aDocumentTellsWhereInItsPartsThingsAreWrong();
    void anIdentifierThatCannotBeReadIsToldOnceAndWhere();
    void sizesThatAreNoneAreToldWhereTheyStand();
    void problemsOfListsAreToldWithTheirEntries();
    void listsInTheDocumentAndMissingIdentifiersOfAnnotationsAreNoProblems();
};

void TestProblemLog::aProblemIsKeptOnceHoweverOftenItIsMet()
{
    ProblemLog log;
    for (int i = 0; i < 100; ++i)
        log.Add(MakeProblem(QStringLiteral("a.xml"), QStringLiteral("bad"), i % 2));
    QCOMPARE(int(log.GetProblems().size()), 2);
    QCOMPARE(log.GetProblems().back().more, 0);
}

void TestProblemLog::ofOneKindInOnePartTheFirstAreListedAndTheOthersCounted()
{
    ProblemLog log;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 100; ++i)
            log.Add(MakeProblem(QStringLiteral("a.xml"), QString::number(i)));
    }
    log.Add(MakeProblem(QStringLiteral("b.xml"), QStringLiteral("another part")));
    const std::vector<Problem> problems = log.GetProblems();
    QCOMPARE(int(problems.size()), ProblemLog::MaxListedPerPart + 1);
    QCOMPARE(problems.front().text, QStringLiteral("0"));
    QCOMPARE(problems.at(ProblemLog::MaxListedPerPart - 1).more, 100 - ProblemLog::MaxListedPerPart);
    QCOMPARE(problems.back().part, QStringLiteral("b.xml"));
    for (int i = 0; i < 3 * ProblemLog::MaxTold; ++i)
        log.Add(MakeProblem(QStringLiteral("c.xml"), QString::number(i)));
    QCOMPARE(log.GetProblems().back().more, ProblemLog::MaxTold - ProblemLog::MaxListedPerPart);
}

void TestProblemLog::manyThreadsReportAtOnce()
{
    ProblemLog log;
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([&log, t] {
            for (int i = 0; i < 500; ++i) {
                const ProblemScope scope(log, QStringLiteral("part %1").arg(i % 50));
                const ProblemPlace place(t);
                ReportProblem(ProblemKind::BadValue, QStringLiteral("bad"));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(int(log.GetProblems().size()), 50 * 8);
}

void TestProblemLog::aReportGoesToTheInnermostScopeOfItsThread()
{
    ProblemLog outerLog;
    ProblemLog innerLog;
    {
        const ProblemScope outer(outerLog, QStringLiteral("outer"));
        const ProblemPlace place(7, 70);
        {
            const ProblemScope inner(innerLog, QStringLiteral("inner"));
            ReportProblem(ProblemKind::Cycle, QStringLiteral("in"));
            const ProblemScope otherPart(QStringLiteral("other"));
            ReportProblem(ProblemKind::Cycle, QStringLiteral("part"));
            ReportProblem(ProblemKind::Cycle, QStringLiteral("named"), QStringLiteral("by name"));
        }
        {
            const ProblemPlace nested(8, 80);
            ReportProblem(ProblemKind::Limit, QStringLiteral("nested"));
        }
        ReportProblem(ProblemKind::Limit, QStringLiteral("out"));
    }
    const std::vector<Problem> inside = innerLog.GetProblems();
    QCOMPARE(int(inside.size()), 3);
    QCOMPARE(inside[0].part, QStringLiteral("inner"));
    QCOMPARE(inside[0].objectId, 0); // the place belongs to the outer part
    QCOMPARE(inside[1].part, QStringLiteral("other"));
    QCOMPARE(inside[2].part, QStringLiteral("named"));
    const std::vector<Problem> outside = outerLog.GetProblems();
    QCOMPARE(int(outside.size()), 2);
    QCOMPARE(outside[0].objectId, 8);
    QCOMPARE(outside[0].offset, qint64(80));
    QCOMPARE(outside[1].objectId, 7);
    QCOMPARE(outside[1].offset, qint64(70));
}

void TestProblemLog::reportsOutsideOfAScopeAreLost()
{
    ReportProblem(ProblemKind::Cycle, QStringLiteral("nobody listens"));
    const ProblemScope scope(QStringLiteral("a part, but of no document"));
    const ProblemPlace place(1);
    ReportProblem(ProblemKind::Cycle, QStringLiteral("nor here"));
    ProblemLog log;
    QVERIFY(log.GetProblems().empty());
}

void TestProblemLog::informationIsNoProblem()
{
    ProblemLog log;
    Problem problem = MakeProblem(QString(), QStringLiteral("a font"));
    problem.kind = ProblemKind::FontSubstituted;
    log.Add(problem);
    QVERIFY(!log.HasProblems());
    log.Add(MakeProblem(QString(), QStringLiteral("bad")));
    QVERIFY(log.HasProblems());
}

void TestProblemLog::everyKindHasAWordOfItsOwn()
{
    QSet<QByteArray> words;
    for (int kind = 0; kind <= int(ProblemKind::VersionShown); ++kind) {
        const QByteArray word = WordOf(ProblemKind(kind));
        QVERIFY(!word.isEmpty() && !words.contains(word));
        words.insert(word);
    }
    QCOMPARE(QByteArray(WordOf(ProblemKind::PageFailed)), QByteArray("page-failed"));
    QCOMPARE(QByteArray(WordOf(ProblemKind::MissingPart)), QByteArray("missing-part"));
}

void TestProblemLog::anIdentifierThatCannotBeReadIsToldOnceAndWhere()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPages(1);
    file.Tail("<ofd:Annotations>List.xml</ofd:Annotations>");
    file.Set(QStringLiteral("Doc_0/List.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Notes.xml</ofd:FileLoc></ofd:Page>"));
    file.Set(QStringLiteral("Doc_0/Notes.xml"), Element("PageAnnot", "<ofd:Annot ID=\"abc\" Type=\"Stamp\"/>"));
    const OpenResult opened = OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("bad.ofd"))));
    QVERIFY(opened);
    opened.document->Renderer()->RenderPage({});
    const std::vector<Problem> problems = opened.document->GetProblems();
    QCOMPARE(int(problems.size()), 1);
    QVERIFY(problems[0].text.contains(QStringLiteral("abc")));
    QVERIFY(file.Part(problems[0].part).mid(int(problems[0].offset)).startsWith("<ofd:Annot ID"));
}

void TestProblemLog::sizesThatAreNoneAreToldWhereTheyStand()
{
    const QTemporaryDir folder;
    const auto area = [](const QByteArray& box) {
        return "<ofd:Area><ofd:PhysicalBox>" + box + "</ofd:PhysicalBox></ofd:Area>";
    };
    OfdFile file = OfdFile::WithPages(3).Common("<ofd:TemplatePage ID=\"60\" BaseLoc=\"T.xml\"/>");
    const QString pages = QStringLiteral("Doc_0/Pages/Page_%1/Content.xml");
    file.Set(pages.arg(0), Element("Page", area("0 0 210mm 297mm") + "<ofd:Content/>"));
    file.Set(pages.arg(1), Element("Page", "<ofd:Template TemplateID=\"60\"/><ofd:Content/>"));
    file.Set(QStringLiteral("Doc_0/T.xml"), Element("Page", area("0 0 0 5")));
    const OpenResult opened = OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("sizes.ofd"))));
    QVERIFY(opened);
    for (int i = 0; i < 6; ++i)
        QCOMPARE(opened.document->PageSizeMm(i % 3), QSizeF(100, 100));
    const std::vector<Problem> problems = opened.document->GetProblems();
    QCOMPARE(int(problems.size()), 2);
    QCOMPARE(problems[0].part, pages.arg(0));
    QVERIFY(problems[0].text.contains(QStringLiteral("210mm")));
    QCOMPARE(problems[1].part, QStringLiteral("Doc_0/T.xml"));
    QVERIFY(problems[1].text.contains(QStringLiteral("0 0 0 5")));
}

void TestProblemLog::problemsOfListsAreToldWithTheirEntries()
{
    const QTemporaryDir folder;
    const auto entry = [](const QByteArray& name, const QByteArray& attributes) {
        return "<ofd:" + name + ' ' + attributes + "><ofd:FileLoc>gone.xml</ofd:FileLoc></ofd:" + name + '>';
    };
    OfdFile file = OfdFile::WithPages(1).Tail("<ofd:Annotations>A.xml</ofd:Annotations><ofd:CustomTags>T.xml"
                                              "</ofd:CustomTags><ofd:Attachments>F.xml</ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/here.txt"), "text");
    file.Set(QStringLiteral("Doc_0/A.xml"), Element("Annotations", entry("Page", "PageID=\"1\"")));
    file.Set(QStringLiteral("Doc_0/T.xml"), Element("CustomTags", entry("CustomTag", "NameSpace=\"n\"")));
    file.Set(QStringLiteral("Doc_0/F.xml"),
             Element("Attachments", "<ofd:Attachment ID=\"a1\" Name=\"1\"><ofd:FileLoc>here.txt</ofd:FileLoc>"
                                    "</ofd:Attachment>" +
                                        entry("Attachment", "ID=\" a1\" Name=\"2\"")));
    const OpenResult opened = OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("lists.ofd"))));
    QVERIFY(opened);
    opened.document->GetPage(0)->LoadAnnots();
    QCOMPARE(opened.document->CustomTagRootCount(), 0);
    const std::vector<Problem> problems = opened.document->GetProblems();
    QCOMPARE(int(problems.size()), 4);
    for (const Problem& problem : problems) {
        const bool isDouble = problem.kind == ProblemKind::DuplicateIdentifier;
        QVERIFY(isDouble || problem.kind == ProblemKind::MissingPart);
        QVERIFY(problem.text.contains(isDouble ? QStringLiteral("ID a1") : QStringLiteral("gone.xml")));
        const QByteArray element = file.Part(problem.part).mid(int(problem.offset));
        QVERIFY2(element.startsWith("<ofd:Page ") || element.startsWith("<ofd:CustomTag ") ||
                     element.startsWith("<ofd:Attachment ID=\" a1"),
                 element.constData());
    }
}

void TestProblemLog::listsInTheDocumentAndMissingIdentifiersOfAnnotationsAreNoProblems()
{
    const QTemporaryDir folder;
    OfdFile file = OfdFile::WithPages(1);
    file.Tail(
        "<ofd:Annotations>List.xml</ofd:Annotations><ofd:Attachments>"
        "<ofd:Attachment ID=\"5\" Name=\"a\"><ofd:FileLoc>a.txt</ofd:FileLoc></ofd:Attachment></ofd:Attachments>");
    file.Set(QStringLiteral("Doc_0/a.txt"), "text");
    file.Set(QStringLiteral("Doc_0/List.xml"),
             Element("Annotations", "<ofd:Page PageID=\"1\"><ofd:FileLoc>Notes.xml</ofd:FileLoc></ofd:Page>"));
    const QByteArray note = "<ofd:Annot Type=\"Stamp\"><ofd:Appearance Boundary=\"1 1 9 9\"/></ofd:Annot>";
    file.Set(QStringLiteral("Doc_0/Notes.xml"), Element("PageAnnot", note + note));
    const OpenResult opened = OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("lists.ofd"))));
    QVERIFY(opened);
    QCOMPARE(opened.document->GetAttachmentCount(), 1);
    opened.document->Renderer()->RenderPage({});
    for (const Problem& problem : opened.document->GetProblems())
        QFAIL(qPrintable(problem.text));
}

void TestProblemLog::aDocumentTellsWhereInItsPartsThingsAreWrong()
{
    const QTemporaryDir folder;
    const QByteArray bad = "<ofd:PathObject ID=\"77\" Boundary=\"0 0 ten 10\"><ofd:FillColor Value=\"1 2 3\"/>"
                           "<ofd:AbbreviatedData>M 0 0 L 5 5 ?</ofd:AbbreviatedData></ofd:PathObject>";
    const OfdFile file = OfdFile::WithPage(bad);
    const OpenResult opened = OfdDocument::Open(file.Write(folder.filePath(QStringLiteral("bad.ofd"))));
    QVERIFY(opened);
    QVERIFY(opened.document->GetProblems().empty()); // nothing of the page was read yet
    for (int i = 0; i < 3; ++i)
        opened.document->Renderer()->RenderPage({});
    const std::vector<Problem> problems = opened.document->GetProblems();
    QCOMPARE(int(problems.size()), 2);
    for (const Problem& problem : problems) {
        QCOMPARE(problem.kind, ProblemKind::BadValue);
        QCOMPARE(problem.objectId, 77);
        QVERIFY(file.Part(problem.part).mid(int(problem.offset)).startsWith("<ofd:PathObject ID=\"77\""));
    }
    QVERIFY(problems[0].text.contains(QStringLiteral("0 0 ten 10")) ||
            problems[1].text.contains(QStringLiteral("0 0 ten 10")));
}

TETO_TEST_MAIN(TestProblemLog)
#include "test_problem_log.moc"
