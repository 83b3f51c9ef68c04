#pragma once

#include <QChar>

// Characters of scripts that set no blanks between words, with their punctuation and their full-width forms. Any
// thread.
inline bool G_IsIdeographic(uint code)
{
    switch (QChar::script(code)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Bopomofo:
        return true;
    default:
        return (code >= 0x3000 && code <= 0x303f) || (code >= 0xff00 && code <= 0xffef);
    }
}
