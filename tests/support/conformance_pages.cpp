#include "conformance_checks.h"

#include <frame/base/converters.h>

#include <QtTest>

namespace {

void PageIdsAndIndexesAgree(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QCOMPARE(document->GetPageCount(), 3);
    const QVector<int> ids{1, 7, 9};
    for (int index = 0; index < ids.size(); ++index) {
        QCOMPARE(document->PageIdFromIndex(index), ids.at(index));
        QCOMPARE(document->PageIndexFromId(ids.at(index)), index);
    }
    QCOMPARE(document->PageIdFromIndex(-1), 0);
    QCOMPARE(document->PageIdFromIndex(3), 0);
    QVERIFY(document->PageIndexFromId(2) < 0);
    QVERIFY(document->PageIndexFromId(0) < 0);
}

void PageSizesAreKnownWithoutLoading(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QCOMPARE(document->PageSizeMm(0), QSizeF(210, 297));
    QCOMPARE(document->PageSizeMm(1), QSizeF(100, 150));
    QVERIFY(!document->PageSizeMm(99).isEmpty());
    QVERIFY(!document->PageSizeMm(-1).isEmpty());
}

void AMissingPageIsNull(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QVERIFY(!document->GetPage(-1));
    QVERIFY(!document->GetPage(3));
    document->ReleasePage(-1, 0);
    document->ReleasePage(3, 0);
}

void APageOutlivesItsRelease(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    document->ReleasePage(1, 0); // unmatched: harmless
    IG_Page* page = document->GetPage(1);
    QVERIFY(page);
    QVERIFY(page->Load());
    QVERIFY(page->IsLoaded());
    QVERIFY(page->Load());
    document->ReleasePage(1, 0);
    document->ReleasePage(1, 0);
    QCOMPARE(page->GetIndex(), 1);
    QCOMPARE(page->PageId(), 7);
    QCOMPARE(page->GetPageWidth(), 100.0F);
    QCOMPARE(page->GetPageHeight(), 150.0F);
    QCOMPARE(page->GetDocument(), document.get());
    QCOMPARE(document->GetPage(1), page);
    QVERIFY(page->Load());
    QVERIFY(page->GetTextPage());
}

void LayersKeepTheirVisibilityAcrossARelease(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    QCOMPARE(page->GetLayerCount(), 2);
    QVERIFY(!page->GetLayerAt(-1));
    QVERIFY(!page->GetLayerAt(2));
    IG_PageLayer* body = page->GetLayerAt(0);
    IG_PageLayer* stamps = page->GetLayerAt(1);
    QVERIFY(body && stamps);
    QCOMPARE(body->GetKind(), 1);
    QCOMPARE(stamps->GetKind(), 2);
    QVERIFY(body->IsVisible() && stamps->IsVisible());
    stamps->SetVisible(false);
    document->ReleasePage(0, 0);
    QVERIFY(!stamps->IsVisible());
    QVERIFY(document->GetPage(0)->Load());
    QCOMPARE(page->GetLayerAt(1), stamps);
    QVERIFY(!page->GetLayerAt(1)->IsVisible());
    QVERIFY(page->GetLayerAt(0)->IsVisible());
    QVERIFY(!document->IsModified());
}

void TemplatesAreListedAndReferredTo(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QCOMPARE(document->GetTemplateCount(), 2);
    QCOMPARE(document->GetTemplateIdAt(0), 101);
    QCOMPARE(document->GetTemplateIdAt(1), 102);
    QCOMPARE(document->GetTemplateIdAt(2), 0);
    QCOMPARE(document->GetTemplateIdAt(-1), 0);
    QCOMPARE(GQ_ToQStringFromUtf8(document->GetTemplateName(101)), QStringLiteral("Letterhead"));
    QVERIFY(document->GetTemplateZOrder(101) == "Background");
    QVERIFY(document->GetTemplateZOrder(102) == "Foreground");
    QVERIFY(document->GetTemplateName(5).IsEmpty());
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    QCOMPARE(page->GetTemplateRefCount(), 1);
    QCOMPARE(page->GetTemplateRefAt(0), 101);
    QCOMPARE(page->GetTemplateRefAt(1), 0);
    QCOMPARE(page->GetTemplateRefAt(-1), 0);
    QVERIFY(page->GetTemplateRefZOrder(0) == "Background");
}

void TemplateVisibilityIsSessionState(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QVERIFY(document->IsTemplateVisible(101));
    document->SetTemplateVisible(101, false);
    document->SetTemplateVisible(5, false); // none of the document: nothing
    QVERIFY(!document->IsTemplateVisible(101));
    QVERIFY(document->IsTemplateVisible(102));
    QVERIFY(!document->IsModified());
    document->SetTemplateVisible(101, true);
    QVERIFY(document->IsTemplateVisible(101));
}

void AnnotationsAreListedAfterLoadAnnots(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page);
    QCOMPARE(page->LoadAnnots(), 0);
    QCOMPARE(page->GetAnnotCount(), 2);
    QVERIFY(!page->GetAnnotAt(2));
    QVERIFY(!page->GetAnnotAt(-1));
    QVERIFY(!page->GetAnnotById(99));
    IG_Annot* annot = page->GetAnnotById(41);
    QVERIFY(annot);
    QCOMPARE(annot, page->GetAnnotAt(0));
    QCOMPARE(annot->GetId(), 41);
    QCOMPARE(annot->GetType(), int(AnnotStamp));
    QVERIFY(annot->GetSubType() == "Stamp");
    QVERIFY(annot->GetCreator() == "Li");
    QVERIFY(annot->GetDate() == "2020-01-02");
    QVERIFY(annot->GetRemark() == "first");
    QVERIFY(annot->GetBoundary() == CCA_GRect(10, 10, 40, 20));
    QCOMPARE(annot->GetOwnerPage(), page);
    IG_Page* empty = document->GetPage(2);
    QVERIFY(empty);
    QCOMPARE(empty->LoadAnnots(), 0);
    QCOMPARE(empty->GetAnnotCount(), 0);
}

