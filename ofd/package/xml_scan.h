#pragma once

#include "package_error.h"

#include <QByteArray>

#include <string_view>

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

// The name in a start, end or empty tag, with its prefix. It lives as long as the bytes.
std::string_view TagName(const QByteArray& bytes, const XmlToken& tag);

// A range of bytes; the end is one past.
struct XmlRange
{
    qint64 begin = 0;
    qint64 end = 0;
};

// What stands between the tags of the document element's first child of that local name. Empty when there is nothing,
// and when the tags inside do not match: then the parser has the reason.
XmlRange ContentOfChild(const QByteArray& bytes, std::string_view localName);

// Looks the text over before it is parsed, since the parser's cleaning up recurses and takes memory by element: refuses
// a DOCTYPE, zero bytes, and what is too deep or has too many elements.
PackageError CheckXml(const QByteArray& bytes);

} // namespace ofd
