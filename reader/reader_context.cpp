#include "reader_context.h"

#include "main_window.h"
#include "print_dialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QRegularExpression>

namespace {

constexpr int LeastDotsPerInch = 36;
constexpr int MostDotsPerInch = 1200;
constexpr int UsualDotsPerInch = 150;

// The first ending that a filter of file names tells; empty for one that lets all files pass.
QString EndingOf(const QString& filter)
{
    return QRegularExpression(QStringLiteral("\\*\\.(\\w+)")).match(filter).captured(1);
}

} // namespace

MainWindow* ReaderContext::WindowOf(G_UIContext* context)
{
    auto* own = qobject_cast<ReaderContext*>(context);
    return own ? own->Window() : nullptr;
}

bool ReaderContext::AskHowToPrint(QPrinter* printer, int pageCount, PrintSize* size)
{
    const G_ModalScope modal(this);
    PrintDialog dialog(printer, pageCount, DialogParent());
    if (dialog.exec() != QDialog::Accepted || !modal.IsSameView())
        return false;
    *size = dialog.Size();
    return true;
}

QString ReaderContext::AskSavePath(const QString& title, const QString& path, const QString& filter)
{
    const G_ModalScope modal(this);
    const QFileInfo proposed(path);
    QFileDialog dialog(DialogParent(), title, proposed.path(), filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(EndingOf(dialog.selectedNameFilter())); // for names that are typed without one
    connect(&dialog, &QFileDialog::filterSelected, &dialog,
            [&dialog](const QString& chosen) { dialog.setDefaultSuffix(EndingOf(chosen)); });
    dialog.selectFile(proposed.fileName());
    const bool isChosen = dialog.exec() == QDialog::Accepted;
    return isChosen && modal.IsSameView() ? dialog.selectedFiles().value(0) : QString();
}

int ReaderContext::AskDotsPerInch(const QString& title)
{
    const G_ModalScope modal(this);
    bool isWanted = false;
    const int dots = QInputDialog::getInt(DialogParent(), title, tr("Dots per inch:"), UsualDotsPerInch,
                                          LeastDotsPerInch, MostDotsPerInch, 1, &isWanted);
    return isWanted && modal.IsSameView() ? dots : 0;
}
