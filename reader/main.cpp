#include "appearance.h"
#include "host_operations.h"
#include "main_window.h"
#include "plugin_host.h"
#include "reader_application.h"
#include "reader_context.h"
#include "show_panes.h"
#include "single_instance.h"

#include <frame/navigation/iplugin.h>
#include <frame/view/host_tools.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QMessageBox>
#include <QTimer>

#include <new>

#include <unistd.h>

namespace {

struct Options
{
    QStringList files; // absolute
    QString paneFolder;
    bool standsAlone = false;
};

Options ParseOptions(const QApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate("main", "A reader of fixed-layout documents."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption panes(
        QStringLiteral("show-panes"),
        QCoreApplication::translate("main", "Open each pane, write a picture of each into <folder>, and end."),
        QStringLiteral("folder"));
    const QCommandLineOption alone(QStringLiteral("new-window"),
                                   QCoreApplication::translate("main", "Do not hand the files to a running reader."));
    parser.addOption(panes);
    parser.addOption(alone);
    parser.addPositionalArgument(QStringLiteral("file"), QCoreApplication::translate("main", "Documents to open."),
                                 QStringLiteral("[file...]"));
    parser.process(application);
    Options options;
    options.paneFolder = parser.value(panes);
    options.standsAlone = parser.isSet(alone) || parser.isSet(panes);
    const QStringList names = parser.positionalArguments();
    for (const QString& name : names)
        options.files << QFileInfo(name).absoluteFilePath();
    return options;
}

// Says why there are no panes, without stopping the user from reading.
void TellPluginFailure(MainWindow* window, const QString& reason)
{
    qWarning("The navigation add-on was not loaded: %s", qUtf8Printable(reason));
    auto* box =
        new QMessageBox(QMessageBox::Warning, QCoreApplication::translate("main", "Navigation"),
                        QCoreApplication::translate("main", "The navigation panes are not available.\n%1").arg(reason),
                        QMessageBox::Ok, window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setModal(false);
    box->show();
}

void ServeLaterStarts(SingleInstance& instance, MainWindow& window)
{
    instance.Listen();
    QObject::connect(&instance, &SingleInstance::FilesReceived, &window, [&window](const QStringList& files) {
        window.OpenWhenFree(files);
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
        window.raise();
        window.activateWindow();
    });
}

// Before the event loop, which bears that memory runs out, has begun.
void OpenFiles(MainWindow& window, const QStringList& files)
{
    try {
        for (const QString& file : files)
            window.OpenFile(file);
    } catch (const std::bad_alloc&) {
        ReaderApplication::TellOfShortage();
    }
}

int RunWindow(const Options& options, SingleInstance& instance)
{
    // Order of death: the window with its tabs, the host's operations, the plugin's module.
    PluginHost plugin;
    RegisterHostTools();
    const auto operations = RegisterHostOperations();
    MainWindow window;
    const bool hasPlugin = plugin.Load();
    window.SetUpNavigation();
    if (options.paneFolder.isEmpty())
        window.RestoreWindow();
    window.show();
    if (!hasPlugin)
        TellPluginFailure(&window, plugin.Error());
    OpenFiles(window, options.files);
    if (!options.paneFolder.isEmpty())
        return ShowPanes(&window, options.paneFolder) ? 0 : 1;
    if (!options.standsAlone)
        ServeLaterStarts(instance, window);
    if (plugin.Plugin())
        QTimer::singleShot(0, plugin.Plugin(), [&plugin] { plugin.Plugin()->DelayedInitialize(); });
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setAttribute(Qt::AA_ForceRasterWidgets); // nothing here draws with GL: its libraries stay unloaded
    ReaderApplication application(argc, argv);
    SetUpAppearance(application);
    const Options options = ParseOptions(application);
    SingleInstance instance(QStringLiteral("tetoreader-%1").arg(getuid()));
    if (!options.standsAlone && instance.HandOver(options.files))
        return 0;
    return RunWindow(options, instance);
}
