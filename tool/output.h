#pragma once

#include <frame/json/ovjson.h>

#include <QString>

// The standard output, told apart from errors. A write that fails is remembered, and the later ones do nothing.
class Output
{
public:
    // A line of text in UTF-8.
    void Line(const QString& text);
    void Bytes(const QByteArray& bytes);
    // The whole answer of a call with --json.
    void Json(const OVJson& value);
    // Writes out what is left; false, and the reason told, when not all of it could be written.
    bool Finish();
    bool HasFailed() const { return error != 0; }

private:
    int error = 0; // of the system; 0 as long as all went well
};

// To a ten-thousandth, since coordinates are kept in single precision.
double Rounded(double value);
// The text on one line: line ends and other control characters, which would confuse or even command a terminal, become
// blanks.
QString OneLine(const QString& text);
// The text with its lines, without other control characters.
QString PlainLines(const QString& text);
