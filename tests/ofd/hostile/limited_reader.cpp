// ofd_limited_reader MEGABYTES FILE COPY: opens the file with no more memory than that, paints and reads its first
// pages, and saves it as COPY. 0 when it opened, 1 when it was refused, 2 for a wrong call, 3 when it opened but its
// copy could not be saved.
#include <ofd/ofd_document.h>

#include <QGuiApplication>

#include <sys/resource.h>

namespace {

constexpr int PagesRead = 3;

// The sanitizers map terabytes that they do not use.
bool CanBeLimited()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#else
    return true;
#endif
}

void ReadPage(ofd::OfdDocument& document, int index)
{
    IG_Page* page = document.GetPage(index); // owned by the document
    page->Load();
    page->LoadAnnots();
    if (IG_TextPage* text = page->GetTextPage()) {
        text->Parse(0);
        text->AllRuns();
    }
    G_RenderRequest request;
    request.pageIndex = index;
    request.pixelsPerMm = 2;
    request.region = QRect(0, 0, 420, 594);
    document.Renderer()->RenderPage(request);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    const rlim_t bytes = rlim_t(arguments.at(1).toULongLong()) << 20;
    const rlimit limit{bytes, bytes};
    if (CanBeLimited() && ::setrlimit(RLIMIT_AS, &limit) != 0)
        return 2;
    const ofd::OpenResult opened = ofd::OfdDocument::Open(arguments.at(2));
    if (!opened)
        return 1;
    ofd::OfdDocument& document = *opened.document;
    document.Prepare();
    document.GetOutlineRoot();
    document.GetBookmarkRoot();
    document.CustomTagRootCount();
    for (int i = 0; i < qMin(PagesRead, document.GetPageCount()); ++i)
        ReadPage(document, i);
    for (int i = 0; i < document.GetPageCount(); ++i)
        document.PageSizeMm(i);
    return document.SaveAs(arguments.at(3)) ? 0 : 3;
}
