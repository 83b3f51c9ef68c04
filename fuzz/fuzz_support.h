#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace ofd {
class DocumentStore;
class OfdDocument;
} // namespace ofd

namespace fuzz {

// What every target with pictures or fonts calls from LLVMFuzzerInitialize: an application without a display, and no
// log lines, which would take more time than what is tested.
void StartApplication(int* argc, char** argv);

// The parts of the plain sample document that can be replaced by hostile bytes, in a fixed order, XML parts first.
const QStringList& PartNames();
// The plain sample document, packed without compression, with those bytes in the place of one part.
QByteArray DocumentWith(const QString& part, const QByteArray& bytes);

// A whole file through everything that a reader does with it: opened, listed, its first pages painted and read, an edit
// saved into a copy.
void ReadWholeFile(const QByteArray& bytes);
// The first page of a document in memory, painted small and its text and objects placed.
void PaintFirstPage(const QByteArray& package);

} // namespace fuzz
