#include <frame/base/converters.h>
#include <frame/document/memory_document.h>
#include <tests/support/byte_streams.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <atomic>
#include <thread>

// What the in-memory document offers beyond the contract: switches, failures, removal, and its exact glyph boxes.
class TestMemoryDocument : public QObject
{
    Q_OBJECT

private slots:
    void aFailingPageIsNull();
    void rootsCanBeMadeToFail();
    void loadedPagesAreCounted();
    void contentIsUnknownUntilThePageIsLoaded();
    void aRemovedPageStaysAsAnObject();
    void aRemovedAnnotationIsInertAndCanComeBack();
    void annotationsHaveNoLifeBeforeLoadAnnots();
    void noTwoAnnotationsOfTheDocumentHaveOneId();
    void glyphsLieInTheirBoxes();
    void textIsReadFromTopToBottom();
    void selectionFollowsTheReadingOrder();
    void charactersBeyondThePlaneAreOneGlyph();
    void theSmallestObjectThenTheDeepestTagIsHit();
    void treesCountAsModifiedOnlyWhileTheyDiffer();
    void rightsCanBeTakenAway();
    void aTemplateWithoutKnownOrderLiesBehind();
    void hiddenThingsAreNotPainted();
    void impossiblePicturesAreRefused();
    void pagesArePaintedWhileLayersChange();
};

namespace {

std::unique_ptr<MemoryDocument> Read(const char* text)
{
    return MemoryDocument::FromText(QString::fromUtf8(text));
}

QString TextIn(IG_Page* page, const CCA_GRect& rect)
{
    IG_TextPage* textPage = page->GetTextPage();
    textPage->Parse(0);
    wchar_t* wide = nullptr;
    textPage->GetTextInRect(rect, &wide);
    const QString text = QString::fromWCharArray(wide);
    CCA_FreeWide(wide);
    return text;
}

QImage Paint(MemoryDocument* document, const QSet<int>& ignoredTemplates = QSet<int>(), bool withAnnotations = true)
{
    G_RenderRequest request;
    request.pixelsPerMm = 2;
    request.ignoredTemplates = ignoredTemplates;
    request.withAnnotations = withAnnotations;
    return document->Renderer()->RenderPage(request).image;
}

} // namespace

void TestMemoryDocument::aFailingPageIsNull()
{
    const auto document = Read("page 10 20\npage 10 20\n");
    IG_Page* page = document->GetPage(1);
    document->SetPageFailure(1, true);
    QVERIFY(!document->GetPage(1));
    QVERIFY(!page->Load());
    QVERIFY(!page->GetTextPage());
    QVERIFY(document->GetPage(0));
    G_RenderRequest request;
    request.pageIndex = 1;
    const G_RenderResult result = document->Renderer()->RenderPage(request);
    QVERIFY(!result.error.isEmpty());
    QVERIFY(!result.image.isNull()); // a blank sheet
    document->SetPageFailure(1, false);
    QCOMPARE(document->GetPage(1), page);
    QVERIFY(page->Load());
}

void TestMemoryDocument::rootsCanBeMadeToFail()
{
    MemoryDocument document;
    document.SetCreateRootFailure(true);
    QVERIFY(!document.CreateBookmarkRoot());
    QVERIFY(!document.CreateOutlineRoot());
    QVERIFY(!document.AddCustomTagRoot("a", "fp", "namespace", 0));
    QVERIFY(!document.GetBookmarkRoot());
    QVERIFY(!document.GetOutlineRoot());
    QCOMPARE(document.CustomTagRootCount(), 0);
    document.SetCreateRootFailure(false);
    QVERIFY(document.CreateBookmarkRoot());
}

void TestMemoryDocument::loadedPagesAreCounted()
{
    const auto document = Read("page 10 20\npage 10 20\n");
    QCOMPARE(document->LoadedPageCount(), 0);
    document->GetPage(0)->Load();
    document->GetPage(1)->Load();
    QCOMPARE(document->LoadedPageCount(), 2);
    document->ReleasePage(0, 0);
    QCOMPARE(document->LoadedPageCount(), 1);
}

