#include "reader_desk.h"

#include <frame/document/ig_document.h>
#include <frame/navigation/navigation_page.h>
#include <frame/view/doc_view.h>
#include <frame/view/host_tools.h>
#include <frame/view/settings.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

int ScriptedReaderContext::Take(const QString& text)
{
    texts << text;
    if (answers.isEmpty()) {
        QTest::qFail(qPrintable(QStringLiteral("unexpected box: ") + text), __FILE__, __LINE__);
        return 0x00400000; // Cancel
    }
    return answers.takeFirst();
}

int ScriptedReaderContext::ShowMessageBox(const QString&, const QString& text, int, int, const QMap<int, QString>&,
                                          const QSize&)
{
    return Take(text);
}

int ScriptedReaderContext::ShowQuestionBox(const QString&, const QString& text, int, int, const QMap<int, QString>&,
                                           const QSize&)
{
    return Take(text);
}

bool ScriptedReaderContext::AskHowToPrint(QPrinter* printer, int pageCount, PrintSize* size)
{
    if (!printAnswer)
        QTest::qFail("unexpected print dialog", __FILE__, __LINE__);
    return printAnswer && printAnswer(printer, pageCount, size);
}

void ScriptedReaderContext::AnswerSavePath(const QString& path, int dotsPerInch)
{
    savePath = path;
    dots = dotsPerInch;
}

QString ScriptedReaderContext::AskSavePath(const QString& title, const QString& path, const QString& filter)
{
    if (hasRealFileDialog)
        return ReaderContext::AskSavePath(title, path, filter);
    if (savePath.isEmpty())
        QTest::qFail(qPrintable("unexpected file dialog: " + title), __FILE__, __LINE__);
    proposedPath = path;
    proposedFilter = filter;
    return savePath;
}

int ScriptedReaderContext::AskDotsPerInch(const QString&)
{
    return dots;
}

ReaderDesk::ReaderDesk(bool withPlugin)
{
    G_SettingMgr::Instance()->UseFile(QString());
    RegisterHostTools();
    operations = RegisterHostOperations();
    context = new ScriptedReaderContext;
    window = std::make_unique<MainWindow>(context);
    if (withPlugin && !plugin.Load())
        QTest::qFail(qPrintable(plugin.Error()), __FILE__, __LINE__);
    window->SetUpNavigation();
    window->show();
}

ReaderDesk::~ReaderDesk()
{
    window.reset();
    operations.clear();
}

QString ReaderDesk::Sample(const QString& name)
{
    const QString path = folder.filePath(name);
    QFile::remove(path);
    const QString program = qEnvironmentVariable("TETO_BIN") + QStringLiteral("/make_samples");
    QProcess maker;
    maker.start(program, {folder.path(), QFileInfo(name).completeBaseName()});
    if (!maker.waitForFinished(60000) || maker.exitCode() != 0 || !QFile::exists(path)) {
        QTest::qFail(qPrintable(QStringLiteral("no sample ") + name + QString::fromUtf8(maker.readAllStandardError())),
                     __FILE__, __LINE__);
        return QString();
    }
    return path;
}

bool ReaderDesk::WaitForPanes()
{
    IG_Document* document = View() ? View()->GDocument() : nullptr;
    return document && QTest::qWaitFor(
                           [document] {
                               const QList<Core::G_NavigationPage*> pages = Core::G_NavigationPage::allNaviPages();
                               for (const Core::G_NavigationPage* page : pages) {
                                   if (!page->WidgetFor(document))
                                       return false;
                               }
                               return true;
                           },
                           20000);
}
