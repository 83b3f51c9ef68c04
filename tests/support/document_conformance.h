#pragma once

#include <frame/document/ig_document.h>

#include <QObject>
#include <QString>
#include <QVector>

#include <memory>

// How the conformance suite gets at a document backend.
class ConformanceBackend
{
public:
    virtual ~ConformanceBackend();
    // A document with what the text form of MemoryDocument describes, as if just opened. The ids of pages, templates,
    // annotations and attachments are kept; ids of page objects may differ, since the checks learn them from the
    // document. A text is set in a font of 4 mm, with its glyphs in the boxes that the text form gives it, or near.
    // Null fails the check.
    virtual std::unique_ptr<IG_Document> Make(const QString& fixtureText) = 0;
};

// One promise of the interfaces of frame/document. `run` uses QVERIFY and its kin, so it must run inside a Qt test.
struct ConformanceCheck
{
    const char* name;
    void (*run)(ConformanceBackend& backend);
};

// All checks: trees, pages, content, annotations, attachments, links, rights and other states, renderer.
QVector<ConformanceCheck> ConformanceChecks();

// A test class that runs every check on one backend; derive from it, give it the backend, and add TETO_TEST_MAIN.
class ConformanceTest : public QObject
{
    Q_OBJECT

public:
    explicit ConformanceTest(std::unique_ptr<ConformanceBackend> backend);
    ~ConformanceTest() override;

private slots:
    void theBackendKeepsThePromise_data();
    void theBackendKeepsThePromise();

private:
    std::unique_ptr<ConformanceBackend> backend;
};
