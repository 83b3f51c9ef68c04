#include "batch_add_dialog.h"

#include "outline_ids.h"
#include "outline_json.h"
#include "outline_pane.h"
#include "outline_tree.h"

#include <common/param_keys.h>
#include <common/rights.h>
#include <common/text_rules.h>
#include <frame/document/ig_document.h>
#include <frame/utils/dpi.h>
#include <frame/view/ui_context.h>
#include <plugin/shell/style.h>

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

// For a host whose own sheet does not know the classes "normalTitle", "okBtn", "normalBtn" and "closeBtn".
const char dialogSheet[] =
    "BatchAddOutlineDlg{background:#FFFFFF;border:1px solid #C6CED6;}"
    "QLabel[class=\"normalTitle\"]{font-size:14pt;color:#36425A;}"
    "QPushButton{border-radius:2px;font-size:10.5pt;}"
    "QPushButton[class=\"okBtn\"]{background:#2F6FDE;color:#FFFFFF;border:1px solid #2F6FDE;}"
    "QPushButton[class=\"okBtn\"]:hover{background:#4A84E8;}"
    "QPushButton[class=\"okBtn\"]:focus{border:1px solid #1B4A9E;}"
    "QPushButton[class=\"normalBtn\"]{background:#FFFFFF;color:#36425A;border:1px solid #C6CED6;}"
    "QPushButton[class=\"normalBtn\"]:hover{background:#F5F7F9;}"
    "QPushButton[class=\"normalBtn\"]:focus{border:1px solid #2F6FDE;}"
    "QPushButton[class=\"closeBtn\"]{border:none;background:transparent;image:url(:/nodeQrc/image/close.svg);}"
    "QPushButton[class=\"closeBtn\"]:hover{background:#E4E6EB;}"
    "QPushButton[class=\"closeBtn\"]:focus{background:#DCE8FC;}";

constexpr char tipSheet[] = "QLabel{font-size:%1pt; color:#8B97AF;}";
constexpr double tipPoints = 10.5;
constexpr char textSheet[] = "QTextEdit{padding:2px 8px 2px 8px;border-radius:2px;border:1px solid #E4E6EB;"
                             "font-size:10.5pt;color:#4F5D79;}";

template <typename Part>
Part* MakePart(QWidget* parent, const char* name, const QSize& size, const char* styleClass = nullptr)
{
    auto* part = new Part(parent);
    part->setObjectName(QLatin1String(name));
    part->setFixedSize(size); // at 96 DPI; the dialog is scaled as a whole
    if (styleClass)
        part->setProperty("class", QLatin1String(styleClass));
    return part;
}

// One line in its full size, or as much smaller as a wide font needs to show it whole.
void DressTip(QLabel* tip)
{
    tip->setStyleSheet(QString::fromLatin1(tipSheet).arg(tipPoints));
    tip->ensurePolished();
    const double width = QFontMetricsF(tip->font()).horizontalAdvance(tip->text());
    if (width > tip->width())
        tip->setStyleSheet(QString::fromLatin1(tipSheet).arg(tipPoints * tip->width() / width, 0, 'f', 2));
}

// The titles in a text, one a line; empty lines give none, lines of blanks do.
QStringList TitlesOf(const QString& text)
{
    QStringList titles = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString& title : titles) {
        // On purpose the text is compared and not its length: what begins with a digit, a capital or a letter before
        // "d" is never cut.
        if (title > QLatin1String("d"))
            title = CutText(title, MaxNameLength);
    }
    return titles;
}

} // namespace

