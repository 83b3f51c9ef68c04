#pragma once

#include "outline_gestures.h"

#include <frame/utils/dpi.h>
#include <outline/outline_tree.h>

#include <QImage>
#include <QModelIndex>

// What tests of single cells of the outline share.

inline QString Entry(const QString& title, const QString& rest = QStringLiteral("page=1"))
{
    return QStringLiteral("outline \"%1\" %2\n").arg(title, rest);
}

inline QString Page()
{
    return QStringLiteral("page 210 297\n");
}

inline QModelIndex Index(const OutlineTab* tab, const QString& title, int column)
{
    return tab->Tree()->IndexOf(tab->Item(title)).siblingAtColumn(column);
}

// The box of what is darker than any ground.
inline QRect Ink(const QImage& image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 150 && image.pixelColor(x, y) != QColor(Qt::red))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

inline int Height(const OutlineTab* tab, const QString& title)
{
    return Gesture::TitleRect(tab, title).height();
}

inline void SetScale(float scale)
{
    Utils::OVDpi::Instance()->OverrideScale(scale);
}
