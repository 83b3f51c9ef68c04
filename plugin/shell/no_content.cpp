#include "no_content.h"

#include <frame/utils/dpi.h>
#include <frame/utils/no_content.h>

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <QWidget>

QRect NoContentRect(const QSize& area)
{
    constexpr int raisedBy = 70; // px: the picture stands above the middle
    const Utils::OVDpi* dpi = Utils::OVDpi::Instance();
    const QSize size(qRound(dpi->ScaleSize(120)), qRound(dpi->ScaleSize(112)));
    return QRect(QPoint((area.width() - size.width()) / 2, (area.height() - raisedBy - size.height()) / 2), size);
}

void UpdateNoContentPicture(OVPaintNoContent*& noContent, QWidget* list, bool isEmpty, const QString& picture)
{
    if (!isEmpty) {
        delete noContent;
        noContent = nullptr;
        return;
    }
    const QRect rect = NoContentRect(list->size());
    if (noContent) {
        noContent->SetPixRect(rect);
        return;
    }
    // As many pixels as the screen really has there, or the picture would be blurred.
    QPixmap pixmap(rect.size() * list->devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(QStringLiteral(":/nocontent/image/") + picture).render(&painter);
    painter.end();
    noContent = OVPaintNoContent::ShowPixmap(list, rect, &pixmap);
}
