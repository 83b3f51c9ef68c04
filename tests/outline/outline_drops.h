#pragma once

#include "outline_gestures.h"

// Top-level entries with these titles.
inline QString Flat(const QString& titles)
{
    QString text = QStringLiteral("page 210 297\n");
    for (const QChar title : titles)
        text += QStringLiteral("outline \"%1\" page=1\n").arg(title);
    return text;
}
