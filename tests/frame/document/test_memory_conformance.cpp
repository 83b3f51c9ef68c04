#include <frame/document/memory_document.h>
#include <tests/support/document_conformance.h>
#include <tests/support/test_main.h>

#include <QDebug>

namespace {

class MemoryBackend : public ConformanceBackend
{
public:
    std::unique_ptr<IG_Document> Make(const QString& fixtureText) override
    {
        QString error;
        std::unique_ptr<IG_Document> document = MemoryDocument::FromText(fixtureText, &error);
        if (!document)
            qWarning() << error;
        return document;
    }
};

} // namespace

class TestMemoryConformance : public ConformanceTest
{
public:
    TestMemoryConformance()
        : ConformanceTest(std::make_unique<MemoryBackend>())
    {
    }
};

TETO_TEST_MAIN(TestMemoryConformance)
