// A whole document: opened, listed, its first pages painted and read.
#include <ofd/ofd_document.h>

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

namespace {

QString WriteInput(const uint8_t* data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("input.ofd"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    return path;
}

void ReadPage(ofd::OfdDocument& document, int index)
{
    IG_Page* page = document.GetPage(index);
    if (!page)
        return;
    page->Load();
    page->LoadAnnots();
    if (IG_TextPage* text = page->GetTextPage()) {
        text->Parse(0);
        text->AllRuns();
    }
    document.ReleasePage(index, 0);
    G_RenderRequest request;
    request.pageIndex = index;
    request.pixelsPerMm = 1;
    request.region = QRect(0, 0, 200, 200);
    document.Renderer()->RenderPage(request);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(WriteInput(data, size), true);
    if (!opened)
        return 0;
    opened.document->Prepare();
    opened.document->GetOutlineRoot();
    opened.document->GetBookmarkRoot();
    opened.document->CustomTagRootCount();
    for (int i = 0; i < qMin(2, opened.document->GetPageCount()); ++i)
        ReadPage(*opened.document, i);
    return 0;
}
