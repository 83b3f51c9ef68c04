#pragma once

#include <frame/base/geometry.h>

#include <QString>

// Takes one line of the text form apart. Words stand between blanks; a part in double quotes keeps its blanks, and a
// backslash in it takes the next character as it is ("\n" is a line feed).
class LineWords
{
public:
    explicit LineWords(const QString& line = QString())
        : line(line)
    {
    }
    bool AtEnd() const { return at >= line.size(); }
    // The next word without its quotes; false at the end and when quotes are not closed.
    bool Next(QString* word);
    // The next word, split at its first "="; the value is null when there is none.
    bool NextPair(QString* key, QString* value);
    // Steps over "key=" when that comes next and no quotes follow it.
    bool SkipKey(const QString& key);
    // What is left of the line, as it stands.
    QString Rest();
    // What is left of the line; without its quotes when it is one quoted word.
    QString Name();

private:
    void SkipBlanks();

    QString line;
    int at = 0;
};

// "left,top,right,bottom" in mm.
bool ReadRect(const QString& text, CCA_GRect* rect);
// A number above zero.
bool ReadId(const QString& text, int* id);
// "yes" or "no".
bool ReadYesNo(const QString& text, bool* answer);
