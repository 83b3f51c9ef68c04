#pragma once

#include "package.h"

#include <QSizeF>

#include <functional>

namespace samples {

// A way in which documents met in practice differ from what the format prescribes, shown on an otherwise plain document
// of two pages.
struct Deviation
{
    const char* name;
    const char* group;
    const char* shows;
    const char* mustDo;                           // what a reader does with it
    void (*change)(Package&) = nullptr;           // changes the parts of the plain document
    QByteArray (*pack)(const Package&) = nullptr; // writes the container; null: an ordinary one
};

std::vector<Deviation> ContainerDeviations();
std::vector<Deviation> XmlDeviations();
std::vector<Deviation> ReferenceDeviations();
std::vector<Deviation> DocumentDeviations();
std::vector<Deviation> ContentDeviations();
std::vector<Deviation> ListDeviations();
std::vector<Deviation> SignatureDeviations();
std::vector<Deviation> ProducerDeviations();

// The plain document: a template, text, a path and a picture on the first page, text on the second, an outline of two
// entries, a bookmark, a stamp with a remark, a visible and a hidden attachment, a tag file with two tags. The name
// stands on the first page, what it shows on the second, so that the ids of the first page are the same in all: page 6,
// layer 7, text 8, path 9, picture 10; page 11; font 1, picture resource 2, template 3.
Package PlainDocument(const QString& name, const QString& shows);

// The parts of the plain document.
extern const QString kEntryPart, kDocument, kFirstPage, kSecondPage, kTemplate, kPublicRes, kDocumentRes,
    kAnnotationList, kAnnotations, kTagList, kTagFile, kAttachmentList, kPicture;

// Puts objects at the end of the first page's only layer. The ids start at 900.
void AddToFirstPage(Package& package, const QByteArray& objects);
// Adds resources (whole groups such as Fonts) at the end of the document's own resource part.
void AddResources(Package& package, const QByteArray& groups);
// Moves the element of that name (with its content, to its end tag or as an empty element) to the end of its parent.
void MoveLast(Package& package, const QString& part, const QByteArray& element, const QByteArray& parent);
// The bytes of the first element of that name, end tag included.
QByteArray ElementText(Package& package, const QString& part, const QByteArray& element);

} // namespace samples
