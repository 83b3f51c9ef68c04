#pragma once

#include <QString>

// Documents of plain sheets in the text form.

inline const QString threePages = QStringLiteral("page 210 297\npage 100 200\npage 210 297\n");

inline QString ManyPages(int count)
{
    return QStringLiteral("page 210 297\n").repeated(count);
}
