#include "style.h"

#include <frame/utils/dpi.h>

#include <QAbstractButton>

namespace PaneStyle {

int Scaled(int logical)
{
    return qRound(Utils::OVDpi::Instance()->ScaleSize(logical));
}

QString List()
{
    return Utils::OVDpi::Instance()->ScaleStyleSheet(
        QStringLiteral("QTreeView{color:#36425A; background:#F5F7F9; outline:0px;}"
                       "QTreeView::item{padding-left:8px; padding-right:8px; height:25px;}"));
}

QString Separator()
{
    return Utils::OVDpi::Instance()->ScaleStyleSheet(
        QStringLiteral("background:#E4E6EB;border-radius: 2px;margin-right:10px;"));
}

void MakeToolButton(QAbstractButton* button, const QString& imageName, const QString& tooltip)
{
    const QString image = QStringLiteral("url(:/nodeQrc/image/%1_%2.svg)");
    const QString sheet =
        QStringLiteral("QPushButton{border:none;border-image:%1;}"
                       "QPushButton:disabled{border-image:%2;}")
            .arg(image.arg(imageName, QStringLiteral("normal")), image.arg(imageName, QStringLiteral("disabled")));
    button->setFixedSize(Scaled(24), Scaled(24));
    button->setStyleSheet(Utils::OVDpi::Instance()->ScaleStyleSheet(sheet));
    button->setToolTip(tooltip);
    button->setAccessibleName(tooltip);
}

} // namespace PaneStyle
