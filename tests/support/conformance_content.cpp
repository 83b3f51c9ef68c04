#include "conformance_checks.h"

#include <frame/base/converters.h>

#include <QtTest>

namespace {

QString TextInRect(const IG_TextPage* page, const CCA_GRect& rect)
{
    wchar_t* wide = nullptr;
    page->GetTextInRect(rect, &wide);
    const QString text = wide ? QString::fromWCharArray(wide) : QStringLiteral("(null)");
    CCA_FreeWide(wide);
    return text;
}

void TextIsFoundByItsRectangle(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page);
    QVERIFY(!page->GetTextPage() || page->IsLoaded());
    QVERIFY(page->Load());
    IG_TextPage* text = page->GetTextPage();
    QVERIFY(text);
    QVERIFY(text->Parse(0));
    QVERIFY(text->IsParsed());
    QCOMPARE(TextInRect(text, CCA_GRect(15, 25, 60, 40)), QStringLiteral("Hello"));
    QCOMPARE(TextInRect(text, CCA_GRect(0, 0, 210, 297)), QStringLiteral("HelloWorldPAID"));
    QCOMPARE(TextInRect(text, CCA_GRect(150, 0, 200, 20)), QString());
    QCOMPARE(TextInRect(text, CCA_GRect(0, 0, 0, 0)), QString());
}

void RunsCoverTheTextBetweenTwoPoints(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    IG_TextPage* text = page->GetTextPage();
    QVERIFY(text && text->Parse(0));
    QString all;
    for (const G_TextRun& run : text->AllRuns()) {
        QVERIFY(!run.rect.IsEmpty());
        all += run.text;
    }
    QCOMPARE(all, QStringLiteral("HelloWorldPAID"));
    QString between;
    for (const G_TextRun& run : text->RunsBetween({5, 45}, {205, 60}))
        between += run.text;
    QCOMPARE(between, QStringLiteral("World"));
    QVERIFY(text->RunsBetween({10, 100}, {200, 120}).isEmpty());
}

void ARunsTextIsFoundInItsRectangle(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    IG_TextPage* text = page->GetTextPage();
    QVERIFY(text && text->Parse(0));
    const QList<G_TextRun> runs = text->AllRuns();
    QVERIFY(!runs.isEmpty());
    for (const G_TextRun& run : runs)
        QCOMPARE(TextInRect(text, run.rect), run.text);
}

void SelectingTextGivesOneEntryAPage(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    const QList<G_TextRects> one = document->SelectTextRange({5, 25}, 0, {205, 60}, 0, nullptr);
    QCOMPARE(one.size(), 1);
    QCOMPARE(one.first().pageIndex, 0);
    QCOMPARE(one.first().rects.GetSize(), 2);
    const CCA_GRect hello = one.first().rects.GetAt(0);
    QVERIFY(hello.Contains({25, 32}));
    const QList<G_TextRects> two = document->SelectTextRange({5, 45}, 0, {95, 100}, 1, nullptr);
    QCOMPARE(two.size(), 2);
    QCOMPARE(two.last().pageIndex, 1);
    QCOMPARE(two.last().rects.GetSize(), 1);
    const QList<G_TextRects> backward = document->SelectTextRange({95, 100}, 1, {5, 45}, 0, nullptr);
    QCOMPARE(backward.size(), 2);
    QCOMPARE(backward.first().rects.GetSize(), two.first().rects.GetSize());
}

void SelectingOnAMissingPageGivesNothing(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QVERIFY(document->SelectTextRange({0, 0}, 0, {10, 10}, 3, nullptr).isEmpty());
    QVERIFY(document->SelectTextRange({0, 0}, -1, {10, 10}, 0, nullptr).isEmpty());
    QVERIFY(document->SelectTextRange({20, 30}, 0, {20, 30}, 0, nullptr).isEmpty());
}