void TestMemoryDocument::contentIsUnknownUntilThePageIsLoaded()
{
    const auto document = Read("page 10 20\n  layer 1 Body\n  template 5 Body\n  text 1 1 x\ntemplate 5 Body T\n");
    IG_Page* page = document->GetPage(0);
    G_PageObjRef ref;
    QVERIFY(!page->IsLoaded());
    QCOMPARE(page->GetLayerCount(), 0);
    QVERIFY(!page->GetLayerAt(0));
    QCOMPARE(page->GetTemplateRefCount(), 0);
    QVERIFY(!page->GetTextPage());
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 10, 20), &ref), 0);
    QVERIFY(page->Load());
    QCOMPARE(page->GetLayerCount(), 1);
    QCOMPARE(page->GetTemplateRefCount(), 1);
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 10, 20), &ref), 1);
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 10, 20), nullptr), 0);
}

void TestMemoryDocument::aRemovedPageStaysAsAnObject()
{
    const auto document = Read("page 10 20\n  annot id=1\npage 30 40\n");
    IG_Page* first = document->GetPage(0);
    IG_Page* second = document->GetPage(1);
    first->LoadAnnots();
    IG_Annot* annot = first->GetAnnotAt(0);
    QVERIFY(document->RemovePage(0));
    QVERIFY(!document->RemovePage(5));
    QCOMPARE(document->GetPageCount(), 1);
    QCOMPARE(first->GetIndex(), -1);
    QCOMPARE(second->GetIndex(), 0);
    QVERIFY(document->PageIndexFromId(1) < 0);
    QCOMPARE(annot->GetOwnerPage(), first);
    QVERIFY(document->IsModified());
}

void TestMemoryDocument::aRemovedAnnotationIsInertAndCanComeBack()
{
    const auto document = Read("page 10 20\n  annot id=1 remark=old\n  annot id=2\n");
    IG_Page* page = document->GetPage(0);
    page->LoadAnnots();
    IG_Annot* annot = page->GetAnnotById(1);
    document->RemoveAnnot(annot);
    QVERIFY(document->IsModified());
    QCOMPARE(page->GetAnnotCount(), 1);
    QVERIFY(!page->GetAnnotById(1));
    QVERIFY(annot->IsHiddenFromList());
    QCOMPARE(annot->GetId(), 1);
    QCOMPARE(annot->GetOwnerPage(), page);
    annot->SetRemark("new");
    annot->SetDate("2030-01-01");
    annot->SetVisible(false, true);
    QVERIFY(annot->GetRemark() == "old");
    QVERIFY(annot->GetDate().IsEmpty());
    QVERIFY(annot->GetVisible(1));
    page->LoadAnnots(); // does not bring it back
    QCOMPARE(page->GetAnnotCount(), 1);
    document->ReviveAnnot(annot);
    QCOMPARE(page->GetAnnotAt(0), annot); // at its old place
    QVERIFY(!annot->IsHiddenFromList());
}

void TestMemoryDocument::annotationsHaveNoLifeBeforeLoadAnnots()
{
    const auto document = Read("page 10 20\n  annot id=1\n");
    IG_Page* page = document->GetPage(0);
    QCOMPARE(page->GetAnnotCount(), 0);
    QVERIFY(!page->GetAnnotById(1));
    page->LoadAnnots();
    QVERIFY(page->GetAnnotById(1));
    MemoryDocument::AnnotRecord record;
    IG_Annot* added = document->AddAnnot(0, record);
    QVERIFY(added);
    QCOMPARE(page->GetAnnotCount(), 2);
    QCOMPARE(added->GetId(), 2);
    QVERIFY(!document->AddAnnot(7, record));
}

void TestMemoryDocument::noTwoAnnotationsOfTheDocumentHaveOneId()
{
    const auto document = Read("page 10 20\n  annot id=5\n  annot id=5\npage 10 20\n  annot id=5\n  annot\n");
    QVector<int> ids;
    for (int i = 0; i < 2; ++i) {
        IG_Page* page = document->GetPage(i);
        page->LoadAnnots();
        for (int k = 0; k < page->GetAnnotCount(); ++k)
            ids.append(page->GetAnnotAt(k)->GetId());
    }
    QCOMPARE(ids, (QVector<int>{5, 6, 7, 8}));
}

void TestMemoryDocument::glyphsLieInTheirBoxes()
{
    const auto document = Read("page 210 297\n  text 20 30 Hello\n");
    IG_Page* page = document->GetPage(0);
    page->Load();
    QCOMPARE(TextIn(page, CCA_GRect(20, 30, 24, 34)), QStringLiteral("He"));
    QCOMPARE(TextIn(page, CCA_GRect(23.5F, 31, 26.5F, 33)), QStringLiteral("l"));
    QCOMPARE(TextIn(page, CCA_GRect(20, 30, 30, 31.9F)), QString()); // centres lie lower
    const QList<G_TextRun> runs = page->GetTextPage()->AllRuns();
    QCOMPARE(runs.size(), 1);
    QVERIFY(runs.first().rect == CCA_GRect(20, 30, 30, 34));
}

