#include "reader_context.h"

#include "main_window.h"
#include "print_dialog.h"

#include <QFileDialog>
#include <QInputDialog>

namespace {

constexpr int LeastDotsPerInch = 36;
constexpr int MostDotsPerInch = 1200;
constexpr int UsualDotsPerInch = 150;

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
    const QString chosen = QFileDialog::getSaveFileName(DialogParent(), title, path, filter);
    return modal.IsSameView() ? chosen : QString();
}

int ReaderContext::AskDotsPerInch(const QString& title)
{
    const G_ModalScope modal(this);
    bool isWanted = false;
    const int dots = QInputDialog::getInt(DialogParent(), title, tr("Dots per inch:"), UsualDotsPerInch,
                                          LeastDotsPerInch, MostDotsPerInch, 1, &isWanted);
    return isWanted && modal.IsSameView() ? dots : 0;
}
