#include "font_names.h"

#include <ofd/model/resources.h>

#include <algorithm>
#include <initializer_list>

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
          QStringLiteral("dengxian"), QString::fromUtf8("圆"), QStringLiteral("gothic"), QString::fromUtf8("ゴシック"),
          QStringLiteral("gulim"), QString::fromUtf8("굴림"), QStringLiteral("malgun"), QStringLiteral("meiryo"),
          QStringLiteral("notosanscjk"), QStringLiteral("sourcehansans")}},
        {FontStyleClass::Song,
         {QStringLiteral("song"), QStringLiteral("simsun"), QString::fromUtf8("宋"), QStringLiteral("fzss"),
          QStringLiteral("ming"), QString::fromUtf8("明"), QStringLiteral("mincho"), QStringLiteral("batang"),
          QString::fromUtf8("바탕"), QStringLiteral("notoserifcjk"), QStringLiteral("sourcehanserif")}},
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

// Each row has the names of one face, or of a face and those made to its measures.
const QVector<QStringList>& SameFaces()
{
    static const QVector<QStringList> rows = [] {
        const char* const table[] = {
            "宋体|SimSun|新宋体|NSimSun",
            "黑体|SimHei",
            "楷体|KaiTi|楷体_GB2312|KaiTi_GB2312|SimKai",
            "仿宋|FangSong|仿宋_GB2312|FangSong_GB2312|SimFang",
            "微软雅黑|Microsoft YaHei|MicrosoftYaHei",
            "等线|DengXian",
            "华文宋体|STSong",
            "华文中宋|STZhongsong",
            "华文黑体|STHeiti",
            "华文楷体|STKaiti",
            "华文仿宋|STFangsong",
            "隶书|LiSu",
            "幼圆|YouYuan",
            "方正小标宋简体|FZXiaoBiaoSong-B05S|FZXBSJW--GB1-0",
            "思源宋体|Source Han Serif SC|Noto Serif CJK SC",
            "思源黑体|Source Han Sans SC|Noto Sans CJK SC",
            "細明體|MingLiU|新細明體|PMingLiU",
            "標楷體|DFKai-SB",
            "微軟正黑體|Microsoft JhengHei",
            "ＭＳ 明朝|MS Mincho|ＭＳ Ｐ明朝|MS PMincho",
            "ＭＳ ゴシック|MS Gothic|ＭＳ Ｐゴシック|MS PGothic",
            "바탕|Batang",
            "굴림|Gulim",
            "Arial Narrow|ArialNarrow|Liberation Sans Narrow",
            "Arial|ArialMT|Helvetica|Liberation Sans",
            "Times New Roman|TimesNewRomanPSMT|TimesNewRomanPS|Times|Times-Roman|Liberation Serif",
            "Courier New|CourierNewPSMT|CourierNewPS|Courier|Liberation Mono",
            "Calibri|Carlito",
            "Cambria|Caladea",
        };
        QVector<QStringList> made;
        for (const char* row : table)
            made.append(QString::fromUtf8(row).split(QLatin1Char('|')));
        return made;
    }();
    return rows;
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

// What the end of a face's name says of its style.
struct StyleWord
{
    bool isBold = false;
    bool isItalic = false;
    bool isRegular = false;
    bool isAlone = false; // nothing but such words: "BoldItalic", not "BoldMT"

    bool IsKnown() const { return isBold || isItalic || isRegular; }
};

StyleWord StyleOf(const QString& text)
{
    QString rest = Squeezed(text);
    const auto take = [&rest](std::initializer_list<const char*> words) {
        const int length = rest.size();
        for (const char* word : words)
            rest.remove(QString::fromUtf8(word));
        return rest.size() < length;
    };
    StyleWord style;
    style.isBold = take({"bold", "粗体", "加粗"});
    style.isItalic = take({"italic", "oblique", "斜体", "倾斜"});
    style.isRegular = take({"regular", "常规"});
    style.isAlone = rest.isEmpty();
    return style;
}

// Where the last word of a name that has more than one begins, with what is in front of it; -1 when there is none.
int StyleBegin(const QString& family)
{
    return std::max(family.lastIndexOf(QLatin1Char('-')), family.lastIndexOf(QLatin1Char(' ')));
}

// Without the quotes that some writers put around a name, and the "@" of faces for text that runs down.
QString WithoutMarks(const QString& name)
{
    static const QString marks = QStringLiteral("\"'@");
    QString bare = name.trimmed();
    while (!bare.isEmpty() && marks.contains(bare.at(0)))
        bare.remove(0, 1);
    while (!bare.isEmpty() && marks.contains(bare.at(bare.size() - 1)))
        bare.chop(1);
    return bare.trimmed();
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

FontScript ScriptOf(const FontResource& font)
{
    static const QVector<QPair<FontScript, QStringList>> words = {
        {FontScript::Traditional,
         {QStringLiteral("big5"), QStringLiteral("mingliu"), QString::fromUtf8("明體"), QString::fromUtf8("標楷"),
          QString::fromUtf8("正黑"), QStringLiteral("jhenghei"), QStringLiteral("cjktc")}},
        {FontScript::Japanese,
         {QStringLiteral("shiftjis"), QStringLiteral("mincho"), QString::fromUtf8("明朝"), QStringLiteral("msgothic"),
          QStringLiteral("mspgothic"), QString::fromUtf8("ゴシック"), QStringLiteral("meiryo"),
          QStringLiteral("cjkjp")}},
        {FontScript::Korean,
         {QStringLiteral("wansung"), QStringLiteral("johab"), QStringLiteral("batang"), QString::fromUtf8("바탕"),
          QStringLiteral("gulim"), QString::fromUtf8("굴림"), QStringLiteral("malgun"), QStringLiteral("cjkkr")}},
    };
    for (const QString& text : {Squeezed(font.charset), Squeezed(font.fontName), Squeezed(font.familyName)}) {
        for (const auto& row : words) {
            if (ContainsAny(text, row.second))
                return row.first;
        }
    }
    return FontScript::Simplified;
}

QStringList OtherNamesOf(const QString& family)
{
    const QString wanted = Squeezed(family);
    for (const QStringList& names : SameFaces()) {
        for (const QString& name : names) {
            if (Squeezed(name) != wanted)
                continue;
            QStringList others = names;
            others.removeOne(name);
            return others;
        }
    }
    return {};
}

QStringList SubstituteFamilies(FontStyleClass style, FontScript script)
{
    const QString region = script == FontScript::Traditional ? QStringLiteral("TC")
                           : script == FontScript::Japanese  ? QStringLiteral("JP")
                           : script == FontScript::Korean    ? QStringLiteral("KR")
                                                             : QStringLiteral("SC");
    const QString serifCjk = QStringLiteral("Noto Serif CJK ") + region;
    const QString sansCjk = QStringLiteral("Noto Sans CJK ") + region;
    if (script != FontScript::Simplified && style != FontStyleClass::Mono) // shapes of the script before the style
        return style == FontStyleClass::Hei || style == FontStyleClass::Sans ? QStringList{sansCjk, serifCjk}
                                                                             : QStringList{serifCjk, sansCjk};
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
    QString family = WithoutMarks(name.section(QLatin1Char('+'), -1));
    const int comma = family.indexOf(QLatin1Char(','));
    for (int cut = comma >= 0 ? comma : StyleBegin(family); cut > 0; cut = StyleBegin(family)) {
        const StyleWord style = StyleOf(family.mid(cut + 1));
        const bool isInName = family.at(cut) == QLatin1Char(' ') && !style.isAlone;
        if (isInName || !style.IsKnown())
            break;
        *isBold |= style.isBold;
        *isItalic |= style.isItalic;
        family = family.left(cut).trimmed();
    }
    return family;
}

} // namespace ofd
