#include "print_dialog.h"

#include <QButtonGroup>
#include <QLabel>
#include <QPrinter>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

struct SizeRow
{
    PrintSize size;
    const char* text;
};

const SizeRow sizeRows[] = {
    {PrintSize::FitPaper, QT_TRANSLATE_NOOP("PrintDialog", "&Fit to the paper")},
    {PrintSize::ActualSize, QT_TRANSLATE_NOOP("PrintDialog", "&Actual size, in the middle of the paper")},
    {PrintSize::OwnSheet, QT_TRANSLATE_NOOP("PrintDialog", "&Each page on a sheet of its own size")},
};

} // namespace

PrintDialog::PrintDialog(QPrinter* printer, int pageCount, QWidget* parent)
    : QPrintDialog(printer, parent)
    , sizes(new QButtonGroup(this))
{
    setWindowTitle(tr("Print"));
    setOption(PrintCurrentPage);
    setOption(PrintPageRange, pageCount > 1);
    setMinMax(1, pageCount);
    setFromTo(1, pageCount);
    setOptionTabs({MakeSizeTab()});
}

PrintSize PrintDialog::Size() const
{
    return static_cast<PrintSize>(sizes->checkedId());
}

QWidget* PrintDialog::MakeSizeTab()
{
    auto* tab = new QWidget(this);
    tab->setWindowTitle(tr("Size")); // of the tab
    auto* column = new QVBoxLayout(tab);
    for (const SizeRow& row : sizeRows) {
        auto* button = new QRadioButton(tr(row.text), tab);
        sizes->addButton(button, static_cast<int>(row.size));
        column->addWidget(button);
    }
    auto* hint = new QLabel(tr("The paper is turned to the orientation of each page."), tab);
    hint->setWordWrap(true);
    column->addWidget(hint);
    column->addStretch(1);
    sizes->button(static_cast<int>(PrintSize::FitPaper))->setChecked(true);
    return tab;
}