void TestMemoryDocument::textIsReadFromTopToBottom()
{
    const auto document = Read("page 210 297\n  text 60 30 right\n  text 20 90 last\n  text 20 30 left\n");
    IG_Page* page = document->GetPage(0);
    page->Load();
    QCOMPARE(TextIn(page, CCA_GRect(0, 0, 210, 297)), QStringLiteral("leftrightlast"));
}

void TestMemoryDocument::selectionFollowsTheReadingOrder()
{
    const auto document =
        Read("page 210 297\n  text 20 30 Hello\n  text 20 50 World\npage 210 297\n  text 20 30 Next\n");
    const auto select = [&](CCA_GPoint from, int fromPage, CCA_GPoint to, int toPage) {
        QString text;
        for (const G_TextRects& rects : document->SelectTextRange(from, fromPage, to, toPage, nullptr)) {
            IG_Page* page = document->GetPage(rects.pageIndex);
            page->Load();
            const QVector<CCA_GRect> values = rects.rects.Values();
            for (const CCA_GRect& rect : values)
                text += TextIn(page, rect) + QLatin1Char('|');
        }
        return text;
    };
    QCOMPARE(select({22.5F, 32}, 0, {27.5F, 32}, 0), QStringLiteral("ell|"));
    QCOMPARE(select({27.5F, 32}, 0, {22.5F, 32}, 0), QStringLiteral("ell|"));
    QCOMPARE(select({26, 32}, 0, {24, 52}, 0), QStringLiteral("lo|Wo|"));
    QCOMPARE(select({24, 52}, 0, {24, 32}, 1), QStringLiteral("rld|Ne|"));
    QCOMPARE(select({24, 32}, 1, {24, 52}, 0), QStringLiteral("rld|Ne|"));
    QCOMPARE(select({20, 40}, 0, {25, 45}, 0), QString()); // between two lines
    QCOMPARE(document->SelectTextRange({20, 40}, 0, {25, 45}, 0, nullptr).size(), 1);
}

void TestMemoryDocument::charactersBeyondThePlaneAreOneGlyph()
{
    const auto document = Read("page 210 297\n  text 0 0 a\xF0\x9F\x98\x80z\n");
    IG_Page* page = document->GetPage(0);
    page->Load();
    QCOMPARE(TextIn(page, CCA_GRect(2, 0, 4, 4)), QString::fromUtf8("\xF0\x9F\x98\x80"));
    QCOMPARE(TextIn(page, CCA_GRect(4, 0, 6, 4)), QStringLiteral("z"));
}

void TestMemoryDocument::theSmallestObjectThenTheDeepestTagIsHit()
{
    const auto document = Read("page 210 297\n"
                               "  text 10 10 long text\n"
                               "  text 10 10 lo\n"
                               "tag T objects=1:1\n"
                               "  tag Outer objects=1:2\n"
                               "    tag Inner objects=1:2\n"
                               "tag Elsewhere objects=2:2\n");
    IG_Page* page = document->GetPage(0);
    G_TreeNode* node = nullptr;
    int objectId = 0;
    QVERIFY(!page->CustomTagAtPoint(11, 12, &node, &objectId)); // not loaded
    page->Load();
    QVERIFY(page->CustomTagAtPoint(11, 12, &node, &objectId));
    QVERIFY(node->NodeText() == "Inner");
    QCOMPARE(objectId, 2);
    QVERIFY(page->CustomTagAtPoint(25, 12, &node, &objectId));
    QVERIFY(node->NodeText() == "T");
    QVERIFY(page->CustomTagAtPoint(25, 12, nullptr, nullptr));
    QVERIFY(!page->CustomTagAtPoint(100, 100, &node, &objectId));
}

void TestMemoryDocument::treesCountAsModifiedOnlyWhileTheyDiffer()
{
    const auto document = Read("bookmark a\nbookmark b\n");
    G_TreeNode* root = document->GetBookmarkRoot();
    QVERIFY(!document->IsModified());
    QVERIFY(G_TreeNode::MoveSubNode(root, 0, root, 1));
    QVERIFY(document->IsModified());
    QVERIFY(G_TreeNode::MoveSubNode(root, 0, root, 1));
    QVERIFY(!document->IsModified());
    dynamic_cast<G_Bookmark*>(root->SubNode(0)->data)->dest->zoom = 2;
    QVERIFY(document->IsModified());
    document->SetModified(false);
    QVERIFY(!document->IsModified());
    document->SetModified(true);
    QVERIFY(document->IsModified());
}

