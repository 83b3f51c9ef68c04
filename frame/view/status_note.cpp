#include "status_note.h"

#include <frame/utils/dpi.h>

#include <QAccessible>
#include <QEvent>

namespace {
constexpr int kDurationMs = 2500;
constexpr int kMostWaiting = 8; // a burst of failures must not keep notes coming for minutes
} // namespace

G_StatusNote* G_StatusNote::For(QWidget* host)
{
    if (!host)
        return nullptr;
    auto* note = host->findChild<G_StatusNote*>(QString(), Qt::FindDirectChildrenOnly);
    return note ? note : new G_StatusNote(host);
}

G_StatusNote::G_StatusNote(QWidget* host)
    : QLabel(host)
{
    setObjectName(QStringLiteral("statusNote"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setStyleSheet(Utils::DPI::OV_Util::ScaleStyleSheet(
        QStringLiteral("QLabel#statusNote{background:rgba(38,50,70,225);color:#FFFFFF;border-radius:6px;"
                       "padding:8px 16px;font-size:13px;}")));
    timer.setSingleShot(true);
    timer.setInterval(kDurationMs);
    connect(&timer, &QTimer::timeout, this, [this] { ShowNext(); });
    host->installEventFilter(this);
    hide();
}

void G_StatusNote::Show(const QString& text)
{
    if (text.isEmpty())
        return;
    if (timer.isActive() && this->text() == text) {
        timer.start();
        return;
    }
    if (waiting.contains(text) || waiting.size() >= kMostWaiting)
        return;
    waiting.append(text);
    if (!timer.isActive())
        ShowNext();
}

void G_StatusNote::SetDuration(int milliseconds)
{
    timer.setInterval(milliseconds);
}

void G_StatusNote::ShowNext()
{
    if (waiting.isEmpty()) {
        hide();
        return;
    }
    setText(waiting.takeFirst());
    setAccessibleName(text());
    Place();
    show();
    raise();
    timer.start();
    QAccessibleEvent spoken(this, QAccessible::Alert); // who cannot see it hears it
    QAccessible::updateAccessibility(&spoken);
}

void G_StatusNote::Place()
{
    const QWidget* host = parentWidget();
    const int margin = qRound(Utils::OVDpi::Instance()->ScaleSize(24));
    const int most = qMax(margin, host->width() - 2 * margin);
    // A wrapped label asks for a narrow column; a note is one line as long as that fits.
    setWordWrap(false);
    int noteWidth = sizeHint().width();
    setWordWrap(noteWidth > most);
    noteWidth = qMin(noteWidth, most);
    const int noteHeight = wordWrap() ? heightForWidth(noteWidth) : sizeHint().height();
    setGeometry((host->width() - noteWidth) / 2, host->height() - noteHeight - margin, noteWidth, noteHeight);
}

bool G_StatusNote::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && isVisible())
        Place();
    return QLabel::eventFilter(watched, event);
}
