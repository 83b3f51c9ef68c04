#include "strings.h"

#include <cwchar>

CCA_String CCA_StringConverter::unicode_to_utf8(const wchar_t* text, int length)
{
    if (!text)
        return CCA_String();
    return CCA_String(QString::fromWCharArray(text, length).toUtf8());
}

CCA_WString CCA_StringConverter::utf8_to_unicode(const char* text, int length)
{
    if (!text)
        return CCA_WString();
    return CCA_WString(QString::fromUtf8(text, length));
}

wchar_t* CCA_AllocWide(const QString& text)
{
    // A wide text never has more units than the UTF-16 one.
    auto* wide = new wchar_t[static_cast<size_t>(text.size()) + 1];
    const int length = text.toWCharArray(wide);
    wide[length] = L'\0';
    return wide;
}

void CCA_FreeWide(wchar_t* text)
{
    delete[] text;
}
