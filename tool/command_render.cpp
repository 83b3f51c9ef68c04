#include "output.h"
#include "tool_command.h"

#include <frame/document/page_renderer.h>
#include <ofd/ofd_document.h>

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>

#include <cmath>

namespace {

constexpr double MmPerInch = 25.4;
constexpr double LowestDpi = 1;
constexpr double HighestDpi = 4800;

QByteArray PngOf(QImage image, double dpi)
{
    const int dotsPerMeter = int(std::lround(dpi / MmPerInch * 1000));
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    return writer.write(image) ? buffer.data() : QByteArray();
}

// An exit code.
int WritePng(const QByteArray& png, const ToolCall& call)
{
    const QString path = call.Value("output");
    if (png.isEmpty()) {
        TellError(QStringLiteral("The picture cannot be made into a PNG file."));
        return ExitCannotWrite;
    }
    if (path == QLatin1String("-")) {
        call.output.Bytes(png);
        return ExitFine;
    }
    QSaveFile file(path);
    // Committing does not notice that what was still to be written could not be.
    if (file.open(QIODevice::WriteOnly) && file.write(png) == png.size() && file.flush() && file.commit())
        return ExitFine;
    file.cancelWriting();
    TellError(path + QStringLiteral(": ") + file.errorString());
    return ExitCannotWrite;
}

void TellPicture(const ToolCall& call, int pageIndex, double dpi, const QSize& size)
{
    OVJson answer;
    answer.SetString("file", call.arguments.at(0));
    answer.SetInt("page", pageIndex + 1);
    answer.SetDouble("dpi", dpi);
    answer.SetString("output", call.Value("output"));
    answer.SetInt("widthPx", size.width());
    answer.SetInt("heightPx", size.height());
    call.output.Json(answer);
}

} // namespace

void AddRenderOptions(QCommandLineParser& parser)
{
    parser.addOption(
        {QStringLiteral("page"), QStringLiteral("The page; pages count from 1."), QStringLiteral("number")});
    parser.addOption({QStringLiteral("dpi"), QStringLiteral("Pixels an inch; 96 without it."), QStringLiteral("number"),
                      QStringLiteral("96")});
    parser.addOption({{QStringLiteral("o"), QStringLiteral("output")},
                      QStringLiteral("The PNG file, which is replaced when it is there; - for the standard output."),
                      QStringLiteral("file")});
}

int RunRender(const ToolCall& call)
{
    bool isNumber = false;
    const double dpi = call.Value("dpi").toDouble(&isNumber);
    if (!isNumber || !(dpi >= LowestDpi && dpi <= HighestDpi))
        return TellUsageError(QStringLiteral("--dpi takes a number from %1 to %2.").arg(LowestDpi).arg(HighestDpi));
    if (!call.IsSet("page") || !call.IsSet("output"))
        return TellUsageError(QStringLiteral("Name a page (--page N) and a file (-o PNG)."));
    if (call.Value("output") == QLatin1String("-") && call.WantsJson())
        return TellUsageError(QStringLiteral("The picture and --json cannot both go to the standard output."));
    const QString source = QFileInfo(call.arguments.at(0)).canonicalFilePath();
    if (!source.isEmpty() && source == QFileInfo(call.Value("output")).canonicalFilePath())
        return TellUsageError(QStringLiteral("The picture would replace the document."));
    const std::unique_ptr<ofd::OfdDocument> document = OpenToolFile(call.arguments.at(0));
    if (!document)
        return ExitCannotOpen;
    int exitCode = ExitFine;
    const std::optional<int> page = PageOption(call, *document, &exitCode);
    if (!page)
        return exitCode;
    G_RenderRequest request;
    request.pageIndex = *page;
    request.pixelsPerMm = dpi / MmPerInch;
    const G_RenderResult result = document->Renderer()->RenderPage(request);
    if (!result.error.isEmpty())
        TellError(QStringLiteral("Page %1: %2").arg(*page + 1).arg(result.error));
    if (result.image.isNull())
        return ExitFound;
    exitCode = WritePng(PngOf(result.image, dpi), call);
    if (exitCode == ExitFine && call.WantsJson())
        TellPicture(call, *page, dpi, result.image.size());
    return exitCode == ExitFine && !result.error.isEmpty() ? ExitFound : exitCode;
}
