#include "output.h"

#include "tool_command.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace {

bool IsControl(QChar c)
{
    return c.category() == QChar::Other_Control;
}

} // namespace

void Output::Line(const QString& text)
{
    Bytes(text.toUtf8() + '\n');
}

void Output::Bytes(const QByteArray& bytes)
{
    if (error)
        return;
    errno = 0;
    if (std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout) != size_t(bytes.size()))
        error = errno ? errno : EIO;
}

void Output::Json(const OVJson& value)
{
    OVJsonConfig config;
    config.indented = true;
    Bytes(OVJsonFactory::BuildJsonString(std::make_shared<OVJson>(value), &config));
    Bytes("\n");
}

bool Output::Finish()
{
    errno = 0;
    if (!error && std::fflush(stdout) != 0)
        error = errno ? errno : EIO;
    if (error)
        TellError(QStringLiteral("The output cannot be written: %1").arg(QString::fromLocal8Bit(std::strerror(error))));
    return !error;
}

double Rounded(double value)
{
    return std::round(value * 1e4) / 1e4;
}

QString OneLine(const QString& text)
{
    QString line = text;
    for (QChar& c : line) {
        if (IsControl(c))
            c = QLatin1Char(' ');
    }
    return line;
}

QString PlainLines(const QString& text)
{
    QString lines;
    for (const QChar c : text) {
        if (!IsControl(c) || c == QLatin1Char('\n') || c == QLatin1Char('\t'))
            lines += c;
    }
    return lines;
}
