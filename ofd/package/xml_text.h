#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace ofd {

// UTF-8 for use between tags. What XML forbids altogether is dropped; half a surrogate pair becomes U+FFFD.
QByteArray EscapeText(const QString& text);
// UTF-8 for use between double quotes.
QByteArray EscapeAttribute(const QString& text);
// An identifier as files write it: those above the range of int are negative numbers in the program.
QString FormatId(int id);
// At most that many decimals, no exponent, no trailing zeros, no "-0"; "0" for what is not finite. Four decimals suit
// lengths, six suit matrices.
QByteArray FormatNumber(double value, int decimals = 4);
// Numbers with blanks between them.
QByteArray FormatNumbers(const std::vector<double>& values, int decimals = 4);

// Builds a piece of XML for XmlEdit or for a new part:
//   XmlFragment("ofd:").Open("Bookmark").Attribute("Name", title).Open("Dest")....Close().Close().GetBytes()
// Everything is escaped. An element without content is written as an empty tag.
class XmlFragment
{
public:
    // The prefix goes in front of every element name given to Open; it ends in ':' or is empty.
    explicit XmlFragment(const QByteArray& prefix = {});

    XmlFragment& Open(const QByteArray& localName);
    // Only between Open and the first content. The name is written as it is.
    XmlFragment& Attribute(const QByteArray& name, const QString& value);
    XmlFragment& Attribute(const QByteArray& name, double value, int decimals = 4);
    XmlFragment& Text(const QString& text);
    // Bytes that are XML already, for example a subtree copied from a part.
    XmlFragment& Raw(const QByteArray& xml);
    XmlFragment& Close();
    // <localName>text</localName>
    XmlFragment& Element(const QByteArray& localName, const QString& text);
    // Closes what is still open and gives the text.
    QByteArray GetBytes();

private:
    void FinishStartTag();

    QByteArray prefix;
    QByteArray bytes;
    std::vector<QByteArray> openNames;
    bool isInStartTag = false;
};

} // namespace ofd
