#include "find_bar.h"

#include "document_search.h"

#include <frame/utils/dpi.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace {

constexpr int mostPrefilled = 100; // characters; a longer selection is hardly what is looked for
const QColor missingColour(0xFD, 0xDC, 0xD9);

} // namespace

FindBar::FindBar(QWidget* parent)
    : QFrame(parent)
    , box(new QLineEdit(this))
    , state(new QLabel(this))
{
    setObjectName(QStringLiteral("findBar"));
    setAccessibleName(tr("Find in the document"));
    setStyleSheet(QStringLiteral("FindBar{background:#F5F7FA;border-bottom:1px solid #E4E6EB;}"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 8, 4);
    auto* label = new QLabel(tr("Find:"), this);
    label->setBuddy(box);
    row->addWidget(label);
    row->addWidget(box, 1);
    box->setObjectName(QStringLiteral("findText"));
    box->setAccessibleName(tr("Text to find"));
    box->setToolTip(tr("Enter finds the next match, Shift+Enter the previous one, Esc closes"));
    box->setClearButtonEnabled(true);
    box->setMaximumWidth(qRound(Utils::OVDpi::Instance()->ScaleSize(320)));
    box->installEventFilter(this);
    previousButton = AddButton(tr("Find Previous"), tr("Previous match (Shift+F3)"), Qt::UpArrow);
    nextButton = AddButton(tr("Find Next"), tr("Next match (F3)"), Qt::DownArrow);
    state->setObjectName(QStringLiteral("findState"));
    state->setMinimumWidth(state->fontMetrics().horizontalAdvance(QStringLiteral("00000 of 00000")));
    row->addWidget(state);
    caseChoice = AddChoice(tr("Match case"), tr("Tells capital letters from small ones"));
    wordChoice = AddChoice(tr("Whole words"), tr("Finds no parts of words"));
    row->addStretch(1);
    auto* closeButton = AddButton(tr("Close the find bar"), tr("Close (Esc)"), Qt::NoArrow);
    closeButton->setIcon(QIcon(QStringLiteral(":/reader/image/close.svg")));
    connect(box, &QLineEdit::textChanged, this, &FindBar::Apply);
    connect(caseChoice, &QCheckBox::toggled, this, &FindBar::Apply);
    connect(wordChoice, &QCheckBox::toggled, this, &FindBar::Apply);
    connect(previousButton, &QToolButton::clicked, this, [this] { GoOn(false); });
    connect(nextButton, &QToolButton::clicked, this, [this] { GoOn(true); });
    connect(closeButton, &QToolButton::clicked, this, &FindBar::Close);
    hide();
}

QToolButton* FindBar::AddButton(const QString& name, const QString& tooltip, Qt::ArrowType arrow)
{
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setArrowType(arrow);
    button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus in the box
    button->setAccessibleName(name);
    button->setToolTip(tooltip);
    layout()->addWidget(button);
    return button;
}

QCheckBox* FindBar::AddChoice(const QString& text, const QString& tooltip)
{
    auto* choice = new QCheckBox(text, this);
    choice->setFocusPolicy(Qt::TabFocus);
    choice->setAccessibleName(text);
    choice->setToolTip(tooltip);
    layout()->addWidget(choice);
    return choice;
}

void FindBar::SetSearch(DocumentSearch* newSearch)
{
    if (search)
        disconnect(search, nullptr, this, nullptr);
    search = newSearch;
    setVisible(search && search->IsShown());
    if (!search)
        return;
    connect(search, &DocumentSearch::Changed, this, &FindBar::ShowState);
    {
        const QSignalBlocker quietBox(box);
        const QSignalBlocker quietCase(caseChoice);
        const QSignalBlocker quietWord(wordChoice);
        box->setText(search->Query().text);
        caseChoice->setChecked(search->Query().matchesCase);
        wordChoice->setChecked(search->Query().isWholeWord);
    }
    ShowState();
}

void FindBar::Open(const QString& text)
{
    if (!search)
        return;
    search->SetShown(true);
    show();
    if (!text.isEmpty() && text.size() <= mostPrefilled)
        box->setText(text);
    box->setFocus(Qt::ShortcutFocusReason);
    box->selectAll();
    ShowState();
}

void FindBar::GoOn(bool isForward)
{
    if (!search)
        return;
    if (search->Query().text.isEmpty()) {
        Open(QString());
        return;
    }
    search->SetShown(true);
    show();
    if (isForward)
        search->GoToNext();
    else
        search->GoToPrevious();
}

void FindBar::Close()
{
    if (search)
        search->SetShown(false);
    hide();
    emit Closed();
}

void FindBar::Apply()
{
    if (!search)
        return;
    G_TextQuery query;
    query.text = box->text();
    query.matchesCase = caseChoice->isChecked();
    query.isWholeWord = wordChoice->isChecked();
    search->SetQuery(query);
}

QString FindBar::StateText() const
{
    if (!search || search->Query().text.isEmpty())
        return QString();
    const QString goesOn = search->IsSearching() ? QString(QChar(0x2026)) : QString();
    const QString total =
        QString::number(search->MatchCount()) + (search->IsCut() ? QStringLiteral("+") : QString()) + goesOn;
    if (search->CurrentNumber() > 0)
        return tr("%1 of %2").arg(QString::number(search->CurrentNumber()), total);
    return search->IsSearching() ? tr("Searching…") : tr("No matches");
}

void FindBar::ShowState()
{
    const QString text = StateText();
    const bool isOver = search && !search->IsSearching();
    const bool isMissing = isOver && !text.isEmpty() && search->MatchCount() == 0;
    state->setText(text);
    state->setAccessibleName(text);
    const int unreadable = search ? search->UnreadablePageCount() : 0;
    state->setToolTip(unreadable > 0 ? tr("Pages that could not be read: %1").arg(unreadable) : QString());
    Colour(isMissing);
    const bool hasText = !text.isEmpty();
    previousButton->setEnabled(hasText && !isMissing);
    nextButton->setEnabled(hasText && !isMissing);
    if (!isVisible() || !isOver || text == told)
        return;
    told = text;
    QAccessibleEvent spoken(state, QAccessible::Alert); // the focus is elsewhere
    QAccessible::updateAccessibility(&spoken);
}

void FindBar::Colour(bool isMissing)
{
    QPalette colours = QApplication::palette(box);
    if (isMissing) {
        colours.setColor(QPalette::Base, missingColour);
        colours.setColor(QPalette::Text, Qt::black);
    }
    box->setPalette(colours);
}

bool FindBar::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == box && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            GoOn(!key->modifiers().testFlag(Qt::ShiftModifier));
            return true;
        }
    }
    return QFrame::eventFilter(watched, event);
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        Close();
    else
        QFrame::keyPressEvent(event);
}
