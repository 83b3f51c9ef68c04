#include "conformance_checks.h"

#include <frame/base/converters.h>

#include <QtTest>

namespace {

QString LinkFixture()
{
    return QStringLiteral("page 210 297\n"
                          "  layer 1 Text\n"
                          "  link rect=10,10,60,30 uri=guide/one.html base=https://example.org/\n"
                          "  link rect=40,20,90,40 page=7 mode=4 to=1,2,30,40\n"
                          "  layer 2 Stamps\n"
                          "  link rect=100,100,120,110 bookmark=Alpha sound\n"
                          "  annot id=41 type=1 rect=10,200,60,220\n"
                          "  link annot=41 rect=10,200,60,220 attachment=31\n"
                          "page 100 150 id=7\n"
                          "bookmark Alpha page=7\n"
                          "attachment data xml 2 31\n"
                          "open page=7 zoom=2\n");
}

const G_Action* ActionAt(const QVector<G_PageLink>& links, int link, int action = 0)
{
    return links.at(link).actions->Actions()[action];
}

void LinksComeInTheOrderOfPaintingWithTheirActions(ConformanceBackend& backend)
{
    const auto document = backend.Make(LinkFixture());
    QVERIFY(document);
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 4);
    QCOMPARE(links.at(0).area.boundingRect(), QRectF(10, 10, 50, 20));
    const auto* opens = dynamic_cast<const G_ActionUri*>(ActionAt(links, 0));
    QVERIFY(opens);
    QVERIFY(opens->uri == "guide/one.html" && opens->base == "https://example.org/");
    QVERIFY(opens->Address() == "https://example.org/guide/one.html");
    const auto* goes = dynamic_cast<const G_ActionGoto*>(ActionAt(links, 1));
    QVERIFY(goes);
    QCOMPARE(goes->dest->pageId, 7);
    QCOMPARE(goes->dest->pageIndex, 1);
    QCOMPARE(goes->dest->zoomMode, 4);
    QVERIFY(goes->dest->Rect() == CCA_GRect(1, 2, 30, 40));
    const auto* named = dynamic_cast<const G_ActionGoto*>(ActionAt(links, 2));
    QVERIFY(named && named->bookmarkName == "Alpha");
    QCOMPARE(ActionAt(links, 2, 1)->actionType, int(G_Action::Sound));
    const auto* shows = dynamic_cast<const G_ActionAttachment*>(ActionAt(links, 3));
    QVERIFY(shows);
    QCOMPARE(shows->attachmentId, 31);
    QVERIFY(links.at(3).isOfAnnotation && !links.at(2).isOfAnnotation);
    QVERIFY(document->GetPage(1)->GetLinks().isEmpty());
    QVERIFY(!document->IsModified());
}

void APointIsOnALinkWhereItsAreaIs(ConformanceBackend& backend)
{
    const auto document = backend.Make(LinkFixture());
    QVERIFY(document);
    const QVector<G_PageLink> links = document->GetPage(0)->GetLinks();
    QCOMPARE(links.size(), 4);
    QVERIFY(links.at(0).Contains({11, 11}) && links.at(0).Contains({59, 29}));
    QVERIFY(!links.at(0).Contains({61, 29}) && !links.at(0).Contains({59, 31}) && !links.at(0).Contains({9, 11}));
    QVERIFY(links.at(0).Contains({50, 25}) && links.at(1).Contains({50, 25})); // the latter lies above
}

void LinksNeedNoLoadedPageAndOutliveItsRelease(ConformanceBackend& backend)
{
    const auto document = backend.Make(LinkFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    const QVector<G_PageLink> links = page->GetLinks();
    QCOMPARE(links.size(), 4);
    QVERIFY(!page->IsLoaded());
    QVERIFY(page->Load());
    document->ReleasePage(0, 0);
    QCOMPARE(page->GetLinks().size(), 4);
    QVERIFY(dynamic_cast<const G_ActionUri*>(ActionAt(links, 0)));
}

void LinksGoWithTheirLayerAndTheirAnnotation(ConformanceBackend& backend)
{
    const auto document = backend.Make(LinkFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page->Load());
    page->GetLayerAt(0)->SetVisible(false);
    QCOMPARE(page->GetLinks().size(), 2);
    QVERIFY(dynamic_cast<const G_ActionGoto*>(ActionAt(page->GetLinks(), 0)));
    page->GetLayerAt(0)->SetVisible(true);
    QCOMPARE(page->LoadAnnots(), 0);
    page->GetAnnotById(41)->SetVisible(false, false);
    QCOMPARE(page->GetLinks().size(), 3);
    page->GetAnnotById(41)->SetVisible(true, false);
    QCOMPARE(page->GetLinks().size(), 4);
}

void ADocumentTellsWhatItWantsOnOpening(ConformanceBackend& backend)
{
    const auto document = backend.Make(LinkFixture());
    QVERIFY(document);
    const std::shared_ptr<const G_ActionList> wanted = document->GetOpenActions();
    QVERIFY(wanted);
    QCOMPARE(wanted->Actions().GetSize(), 1);
    const auto* goes = dynamic_cast<const G_ActionGoto*>(wanted->Actions()[0]);
    QVERIFY(goes);
    QCOMPARE(goes->dest->pageIndex, 1);
    QCOMPARE(goes->dest->zoom, 2.0F);
    const auto plain = backend.Make(ConformanceFixture());
    QVERIFY(plain);
    QVERIFY(!plain->GetOpenActions());
    QVERIFY(plain->GetPage(0)->GetLinks().isEmpty());
}

} // namespace

QVector<ConformanceCheck> LinkConformanceChecks()
{
    return {
        {"links come in the order of painting with their actions", LinksComeInTheOrderOfPaintingWithTheirActions},
        {"a point is on a link where its area is", APointIsOnALinkWhereItsAreaIs},
        {"links need no loaded page and outlive its release", LinksNeedNoLoadedPageAndOutliveItsRelease},
        {"links go with their layer and their annotation", LinksGoWithTheirLayerAndTheirAnnotation},
        {"a document tells what it wants on opening", ADocumentTellsWhatItWantsOnOpening},
    };
}