void ObjectsTagsAndPathsAgree(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document && document->CustomTagRoot(0));
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    G_PageObjRef ref;
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(15, 25, 60, 40), &ref), 1);
    QCOMPARE(ref.objectIds.size(), 1);
    G_TreeNode* buyer = document->CustomTagRoot(0)->SubNode(0)->SubNode(0);
    const auto* tag = dynamic_cast<const G_CustomTagItem*>(buyer->data);
    QVERIFY(tag);
    QCOMPARE(tag->objects.GetSize(), 1);
    QCOMPARE(tag->objects.GetAt(0)->pageId, page->PageId());
    QCOMPARE(tag->objects.GetAt(0)->objectIds, ref.objectIds);
    QVERIFY(tag->attributes.GetAt(0) == "kind=company");

    G_TreeNode* hit = nullptr;
    int extra = 0;
    QVERIFY(page->CustomTagAtPoint(25, 32, &hit, &extra));
    QCOMPARE(hit, buyer);
    QVERIFY(!page->CustomTagAtPoint(180, 100, &hit, &extra));

    CCA_LockedArray<G_PageObjectPath> paths;
    document->CustomTagObjects(paths, tag);
    QCOMPARE(paths.GetSize(), 1);
    QCOMPARE(paths.GetAt(0).pageIndex, 0);
    QVERIFY(GQ_ToQPainterPath(paths.GetAt(0).path).boundingRect().contains(25, 32));
    document->CustomTagObjects(paths, nullptr);
    QCOMPARE(paths.GetSize(), 1);
}

void HiddenObjectsAreNotCollected(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    G_PageObjRef ref;
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 210, 297), &ref), 3);
    page->GetLayerAt(1)->SetVisible(false);
    QCOMPARE(page->CollectObjectsInRect(CCA_GRect(0, 0, 210, 297), &ref), 2);
    QCOMPARE(ref.objectIds.size(), 5);
}

void ReferencesThatHitNothingGiveNoPath(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    G_CustomTagItem tag;
    tag.objects.Add(new G_PageObjRef);
    tag.objects.GetAt(0)->pageId = 1;
    tag.objects.GetAt(0)->objectIds = {0, -3, 999999};
    tag.objects.Add(new G_PageObjRef);
    tag.objects.GetAt(1)->pageId = 555;
    tag.objects.GetAt(1)->objectIds = {1};
    tag.objects.Add(nullptr);
    CCA_LockedArray<G_PageObjectPath> paths;
    document->CustomTagObjects(paths, &tag);
    QCOMPARE(paths.GetSize(), 0);
    G_TreeNode* root = document->CustomTagRoot(0);
    QVERIFY(root && root->SubNode(0)->AddSubNode(0, new G_CustomTagItem(tag)));
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    G_TreeNode* hit = nullptr;
    QVERIFY(page->CustomTagAtPoint(25, 32, &hit, nullptr)); // passes it over
    QVERIFY(hit->NodeText() == "Buyer");
    QVERIFY(document->IsModified());
}

void TheRendererPaintsPages(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_PageRenderer* renderer = document->Renderer();
    QVERIFY(renderer);
    G_RenderRequest request;
    request.pageIndex = 1;
    request.pixelsPerMm = 2;
    const G_RenderResult whole = renderer->RenderPage(request);
    QVERIFY2(whole.error.isEmpty(), qPrintable(whole.error));
    QCOMPARE(whole.image.size(), QSize(200, 300));
    QCOMPARE(whole.image.pixelColor(190, 290), QColor(Qt::white));
    request.region = QRect(10, 20, 30, 40);
    QCOMPARE(renderer->RenderPage(request).image.size(), QSize(30, 40));
    request.cancelled = std::make_shared<std::atomic<bool>>(true);
    QVERIFY(renderer->RenderPage(request).image.isNull());
    request.cancelled = nullptr;
    request.pageIndex = 3;
    QVERIFY(!renderer->RenderPage(request).error.isEmpty());
}

} // namespace

QVector<ConformanceCheck> ContentConformanceChecks()
{
    return {
        {"text is found by its rectangle", TextIsFoundByItsRectangle},
        {"runs cover the text between two points", RunsCoverTheTextBetweenTwoPoints},
        {"a run's text is found in its rectangle", ARunsTextIsFoundInItsRectangle},
        {"selecting text gives one entry a page", SelectingTextGivesOneEntryAPage},
        {"selecting on a missing page gives nothing", SelectingOnAMissingPageGivesNothing},
        {"objects, tags and paths agree", ObjectsTagsAndPathsAgree},
        {"hidden objects are not collected", HiddenObjectsAreNotCollected},
        {"references that hit nothing give no path", ReferencesThatHitNothingGiveNoPath},
        {"the renderer paints pages", TheRendererPaintsPages},
    };
}
