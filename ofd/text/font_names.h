#pragma once

#include <QString>
#include <QStringList>

namespace ofd {

struct FontResource;

// What a font that is not embedded looks like.
enum class FontStyleClass { Song, Hei, Kai, FangSong, Serif, Sans, Mono };

// Tells the style of a face from its name in either script, its family and its flags.
FontStyleClass ClassifyFont(const FontResource& font);
// Whose forms of the shared Chinese characters a font draws.
enum class FontScript { Simplified, Traditional, Japanese, Korean };

// Tells the script from the font's character set, else from its name.
FontScript ScriptOf(const FontResource& font);
// Names of families to try for a style, the best first; every list ends in a face that covers Chinese.
QStringList SubstituteFamilies(FontStyleClass style, FontScript script = FontScript::Simplified);
// The names under which the same face, or one made to take its place, goes elsewhere: in Chinese, in Latin letters, in
// the names of other systems. Empty for most.
QStringList OtherNamesOf(const QString& family);
// A face name without a subset mark ("ABCDEF+"), quotes, and style words at its end ("-Bold", ",Italic", " Bold
// Italic", "-粗体"); the flags say which were cut off, and stay as they are without any.
QString BareFamilyName(const QString& name, bool* isBold, bool* isItalic);

} // namespace ofd
