#include "file_names.h"

#include <ofd/parse/attachment_reader.h>

#include <QRegularExpression>

namespace {

constexpr int MaxStemBytes = 180; // file systems take 255 bytes; the ending and a number must fit too
constexpr int MaxEndingBytes = 40;

QString Shortened(QString text, int maxBytes)
{
    while (text.toUtf8().size() > maxBytes)
        text.chop(text.size() > 1 && text.at(text.size() - 1).isLowSurrogate() ? 2 : 1);
    return text;
}

// Dots and blanks at the end vanish on some systems, and two names become one.
QString WithoutTail(QString text)
{
    while (text.endsWith(QLatin1Char('.')) || text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

bool IsDeviceName(const QString& stem)
{
    static const QRegularExpression devices(QStringLiteral("^(CON|PRN|AUX|NUL|COM[0-9]|LPT[0-9])(\\..*)?$"),
                                            QRegularExpression::CaseInsensitiveOption);
    return devices.match(stem).hasMatch();
}

} // namespace

QString AttachmentFileName(const QString& name, const QString& format)
{
    QString stem = WithoutTail(Shortened(WithoutTail(ofd::CleanedName(name)), MaxStemBytes));
    if (stem.isEmpty())
        stem = QStringLiteral("attachment");
    if (IsDeviceName(stem))
        stem.prepend(QLatin1Char('_'));
    const QString ending = WithoutTail(Shortened(ofd::CleanedName(format), MaxEndingBytes));
    return ending.isEmpty() ? stem : stem + QLatin1Char('.') + ending;
}

QString NumberedFileName(const QString& fileName, int number)
{
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    const QString stem = dot > 0 ? fileName.left(dot) : fileName;
    const QString ending = dot > 0 ? fileName.mid(dot) : QString();
    return QStringLiteral("%1 (%2)").arg(stem).arg(number) + ending;
}
