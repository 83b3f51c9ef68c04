#pragma once

#include <QByteArray>
#include <QString>

namespace ofd {

// The text of an entry's name: UTF-8 when flagged or valid as such, else GB18030, else code page 437.
QString DecodeEntryName(const QByteArray& raw, bool isFlaggedUtf8);
// What the bytes of an unflagged name can be. Pairs of bytes such as those of "图片" are valid in both UTF-8 and
// GB18030; the other names of the archive tell which is meant.
enum class NameEncoding { Ascii, Utf8, Utf8OrGb18030, Gb18030, CodePage437 };
NameEncoding EncodingOfName(const QByteArray& raw);
// The text of a doubtful name in an archive that has names in GB18030.
QString DecodeGb18030Name(const QByteArray& raw);
// The name as a part's key: backslashes become slashes, "/" and "./" in front and doubled slashes are dropped.
QString NormaliseEntryName(const QString& name);
// ASCII capitals made small, all else as it is.
QString FoldAsciiCase(const QString& name);
// "Doc_0/Pages/" of "Doc_0/Pages/Page_0.xml"; empty for a part at the root.
QString FolderOf(const QString& partName);
// "Page_0.xml" of the above.
QString FileNameOf(const QString& partName);

} // namespace ofd
