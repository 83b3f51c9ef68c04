#include "message_box.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QGridLayout>
#include <QPointer>
#include <QSpacerItem>

G_MessageBox::G_MessageBox(Icon icon, const QString& title, const QString& text, int buttons, QWidget* parent)
    : QMessageBox(icon, title, text, static_cast<StandardButtons>(buttons), parent)
{
    setTextFormat(Qt::PlainText); // names in the text come from documents; their markup is text
}

void G_MessageBox::SetDefault(int button)
{
    if (button > 0)
        setDefaultButton(static_cast<StandardButton>(button));
}

void G_MessageBox::SetCaptions(const QMap<int, QString>& captions)
{
    for (auto it = captions.cbegin(); it != captions.cend(); ++it) {
        if (QAbstractButton* pressable = button(static_cast<StandardButton>(it.key())))
            pressable->setText(it.value());
    }
}

void G_MessageBox::SetSize(const QSize& size)
{
    // The box takes its size from its layout alone, so the wanted size goes in there as room.
    auto* grid = qobject_cast<QGridLayout*>(layout());
    if (!grid || size.isEmpty())
        return;
    grid->addItem(new QSpacerItem(size.width(), 0, QSizePolicy::Minimum), grid->rowCount(), 0, 1, grid->columnCount());
    grid->addItem(new QSpacerItem(0, size.height(), QSizePolicy::Minimum, QSizePolicy::Minimum), 0, grid->columnCount(),
                  grid->rowCount(), 1);
}

int G_MessageBox::Run()
{
    const QPointer<G_MessageBox> self(this);
    const int pressed = exec();
    // Without a button: the box was deleted, or the program ends.
    return !self || wasClosedByFrame || pressed == NoButton ? static_cast<int>(Close) : pressed;
}

void G_MessageBox::closeEvent(QCloseEvent* event)
{
    wasClosedByFrame = true;
    event->accept();
    done(Close);
}
