#include "properties_dialog.h"

#include "document_tab.h"

#include <frame/document/ig_document.h>
#include <frame/utils/dpi.h>
#include <frame/view/doc_view.h>

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

constexpr int longestValue = 4000; // characters; nobody reads on, and laying out a megabyte takes seconds
constexpr int wantedWidth = 560;   // logical pixels, as is the height
constexpr int wantedHeight = 520;

// Other line ends and odd white space would break the lines apart that belong together.
QString Shown(const QString& value)
{
    const QString plain = value.left(longestValue).simplified();
    return value.size() > longestValue ? plain + QChar(0x2026) : plain;
}

QString HtmlOf(const PropertyGroup& group)
{
    QString html = QStringLiteral("<table width='100%' cellspacing='0' cellpadding='3'>");
    for (const PropertyRow& row : group) {
        const QString value = Shown(row.value).toHtmlEscaped();
        if (row.name.isEmpty())
            html += QStringLiteral("<tr><td colspan='2'>%1</td></tr>").arg(value);
        else
            html += QStringLiteral("<tr><td width='32%'>") + Shown(row.name).toHtmlEscaped() +
                    QStringLiteral("</td><td>") + value + QStringLiteral("</td></tr>");
    }
    return html + QStringLiteral("</table>");
}

QString HtmlOf(const PropertySection& section)
{
    QStringList blocks;
    if (!section.note.isEmpty())
        blocks += QStringLiteral("<p>%1</p>").arg(section.note.toHtmlEscaped());
    for (const PropertyGroup& group : section.groups) {
        if (!group.isEmpty())
            blocks += HtmlOf(group);
    }
    return blocks.join(QStringLiteral("<hr>"));
}

QString PlainTextOf(const PropertySection& section)
{
    QStringList blocks{section.note};
    for (const PropertyGroup& group : section.groups) {
        QStringList lines;
        for (const PropertyRow& row : group)
            lines += row.name.isEmpty() ? Shown(row.value) : row.name + QStringLiteral(": ") + Shown(row.value);
        blocks += lines.join(QLatin1Char('\n'));
    }
    return blocks.join(QStringLiteral("\n\n"));
}

} // namespace

PropertiesDialog::PropertiesDialog(DocumentTab* shownTab, QWidget* parent)
    : QDialog(parent)
    , tab(shownTab)
    , pages(new QTabWidget(this))
{
    setObjectName(QStringLiteral("propertiesDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto* column = new QVBoxLayout(this);
    column->addWidget(pages);
    pages->setAccessibleName(tr("Topics"));
    // In the order of the topics.
    AddTextPage(tr("General"));
    AddTextPage(tr("Signatures"));
    AddTextPage(tr("Fonts"));
    AddProblemsPage();
    auto* buttons = new QDialogButtonBox(this);
    auto* closeButton = buttons->addButton(tr("Close"), QDialogButtonBox::RejectRole);
    closeButton->setAccessibleName(tr("Close the properties"));
    closeButton->setDefault(true);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    connect(pages, &QTabWidget::currentChanged, this, &PropertiesDialog::ShowTopic);
    connect(tab, &DocumentTab::Closing, this, &PropertiesDialog::LetGo);
    connect(tab, &DocumentTab::DirtyChanged, this, &PropertiesDialog::Refresh); // a save ends with it
    connect(tab->View(), &G_DocView::CurrentPageChanged, this, &PropertiesDialog::ShowGeneral);
    FitToScreen();
    Refresh();
}

void PropertiesDialog::AddTextPage(const QString& title)
{
    auto* text = new QTextEdit(pages);
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTabChangesFocus(true);
    text->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    text->setAccessibleName(title);
    texts.append(text);
    pages->addTab(text, title);
}

void PropertiesDialog::AddProblemsPage()
{
    auto* page = new QWidget(pages);
    auto* column = new QVBoxLayout(page);
    problems = new QPlainTextEdit(page);
    problems->setReadOnly(true);
    problems->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    problems->setTabChangesFocus(true);
    problems->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    problems->setAccessibleName(tr("Problems"));
    auto* copy = new QPushButton(tr("&Copy"), page);
    copy->setObjectName(QStringLiteral("copyProblems"));
    copy->setAccessibleName(tr("Copy the problems"));
    copy->setToolTip(tr("Copies all of the list"));
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, this, &PropertiesDialog::CopyProblems);
    column->addWidget(problems);
    column->addWidget(copy, 0, Qt::AlignRight);
    pages->addTab(page, tr("Problems"));
}

void PropertiesDialog::FitToScreen()
{
    const QSize wanted(qRound(Utils::OVDpi::Instance()->ScaleSize(wantedWidth)),
                       qRound(Utils::OVDpi::Instance()->ScaleSize(wantedHeight)));
    const QWidget* beside = parentWidget() ? parentWidget() : this;
    const QScreen* onScreen = beside->screen();
    resize(onScreen ? wanted.boundedTo(onScreen->availableSize() * 0.9) : wanted);
}

void PropertiesDialog::Refresh()
{
    if (!tab)
        return;
    setWindowTitle(tr("Properties of %1").arg(QFileInfo(tab->Path()).fileName()));
    general = tab->Properties(PropertyTopic::General);
    ShowGeneral();
    ShowTopic(pages->currentIndex());
}

void PropertiesDialog::ShowTopic(int position)
{
    const auto topic = static_cast<PropertyTopic>(position);
    if (!tab || topic == PropertyTopic::General)
        return;
    const PropertySection section = tab->Properties(topic);
    if (topic == PropertyTopic::Problems)
        problems->setPlainText(PlainTextOf(section));
    else
        texts.at(position)->setHtml(HtmlOf(section));
}

// Set only when it differs: setting it would end a selection.
void PropertiesDialog::ShowGeneral()
{
    if (!tab || general.groups.isEmpty())
        return;
    const int page = tab->View()->CurrentPageIndex();
    PropertySection shown = general;
    if (page >= 0) {
        const QSizeF size = tab->Document()->PageSizeMm(page);
        const QLocale locale;
        const QString text =
            tr("%1 × %2 mm").arg(locale.toString(size.width(), 'g', 6), locale.toString(size.height(), 'g', 6));
        shown.groups.first().append({tr("Size of the present page"), text});
    }
    const QString html = HtmlOf(shown);
    if (html == generalShown)
        return;
    generalShown = html;
    texts.at(static_cast<int>(PropertyTopic::General))->setHtml(html);
}

void PropertiesDialog::CopyProblems() const
{
    QApplication::clipboard()->setText(problems->toPlainText());
}

// The view dies next, so nothing may ask for it until the dialog is deleted.
void PropertiesDialog::LetGo()
{
    tab = nullptr;
    hide();
    deleteLater();
}
