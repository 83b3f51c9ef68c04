#pragma once

#include "package_error.h"

#include <QByteArray>

namespace ofd {

// A piece of XML text, told by its delimiters only.
struct XmlToken
{
    enum Kind { End, Text, StartTag, EmptyTag, EndTag, Comment, CData, Instruction, DocType, Bad };

    Kind kind = End;
    qint64 begin = 0;
    qint64 end = 0;
};

// Walks over XML bytes from delimiter to delimiter. It knows quotes, comments, CDATA and processing instructions and
// nothing else; names are not checked. No recursion, no memory.
class XmlScanner
{
public:
    XmlScanner(const QByteArray& bytes, qint64 begin)
        : data(bytes.constData())
        , size(bytes.size())
        , at(begin)
    {
    }

    XmlToken Next();

private:
    XmlToken Markup();
    XmlToken Delimited(XmlToken::Kind kind, int openLength, const char* close);
    qint64 TagEnd(qint64 from) const;

    const char* data; // not owned
    qint64 size;
    qint64 at;
};

// Looks the text over before it is parsed, since the parser's cleaning up recurses and takes memory by element: refuses
// a DOCTYPE, zero bytes, and what is too deep or has too many elements.
PackageError CheckXml(const QByteArray& bytes);

} // namespace ofd
