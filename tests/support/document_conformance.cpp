#include "document_conformance.h"

#include "conformance_checks.h"

#include <QtTest>

ConformanceBackend::~ConformanceBackend() = default;

QString ConformanceFixture()
{
    return QStringLiteral(
        "page 210 297\n"
        "  layer 1 Text\n"
        "  text 20 30 Hello\n"
        "  text 20 50 World\n"
        "  layer 2 Stamps\n"
        "  text 100 200 PAID\n"
        "  template 101 Background\n"
        "  annot id=41 type=8 subtype=Stamp creator=Li date=2020-01-02 rect=10,10,40,20 remark=first\n"
        "  annot id=42 type=4 creator=Bo date=2021-03-04 rect=50,60,90,70\n"
        "page 100 150 id=7\n"
        "  layer 1 Text\n"
        "  text 10 10 Second\n"
        "page 210 297 id=9\n"
        "template 101 Background Letterhead\n"
        "template 102 Foreground Seal\n"
        "bookmark Alpha page=7 rect=0,10,100,50 zoom=1 mode=0\n"
        "bookmark Beta page=1 mode=1\n"
        "outline One page=1\n"
        "  outline Inner page=7\n"
        "    outline Innermost page=9\n"
        "outline Two page=9 closed\n"
        "tag Invoice\n"
        "  tag Buyer kind=company objects=1:1\n"
        "  tag Seller objects=1:2\n"
        "attachment data xml 2 31\n"
        "attachment original pdf 1 32 hidden\n");
}

QVector<ConformanceCheck> ConformanceChecks()
{
    return TreeConformanceChecks() + PageConformanceChecks() + ContentConformanceChecks() +
           AttachmentConformanceChecks() + TextConformanceChecks() + LinkConformanceChecks() + StateConformanceChecks();
}

ConformanceTest::ConformanceTest(std::unique_ptr<ConformanceBackend> backend)
    : backend(std::move(backend))
{
}

ConformanceTest::~ConformanceTest() = default;

void ConformanceTest::theBackendKeepsThePromise_data()
{
    QTest::addColumn<int>("position");
    const QVector<ConformanceCheck> checks = ConformanceChecks();
    for (int i = 0; i < checks.size(); ++i)
        QTest::newRow(checks.at(i).name) << i;
}

void ConformanceTest::theBackendKeepsThePromise()
{
    QFETCH(int, position);
    ConformanceChecks().at(position).run(*backend);
}
