#include "fuzz_support.h"

#include <ofd/model/document_store.h>
#include <ofd/ofd_document.h>
#include <ofd/package/package.h>
#include <ofd/package/xml_part.h>
#include <ofd/parse/document_reader.h>
#include <ofd/render/page_renderer.h>
#include <ofd/text/object_places.h>
#include <samples/deviations.h>
#include <samples/raw_zip.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdlib>

namespace fuzz {

namespace {

// Made once: it draws pictures and measures fonts.
const samples::Package& Plain()
{
    static const samples::Package plain = samples::PlainDocument("fuzz", "A document with a hostile part.");
    return plain;
}

// In memory where that can be had: saving waits for the disk.
QString FolderFile(const QString& name)
{
    static const QTemporaryDir folder(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                          ? QStringLiteral("/dev/shm/fuzz-XXXXXX")
                                          : QDir::temp().filePath(QStringLiteral("fuzz-XXXXXX")));
    return folder.filePath(name);
}

QString WriteInput(const QByteArray& bytes)
{
    const QString path = FolderFile(QStringLiteral("input.ofd"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
    return path;
}

void ReadPage(ofd::OfdDocument& document, int index)
{
    IG_Page* page = document.GetPage(index); // owned by the document
    if (!page)
        return;
    page->Load();
    page->LoadAnnots();
    for (const G_PageLink& link : page->GetLinks())
        link.Contains({100, 150});
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

// With an edit, where there is something that can be edited. What we write, we read.
void SaveCopy(ofd::OfdDocument& document)
{
    G_TreeNode* bookmarks = document.GetBookmarkRoot(); // owned by the document
    auto* first = bookmarks && bookmarks->SubNodeCount() > 0 ? dynamic_cast<G_Bookmark*>(bookmarks->SubNode(0)->data)
                                                             : nullptr; // owned by its node
    if (first)
        first->name = "another <name> & more";
    const QString copy = FolderFile(QStringLiteral("copy.ofd"));
    if (document.SaveAs(copy) && !ofd::OfdDocument::Open(copy))
        std::abort();
}

} // namespace

void StartApplication(int* argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    static QGuiApplication application(*argc, argv);
}

const QStringList& PartNames()
{
    static const QStringList names = [] {
        QStringList xml;
        QStringList others;
        for (const samples::Part& part : Plain().Parts())
            (part.name.endsWith(QLatin1String(".xml")) ? xml : others).append(part.name);
        return xml + others;
    }();
    return names;
}

QByteArray DocumentWith(const QString& part, const QByteArray& bytes)
{
    samples::RawZip zip(Plain());
    for (samples::RawEntry& entry : zip.entries) {
        entry.isStored = true;
        if (QString::fromUtf8(entry.name) == part)
            entry.data = bytes;
    }
    return zip.Bytes();
}

void ReadWholeFile(const QByteArray& bytes)
{
    const ofd::OpenResult opened = ofd::OfdDocument::Open(WriteInput(bytes));
    if (!opened)
        return;
    ofd::OfdDocument& document = *opened.document;
    document.Prepare();
    document.GetOutlineRoot();
    document.GetBookmarkRoot();
    document.CustomTagRootCount();
    for (int i = 0; i < qMin(2, document.GetPageCount()); ++i)
        ReadPage(document, i);
    SaveCopy(document);
}

void PaintFirstPage(const QByteArray& bytes)
{
    std::shared_ptr<ofd::Package> package = ofd::Package::OpenBytes(bytes);
    if (!package)
        return;
    ofd::DocumentParts parts = ofd::ReadDocument(*package);
    if (!parts.document)
        return;
    const auto store = std::make_shared<ofd::DocumentStore>(std::move(package), std::move(parts.structure));
    const ofd::ContentResult page = store->GetPageContent(0);
    ofd::PlaceTexts(*page.content, *store);
    ofd::PlaceObjects(*page.content, *store);
    G_RenderRequest request;
    request.pixelsPerMm = 1;
    request.region = QRect(0, 0, 210, 297);
    ofd::OfdPageRenderer(store).RenderPage(request);
}

} // namespace fuzz
