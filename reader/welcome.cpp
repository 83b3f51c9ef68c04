#include "welcome.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int MostFiles = 5;

QPushButton* MakeFileButton(const QString& path, QWidget* parent)
{
    // A single mark in a name would be taken for the key of the button.
    auto* button = new QPushButton(QFileInfo(path).fileName().replace(QLatin1Char('&'), QLatin1String("&&")), parent);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("text-align:left;color:#2F6FDE;padding:3px 6px;"));
    button->setToolTip(QDir::toNativeSeparators(path).toHtmlEscaped());
    return button;
}

} // namespace

Welcome::Welcome(QWidget* parent)
    : QWidget(parent)
    , recent(new QWidget(this))
    , recentColumn(new QVBoxLayout(recent))
{
    auto* hint = new QLabel(tr("Open a document, or drop one here."), this);
    hint->setStyleSheet(QStringLiteral("color:#5A6478;font-size:15px;"));
    auto* open = new QPushButton(tr("&Open..."), this);
    connect(open, &QPushButton::clicked, this, &Welcome::OpenRequested);
    recentColumn->setContentsMargins(0, 16, 0, 0);
    recentColumn->setSpacing(0);
    auto* column = new QVBoxLayout(this);
    column->addStretch(1);
    column->addWidget(hint, 0, Qt::AlignHCenter);
    column->addWidget(open, 0, Qt::AlignHCenter);
    column->addWidget(recent, 0, Qt::AlignHCenter);
    column->addStretch(1);
}

void Welcome::ShowRecent(const QStringList& paths)
{
    const QList<QWidget*> old = recent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* widget : old) {
        recentColumn->removeWidget(widget);
        widget->hide();
        widget->deleteLater(); // a click on it may be under way
    }
    for (const QString& path : paths) {
        if (recentColumn->count() > MostFiles || !QFileInfo::exists(path))
            continue;
        if (recentColumn->count() == 0)
            recentColumn->addWidget(new QLabel(tr("Recent documents"), recent));
        QPushButton* button = MakeFileButton(path, recent);
        connect(button, &QPushButton::clicked, this, [this, path] { emit FileRequested(path); });
        recentColumn->addWidget(button);
    }
    recent->setVisible(recentColumn->count() > 0);
}