void TestMemoryDocument::rightsCanBeTakenAway()
{
    MemoryDocument document;
    document.SetRights(true, false, true, false);
    QVERIFY(document.HasPermissions());
    QVERIFY(!document.MayEdit());
    QVERIFY(document.MayAnnotate());
    QVERIFY(!document.MayExport());
    QVERIFY(!document.CheckRight(true));
    QVERIFY(document.CheckRight(false));
    document.SetRights(false, false, false, false); // without permissions all is allowed
    QVERIFY(document.MayEdit() && document.MayAnnotate() && document.MayExport());
    document.SetReadOnly(true);
    document.SetSignProtected(true);
    document.SetEncrypted(true);
    QVERIFY(document.IsReadOnly() && document.IsSignProtected() && document.IsEncrypted());
    document.SetDocumentKey("/a/b.ofd");
    QVERIFY(document.GetDocumentKey() == "/a/b.ofd");
}

void TestMemoryDocument::aTemplateWithoutKnownOrderLiesBehind()
{
    const auto document = Read("page 10 20\n  template 5 Custom\ntemplate 5 Strange T\n");
    IG_Page* page = document->GetPage(0);
    page->Load();
    QVERIFY(document->GetTemplateZOrder(5) == "Background");
    QVERIFY(page->GetTemplateRefZOrder(0) == "Background");
    QVERIFY(page->GetTemplateRefZOrder(9) == "Background");
}

void TestMemoryDocument::hiddenThingsAreNotPainted()
{
    const auto document = Read("page 100 100\n"
                               "  layer 1 Body\n"
                               "  text 10 10 HHHHHHHH\n"
                               "  template 5 Background\n"
                               "  annot id=1 rect=40,40,60,60\n"
                               "template 5 Background XXXXXX\n");
    const QImage all = Paint(document.get());
    QCOMPARE(all.size(), QSize(200, 200));
    const QImage withoutTemplate = Paint(document.get(), {5});
    const QImage withoutAnnot = Paint(document.get(), {}, false);
    QVERIFY(withoutTemplate != all);
    QVERIFY(withoutAnnot != all);
    document->SetTemplateVisible(5, false);
    QCOMPARE(Paint(document.get()), withoutTemplate);
    IG_Page* page = document->GetPage(0);
    page->LoadAnnots();
    page->GetAnnotAt(0)->SetVisible(false, true);
    page->Load();
    page->GetLayerAt(0)->SetVisible(false);
    QImage paper(200, 200, QImage::Format_RGB32);
    paper.fill(Qt::white);
    QCOMPARE(Paint(document.get()), paper);
}

void TestMemoryDocument::impossiblePicturesAreRefused()
{
    const auto document = Read("page 100 100\n");
    G_RenderRequest request;
    for (const double scale : {0.0, -1.0, 1e6, double(qInf()), double(qQNaN())}) {
        request.pixelsPerMm = scale;
        const G_RenderResult result = document->Renderer()->RenderPage(request);
        QVERIFY(!result.error.isEmpty());
        QVERIFY(!result.image.isNull());
    }
}

void TestMemoryDocument::pagesArePaintedWhileLayersChange()
{
    const auto document = Read("page 100 100\n  layer 1 Body\n  text 10 10 x\n  template 5 Body\ntemplate 5 Body T\n");
    IG_Page* page = document->GetPage(0);
    page->Load();
    int paintedCount = 0;
    std::atomic<bool> isDone{false};
    std::thread painter([&] {
        for (int i = 0; i < 20; ++i)
            paintedCount += Paint(document.get()).isNull() ? 0 : 1;
        isDone = true;
    });
    for (int i = 0; !isDone; ++i) {
        page->GetLayerAt(0)->SetVisible(i % 2 == 0);
        document->SetTemplateVisible(5, i % 2 == 0);
        if (i < 100)
            document->AddText(0, 10, 20, QStringLiteral("more"));
    }
    painter.join();
    QCOMPARE(paintedCount, 20);
}

TETO_TEST_MAIN(TestMemoryDocument)
#include "test_memory_document.moc"