BatchAddOutlineDlg::BatchAddOutlineDlg(QWidget* parent, NaviOutlineWidget* widget)
    : OV_Dialog(parent)
    , widget(widget)
    , context(widget->context)
{
    setModal(false); // the user may look at the pages meanwhile
    setObjectName(QStringLiteral("BatchAddOutlineDlg"));
    setWindowTitle(tr("Batch add"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedSize(472, 578);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(PaneStyle::Scaled(30), PaneStyle::Scaled(24), PaneStyle::Scaled(30),
                               PaneStyle::Scaled(30));
    column->setSpacing(PaneStyle::Scaled(24));
    QLayout* title = BuildTitle();
    QLayout* text = BuildText();
    column->addLayout(title);
    column->addLayout(text);
    column->addLayout(BuildButtons());
    ScaleDialog(true, QLatin1String(dialogSheet));
    DressTip(tip); // in its final width
    textEdit->setFocus();
}

QLayout* BatchAddOutlineDlg::BuildTitle()
{
    auto* row = new QHBoxLayout;
    auto* title = MakePart<QLabel>(this, "LabTitle", QSize(300, 28), "normalTitle");
    title->setText(tr("Batch add"));
    closeButton = MakePart<QPushButton>(this, "BtnClose", QSize(24, 24), "closeBtn");
    closeButton->setToolTip(tr("Close"));
    closeButton->setAccessibleName(tr("Close"));
    connect(closeButton, SIGNAL(clicked()), this, SLOT(close()));
    row->addWidget(title);
    row->addStretch();
    row->addWidget(closeButton);
    return row;
}

QLayout* BatchAddOutlineDlg::BuildText()
{
    auto* column = new QVBoxLayout;
    column->setSpacing(PaneStyle::Scaled(4));
    tip = MakePart<QLabel>(this, "LabTip", QSize(400, 22));
    tip->setText(tr("A catalog with a line, input name and use enter to new line"));
    textEdit = MakePart<QTextEdit>(this, "textEdit", QSize(410, 392));
    textEdit->setStyleSheet(Utils::OVDpi::Instance()->ScaleStyleSheet(QLatin1String(textSheet)));
    textEdit->setAcceptRichText(false);
    textEdit->setTabChangesFocus(true); // the buttons are reached by it
    textEdit->setAccessibleName(tr("Batch add"));
    textEdit->setAccessibleDescription(tip->text());
    tip->setBuddy(textEdit);
    column->addWidget(tip);
    column->addWidget(textEdit);
    return column;
}

QLayout* BatchAddOutlineDlg::BuildButtons()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(PaneStyle::Scaled(12));
    auto* add = MakePart<QPushButton>(this, "BtnOk", QSize(80, 30), "okBtn");
    add->setText(tr("Add"));
    auto* cancel = MakePart<QPushButton>(this, "Btncancel", QSize(80, 30), "normalBtn");
    cancel->setText(tr("Cancel"));
    connect(add, SIGNAL(clicked()), this, SLOT(AddOutline()));
    connect(cancel, SIGNAL(clicked()), this, SLOT(reject()));
    row->addStretch();
    row->addWidget(add);
    row->addWidget(cancel);
    setTabOrder(textEdit, add);
    setTabOrder(add, cancel);
    setTabOrder(cancel, closeButton);
    return row;
}

void BatchAddOutlineDlg::AddOutline()
{
    // The dialog is modeless: another document may have come to the front, this one may be closed or be read-only by
    // now. The text stays for when the user comes back.
    if (!widget || !widget->IsCurrentDocument() || !MayEdit(widget->document)) {
        hide();
        return;
    }
    widget->tree->CommitEdit(); // before the place is read: what was typed in a row is kept
    const QStringList titles = TitlesOf(textEdit->toPlainText());
    textEdit->clear();
    hide();
    if (titles.isEmpty())
        return;
    IG_Document* document = widget->document;
    document->CreateOutlineRoot();
    widget->SyncExpandStates(); // what was expanded since the dialog was opened stays so
    QTreeWidgetItem* current = widget->tree->currentItem();
    G_TreeNode* parent = current ? widget->NodeOf(current->parent()) : nullptr;
    if (!parent)
        parent = document->GetOutlineRoot();
    if (!parent)
        return; // a document that takes no outline
    int row = widget->tree->currentIndex().row();
    if (row == -1)
        row = parent->SubNodeCount() - 1;
    G_Operation* operation = context->CreateOperationByName(OutlineId::BatchAdd, QString());
    if (!operation)
        return;
    operation->Params->Add(ParamKey::JsonParam, OutlineJson::BatchAddText(titles, row, parent));
    operation->ExecuteAction();
    operation->DeleteLater();
}
