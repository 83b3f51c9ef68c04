#include "text_rules.h"

QString RemoveBlanks(const QString& text)
{
    const QLatin1Char blank(' ');
    int begin = 0;
    int end = text.size();
    while (begin < end && text.at(begin) == blank)
        ++begin;
    while (end > begin && text.at(end - 1) == blank)
        --end;
    return text.mid(begin, end - begin);
}

QString CutText(const QString& text, int most)
{
    if (text.size() <= most)
        return text;
    const bool halvesOne = most > 0 && text.at(most - 1).isHighSurrogate() && text.at(most).isLowSurrogate();
    return text.left(halvesOne ? most - 1 : most);
}
