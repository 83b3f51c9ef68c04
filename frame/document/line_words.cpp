#include "line_words.h"

#include <QStringList>

#include <cmath>

void LineWords::SkipBlanks()
{
    while (!AtEnd() && line.at(at) == QLatin1Char(' '))
        ++at;
}

bool LineWords::Next(QString* word)
{
    if (AtEnd())
        return false;
    word->clear();
    bool isQuoted = false;
    for (; !AtEnd() && (isQuoted || line.at(at) != QLatin1Char(' ')); ++at) {
        const QChar letter = line.at(at);
        if (letter == QLatin1Char('"')) {
            isQuoted = !isQuoted;
        } else if (isQuoted && letter == QLatin1Char('\\') && at + 1 < line.size()) {
            ++at;
            *word += line.at(at) == QLatin1Char('n') ? QLatin1Char('\n') : line.at(at);
        } else {
            *word += letter;
        }
    }
    SkipBlanks();
    return !isQuoted;
}

bool LineWords::NextPair(QString* key, QString* value)
{
    QString word;
    if (!Next(&word))
        return false;
    const int sign = word.indexOf(QLatin1Char('='));
    *key = sign < 0 ? word : word.left(sign);
    // Not null even when nothing follows the sign.
    *value = sign < 0 ? QString() : QLatin1String("") + word.mid(sign + 1);
    return true;
}

bool LineWords::SkipKey(const QString& key)
{
    const QString wanted = key + QLatin1Char('=');
    const QStringRef next = line.midRef(at);
    if (!next.startsWith(wanted) || next.mid(wanted.size()).startsWith(QLatin1Char('"')))
        return false;
    at += wanted.size();
    return true;
}

QString LineWords::Rest()
{
    const QString rest = line.mid(at);
    at = line.size();
    return rest;
}

QString LineWords::Name()
{
    LineWords quoted = *this;
    QString name;
    if (!line.midRef(at).startsWith(QLatin1Char('"')) || !quoted.Next(&name) || !quoted.AtEnd())
        return Rest();
    *this = quoted;
    return name;
}

bool ReadRect(const QString& text, CCA_GRect* rect)
{
    const QStringList parts = text.split(QLatin1Char(','));
    float numbers[4] = {};
    if (parts.size() != 4)
        return false;
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = parts.at(i).toFloat(&isNumber);
        if (!isNumber || !std::isfinite(numbers[i]))
            return false;
    }
    rect->SetRect(numbers[0], numbers[1], numbers[2], numbers[3]);
    return true;
}

bool ReadId(const QString& text, int* id)
{
    bool isNumber = false;
    *id = text.toInt(&isNumber);
    return isNumber && *id > 0;
}

bool ReadYesNo(const QString& text, bool* answer)
{
    *answer = text == QLatin1String("yes");
    return *answer || text == QLatin1String("no");
}
