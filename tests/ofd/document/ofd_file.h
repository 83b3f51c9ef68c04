#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

// A package built by hand for one test: an entry part, a document part and pages of whatever the test writes into them.
class OfdFile
{
public:
    // A document with one page of 100 by 100 mm that has this content.
    static OfdFile WithPage(const QByteArray& content);
    // A document with so many pages of 100 by 100 mm; their ids are 1, 2, …
    static OfdFile WithPages(int count);

    OfdFile& Set(const QString& part, const QByteArray& bytes);
    OfdFile& Remove(const QString& part);
    // What stands in the document part behind its pages, and inside its common data.
    OfdFile& Tail(const QByteArray& xml);
    OfdFile& Common(const QByteArray& xml);
    // The part with resources of all kinds.
    OfdFile& Resources(const QByteArray& xml);
    // Writes it; fails the test run when that goes wrong.
    QString Write(const QString& path) const;

    QByteArray Part(const QString& name) const { return parts.value(name); }

private:
    void MakeDocument();

    int pageCount = 0;
    QByteArray tail;
    QByteArray common;
    QMap<QString, QByteArray> parts;
};

// A part of a package on the disk; empty when there is none.
QByteArray PartOf(const QString& path, const QString& part);
// All of a file.
QByteArray BytesOf(const QString& path);
// An OFD element with the usual declaration: "<ofd:Page xmlns:ofd=…>content</ofd:Page>".
QByteArray Element(const QByteArray& name, const QByteArray& content);
// A page that has one body layer with these objects.
QByteArray PageXml(const QByteArray& objects);