void AnnotationsOutliveTheirPagesRelease(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page);
    QCOMPARE(page->LoadAnnots(), 0);
    IG_Annot* annot = page->GetAnnotById(42);
    QVERIFY(annot);
    annot->SetRemark("changed");
    annot->SetDate("2024-05-06 07:08:09");
    document->ReleasePage(0, 0);
    QCOMPARE(annot->GetOwnerPage()->GetIndex(), 0);
    QCOMPARE(document->GetPage(0)->LoadAnnots(), 0);
    QCOMPARE(page->GetAnnotCount(), 2);
    QCOMPARE(page->GetAnnotById(42), annot);
    QVERIFY(annot->GetRemark() == "changed");
    QVERIFY(annot->GetDate() == "2024-05-06 07:08:09");
    QVERIFY(document->IsModified());
}

void ScreeningAnAnnotationIsSessionState(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page);
    QCOMPARE(page->LoadAnnots(), 0);
    IG_Annot* annot = page->GetAnnotById(41);
    QVERIFY(annot);
    QVERIFY(annot->GetVisible(0) && annot->GetVisible(1));
    annot->SetVisible(false, true);
    QVERIFY(annot->GetVisible(0));
    QVERIFY(!annot->GetVisible(1));
    QVERIFY(!document->IsModified());
}

} // namespace

QVector<ConformanceCheck> PageConformanceChecks()
{
    return {
        {"page ids and indexes agree", PageIdsAndIndexesAgree},
        {"page sizes are known without loading", PageSizesAreKnownWithoutLoading},
        {"a missing page is null", AMissingPageIsNull},
        {"a page outlives its release", APageOutlivesItsRelease},
        {"layers keep their visibility across a release", LayersKeepTheirVisibilityAcrossARelease},
        {"templates are listed and referred to", TemplatesAreListedAndReferredTo},
        {"template visibility is session state", TemplateVisibilityIsSessionState},
        {"annotations are listed after LoadAnnots", AnnotationsAreListedAfterLoadAnnots},
        {"annotations outlive their page's release", AnnotationsOutliveTheirPagesRelease},
        {"screening an annotation is session state", ScreeningAnAnnotationIsSessionState},
    };
}
