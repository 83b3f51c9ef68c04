#pragma once

#include <QByteArray>
#include <QString>

namespace ofd {

// The text of an entry's name: UTF-8 when flagged or valid as such, else GB18030, else code page 437.
QString DecodeEntryName(const QByteArray& raw, bool isFlaggedUtf8);
// The name as a part's key: backslashes become slashes, "/" and "./" in front are dropped.
QString NormaliseEntryName(const QString& name);
// ASCII capitals made small, all else as it is.
QString FoldAsciiCase(const QString& name);
// "Doc_0/Pages/" of "Doc_0/Pages/Page_0.xml"; empty for a part at the root.
QString FolderOf(const QString& partName);
// "Page_0.xml" of the above.
QString FileNameOf(const QString& partName);

} // namespace ofd
