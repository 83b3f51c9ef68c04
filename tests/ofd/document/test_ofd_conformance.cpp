#include "document_export.h"

#include <frame/document/memory_document.h>
#include <ofd/ofd_document.h>
#include <tests/support/document_conformance.h>
#include <tests/support/test_main.h>

#include <QDebug>
#include <QTemporaryDir>

namespace {

// Writes the described document into a file and opens that.
class OfdBackend : public ConformanceBackend
{
public:
    std::unique_ptr<IG_Document> Make(const QString& fixtureText) override
    {
        const std::unique_ptr<MemoryDocument> described = MemoryDocument::FromText(fixtureText);
        if (!described)
            return nullptr;
        const QString path = folder.filePath(QStringLiteral("%1.ofd").arg(++count));
        ExportDocument(*described, path);
        ofd::OpenResult result = ofd::OfdDocument::Open(path, described->IsReadOnly());
        if (!result)
            qWarning() << result.error;
        return std::move(result.document);
    }

private:
    QTemporaryDir folder;
    int count = 0;
};

} // namespace

class TestOfdConformance : public ConformanceTest
{
public:
    TestOfdConformance()
        : ConformanceTest(std::make_unique<OfdBackend>())
    {
    }
};

TETO_TEST_MAIN(TestOfdConformance)
