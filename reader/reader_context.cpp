#include "reader_context.h"

#include "main_window.h"
#include "print_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QRegularExpression>

namespace {

constexpr int LeastDotsPerInch = 36;
constexpr int MostDotsPerInch = 1200;
constexpr int UsualDotsPerInch = 150;

} // namespace

// A dot in a name that is a sentence or a number begins no ending.
QString WithEnding(const QString& path, const QString& filter)
{
    static const QRegularExpression ending(QStringLiteral("\\.\\w*[A-Za-z]\\w*$"));
    static const QRegularExpression firstOfFilter(QStringLiteral("\\*(\\.\\w+)"));
    QString name = QFileInfo(path).fileName();
    const QString wanted = firstOfFilter.match(filter).captured(1);
    if (wanted.isEmpty() || ending.match(name).hasMatch())
        return path;
    while (name.endsWith(QLatin1Char('.')))
        name.chop(1);
    return QFileInfo(path).dir().filePath(name + wanted);
}

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
    QString wanted = path;
    QString usedFilter;
    bool isChosen = false;
    while (!isChosen) {
        const QString typed = QFileDialog::getSaveFileName(DialogParent(), title, wanted, filter, &usedFilter);
        if (typed.isEmpty() || !modal.IsSameView())
            return QString();
        wanted = WithEnding(typed, usedFilter.isEmpty() ? filter : usedFilter);
        // The dialog has asked about the name that was typed, not about this one.
        isChosen = wanted == typed || !QFileInfo::exists(wanted) || MayReplace(title, wanted);
        if (!modal.IsSameView())
            return QString();
    }
    return wanted;
}

bool ReaderContext::MayReplace(const QString& title, const QString& path)
{
    const QString text = tr("%1 exists already. Do you want to replace it?").arg(QFileInfo(path).fileName());
    return ShowQuestionBox(title, text, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
}

int ReaderContext::AskDotsPerInch(const QString& title)
{
    const G_ModalScope modal(this);
    bool isWanted = false;
    const int dots = QInputDialog::getInt(DialogParent(), title, tr("Dots per inch:"), UsualDotsPerInch,
                                          LeastDotsPerInch, MostDotsPerInch, 1, &isWanted);
    return isWanted && modal.IsSameView() ? dots : 0;
}
