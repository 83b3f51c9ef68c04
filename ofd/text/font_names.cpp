#include "font_names.h"

#include <ofd/model/resources.h>

namespace ofd {

namespace {

struct StyleWords
{
    FontStyleClass style;
    QStringList words; // small letters, no blanks
};

// Order matters: "fangsong" contains "song".
const QVector<StyleWords>& Table()
{
    static const QVector<StyleWords> table = {
        {FontStyleClass::FangSong,
         {QStringLiteral("fangsong"), QString::fromUtf8("仿宋"), QStringLiteral("fzfs"), QStringLiteral("stfs")}},
        {FontStyleClass::Kai, {QStringLiteral("kai"), QString::fromUtf8("楷"), QStringLiteral("fzkt")}},
        {FontStyleClass::Hei,
         {QStringLiteral("hei"), QString::fromUtf8("黑"), QStringLiteral("fzht"), QString::fromUtf8("等线"),
          QStringLiteral("dengxian"), QString::fromUtf8("圆"), QStringLiteral("notosanscjk"),
          QStringLiteral("sourcehansans")}},
        {FontStyleClass::Song,
         {QStringLiteral("song"), QStringLiteral("simsun"), QString::fromUtf8("宋"), QStringLiteral("fzss"),
          QStringLiteral("ming"), QString::fromUtf8("明"), QStringLiteral("notoserifcjk"),
          QStringLiteral("sourcehanserif")}},
        {FontStyleClass::Mono,
         {QStringLiteral("courier"), QStringLiteral("mono"), QStringLiteral("consolas"), QStringLiteral("menlo")}},
        {FontStyleClass::Sans,
         {QStringLiteral("arial"), QStringLiteral("helvetica"), QStringLiteral("sans"), QStringLiteral("verdana"),
          QStringLiteral("tahoma"), QStringLiteral("calibri"), QStringLiteral("segoe")}},
        {FontStyleClass::Serif,
         {QStringLiteral("times"), QStringLiteral("serif"), QStringLiteral("georgia"), QStringLiteral("cambria"),
          QStringLiteral("roman"), QStringLiteral("garamond")}},
    };
    return table;
}

QString Squeezed(const QString& name)
{
    QString text = name.toLower();
    return text.remove(QLatin1Char(' ')).remove(QLatin1Char('-')).remove(QLatin1Char('_'));
}

bool ContainsAny(const QString& text, const QStringList& words)
{
    for (const QString& word : words) {
        if (text.contains(word))
            return true;
    }
    return false;
}

} // namespace

FontStyleClass ClassifyFont(const FontResource& font)
{
    for (const QString& name : {Squeezed(font.fontName), Squeezed(font.familyName)}) {
        if (name.contains(QLatin1String("yahei")))
            return FontStyleClass::Hei;
        for (const StyleWords& entry : Table()) {
            if (ContainsAny(name, entry.words))
                return entry.style;
        }
    }
    if (font.isFixedWidth)
        return FontStyleClass::Mono;
    return font.isSerif ? FontStyleClass::Serif : FontStyleClass::Song;
}

QStringList SubstituteFamilies(FontStyleClass style)
{
    const QString serifCjk = QStringLiteral("Noto Serif CJK SC");
    const QString sansCjk = QStringLiteral("Noto Sans CJK SC");
    switch (style) {
    case FontStyleClass::Song:
        return {QStringLiteral("SimSun"), QStringLiteral("Source Han Serif SC"), serifCjk,
                QStringLiteral("AR PL UMing CN"), sansCjk};
    case FontStyleClass::Hei:
        return {QStringLiteral("SimHei"), QStringLiteral("Source Han Sans SC"), sansCjk,
                QStringLiteral("WenQuanYi Zen Hei"), serifCjk};
    case FontStyleClass::Kai:
        return {QStringLiteral("KaiTi"), QStringLiteral("AR PL UKai CN"), serifCjk, sansCjk};
    case FontStyleClass::FangSong:
        return {QStringLiteral("FangSong"), serifCjk, QStringLiteral("AR PL UMing CN"), sansCjk};
    case FontStyleClass::Serif:
        return {QStringLiteral("Liberation Serif"), QStringLiteral("DejaVu Serif"), serifCjk, sansCjk};
    case FontStyleClass::Sans:
        return {QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans"), sansCjk, serifCjk};
    case FontStyleClass::Mono:
        return {QStringLiteral("Liberation Mono"), QStringLiteral("DejaVu Sans Mono"), sansCjk, serifCjk};
    }
    return {serifCjk};
}

QString BareFamilyName(const QString& name, bool* isBold, bool* isItalic)
{
    QString family = name.section(QLatin1Char('+'), -1);
    const int cut = family.indexOf(QLatin1Char(','));
    const int dash = cut >= 0 ? cut : family.lastIndexOf(QLatin1Char('-'));
    const QString style = dash > 0 ? family.mid(dash + 1).toLower() : QString();
    const bool saysBold = style.contains(QLatin1String("bold"));
    const bool saysItalic = style.contains(QLatin1String("italic")) || style.contains(QLatin1String("oblique"));
    *isBold |= saysBold;
    *isItalic |= saysItalic;
    if (saysBold || saysItalic || style == QLatin1String("regular"))
        family.truncate(dash);
    return family.trimmed();
}

} // namespace ofd
