// What leaves the window: printed pages, pictures of pages.
#include "main_window.h"

#include "job_bar.h"
#include "page_picture.h"
#include "page_printing.h"
#include "reader_context.h"

#include <frame/document/ig_document.h>
#include <frame/view/doc_view.h>

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrinter>
#include <QStatusBar>

namespace {

QString BesideFile(const QString& path, const QString& ending)
{
    const QFileInfo info(path);
    return info.dir().filePath(info.completeBaseName() + ending);
}

} // namespace

void MainWindow::MakeJobBar()
{
    jobBar = new JobBar(this);
    statusBar()->addPermanentWidget(jobBar);
    connect(jobBar, &JobBar::JobEnded, this, [this](const JobOutcome& outcome) {
        RefreshWindow(); // the bars of full screen too
        const bool isTrouble = !outcome.error.isEmpty();
        QString text = isTrouble ? outcome.error : outcome.wasGivenUp ? tr("Given up.") : tr("Done.");
        if (!outcome.remark.isEmpty())
            text += QLatin1Char(isTrouble ? '\n' : ' ') + outcome.remark;
        if (isTrouble)
            context->ShowMessageBox(jobTitle, text, QMessageBox::Ok, QMessageBox::Ok);
        else
            ShowNote(text);
    });
}

bool MainWindow::IsWorking() const
{
    return jobBar->IsBusy();
}

bool MainWindow::MayStartJob()
{
    if (jobBar->IsBusy())
        ShowNote(tr("Wait for the work that is under way, or cancel it."));
    return !jobBar->IsBusy();
}

bool MainWindow::StartJob(DocumentTab* tab, const QString& title, const QString& text, const BackgroundJob::Work& work)
{
    if (!MayStartJob())
        return false;
    jobTitle = title;
    jobBar->Start(tab, text, work);
    ShowStatusBar();
    return true;
}

bool MainWindow::MayStopJobOf(const DocumentTab* tab, const QString& title)
{
    if (!jobBar->IsBusyFor(tab))
        return true;
    const QString text = tr("%1 is still being printed or saved as a picture. Give that up?");
    const int answer = context->ShowQuestionBox(title, text.arg(QFileInfo(tab->Path()).fileName()),
                                                QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    return answer == QMessageBox::Yes;
}

void MainWindow::Print()
{
    DocumentTab* tab = CurrentTab();
    if (!tab || !MayStartJob() || IsRefused(tr("Print"), PrintRefusal(*tab->Document(), 1)))
        return;
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFileName(BesideFile(tab->PathToPropose(), QStringLiteral(".pdf")));
    printer->setOutputFormat(QPrinter::NativeFormat);
    PrintSize size = PrintSize::FitPaper;
    if (context->AskHowToPrint(printer.get(), tab->Document()->GetPageCount(), &size))
        PrintTab(tab, printer, size);
}

bool MainWindow::IsRefused(const QString& title, const QString& reason)
{
    if (!reason.isEmpty())
        context->ShowMessageBox(title, reason, QMessageBox::Ok, QMessageBox::Ok);
    return !reason.isEmpty();
}

bool MainWindow::PrintTab(DocumentTab* tab, const std::shared_ptr<QPrinter>& printer, PrintSize size)
{
    IG_PageRenderer* renderer = tab->Document()->Renderer();
    if (!renderer || IsRefused(tr("Print"), PrintRefusal(*tab->Document(), printer->copyCount())))
        return false;
    printer->setDocName(QFileInfo(tab->Path()).fileName());
    PrintOrder order = OrderFor(*printer, *tab->Document(), tab->View()->CurrentPageIndex());
    order.size = size;
    order.withAnnotations = tab->View()->AnnotStatus();
    if (order.pages.isEmpty())
        return false;
    return StartJob(tab, tr("Print"), tr("Printing"), [printer, renderer, order](const JobControl& control) {
        return PrintPages(*printer, *renderer, order, control);
    });
}

void MainWindow::SavePagePicture()
{
    DocumentTab* tab = CurrentTab();
    const QString title = tr("Save Page as Picture");
    if (!tab || !MayStartJob() || IsRefused(title, PictureRefusal(*tab->Document())))
        return;
    const int page = tab->View()->CurrentPageIndex();
    const QString ending = QStringLiteral("-%1.png").arg(page + 1);
    const QString path = context->AskSavePath(title, BesideFile(tab->PathToPropose(), ending),
                                              tr("PNG pictures (*.png);;JPEG pictures (*.jpg *.jpeg)"));
    if (path.isEmpty())
        return;
    const int dotsPerInch = context->AskDotsPerInch(title);
    if (dotsPerInch > 0)
        SavePagePictureAs(tab, page, path, dotsPerInch);
}

bool MainWindow::SavePagePictureAs(DocumentTab* tab, int page, const QString& path, int dotsPerInch)
{
    IG_PageRenderer* renderer = tab->Document()->Renderer();
    const QString title = tr("Save Page as Picture");
    if (!renderer || IsRefused(title, PictureRefusal(*tab->Document())))
        return false;
    const PictureOrder order{page, dotsPerInch, tab->View()->Rotation(), tab->View()->AnnotStatus(), path};
    return StartJob(tab, title, tr("Saving a picture"),
                    [renderer, order](const JobControl& control) { return SavePicture(*renderer, order, control); });
}
