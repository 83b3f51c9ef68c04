#include "conformance_checks.h"

#include <frame/base/converters.h>
#include <frame/document/text_source.h>

#include <QtTest>

namespace {

QString TextOf(const QList<G_TextRun>& runs)
{
    QString text;
    for (const G_TextRun& run : runs)
        text += run.text;
    return text;
}

QString WholeText(const IG_TextPage* page)
{
    wchar_t* wide = nullptr;
    page->GetTextInRect(CCA_GRect(0, 0, 210, 297), &wide);
    const QString text = wide ? QString::fromWCharArray(wide) : QStringLiteral("(null)");
    CCA_FreeWide(wide);
    return text;
}

void TheRightToPrintIsTold(ConformanceBackend& backend)
{
    const struct
    {
        const char* rights;
        bool mayPrint;
        int mostCopies;
    } rows[] = {
        {"", true, -1},
        {"rights edit=no\n", true, -1},
        {"rights print=no\n", false, -1},
        {"rights copies=2\n", true, 2},
        {"rights copies=0\n", false, 0},
    };
    for (const auto& row : rows) {
        const auto document = backend.Make(QStringLiteral("page 210 297\n") + QString::fromLatin1(row.rights));
        QVERIFY(document);
        QVERIFY2(document->MayPrint() == row.mayPrint, row.rights);
        QVERIFY2(document->MostCopies() == row.mostCopies, row.rights);
        QVERIFY2(document->HasPermissions() == (*row.rights != 0), row.rights);
        QVERIFY2(document->CheckRight(false), row.rights);
    }
}

void ASignedDocumentSaysSoAndMayBeEdited(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\nsigned\n"));
    QVERIFY(document);
    QVERIFY(document->IsSignProtected());
    QVERIFY(document->CheckRight(true));
    QVERIFY(!document->IsModified());
}

void ATemplateThatIsNotThereIsNotVisible(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QVERIFY(!document->IsTemplateVisible(5));
    QVERIFY(!document->IsTemplateVisible(0));
    document->SetTemplateVisible(5, true);
    QVERIFY(!document->IsTemplateVisible(5));
    QVERIFY(document->GetTemplateZOrder(5) == "Background");
}

void AnnotationsTellWhatTheyAre(ConformanceBackend& backend)
{
    const auto document = backend.Make(
        QStringLiteral("page 210 297\n"
                       "  annot id=41 type=2 rect=1,2,30,40 points=\"1 2 30 40\" locked=yes remark=\"a line\"\n"
                       "  annot id=42 type=4 rect=1,2,30,40 visible=no remark=unseen\n"
                       "  annot id=43 type=32 rect=1,2,30,40 hidden=yes\n"));
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page);
    QCOMPARE(page->LoadAnnots(), 0);
    QCOMPARE(page->GetAnnotCount(), 3);
    IG_Annot* line = page->GetAnnotById(41);
    IG_Annot* unseen = page->GetAnnotById(42);
    IG_Annot* unlisted = page->GetAnnotById(43);
    QVERIFY(line && unseen && unlisted);
    QCOMPARE(line->GetType(), int(AnnotPath));
    QVERIFY(line->GetPointsText() == "1 2 30 40");
    QVERIFY(line->IsLocked() && !unseen->IsLocked() && !unlisted->IsLocked());
    QVERIFY(line->GetVisible(0) && line->GetVisible(1));
    QVERIFY(!unseen->GetVisible(0) && !unseen->GetVisible(1));
    unseen->SetVisible(true, false); // the session shows no more than the document does
    QVERIFY(!unseen->GetVisible(1));
    QVERIFY(unlisted->IsHiddenFromList() && !line->IsHiddenFromList() && !unseen->IsHiddenFromList());
    QCOMPARE(unlisted->GetType(), int(AnnotOther));
    QVERIFY(unseen->GetPointsText().IsEmpty());
    QVERIFY(!document->IsModified());
}

void TextIsEmptyUntilItIsParsed(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && !page->GetTextPage());
    QVERIFY(page->Load());
    const IG_TextPage* text = page->GetTextPage();
    QVERIFY(text && !text->IsParsed());
    QCOMPARE(WholeText(text), QString());
    QVERIFY(text->AllRuns().isEmpty() && text->AllGlyphs().isEmpty());
    QVERIFY(text->RunsBetween({0, 0}, {210, 297}).isEmpty());
}

void TheTextOfAHiddenLayerGoesUntilItIsShown(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    IG_Page* page = document->GetPage(0);
    QVERIFY(page && page->Load());
    IG_TextPage* text = page->GetTextPage();
    QVERIFY(text && text->Parse(0));
    const int before = document->ShownTextRevision();
    page->GetLayerAt(1)->SetVisible(false);
    QVERIFY(document->ShownTextRevision() != before);
    QVERIFY(!text->IsParsed()); // it is no longer what the page shows
    QVERIFY(text->Parse(0) && text->IsParsed());
    QCOMPARE(WholeText(text), QStringLiteral("HelloWorld"));
    QCOMPARE(TextOf(text->AllRuns()), QStringLiteral("HelloWorld"));
    QCOMPARE(text->AllGlyphs().size(), 10);
    const QList<G_TextRects> some = document->SelectTextRange({0, 0}, 0, {210, 297}, 0, nullptr);
    QCOMPARE(some.size(), 1);
    QCOMPARE(some.first().rects.GetSize(), 2);
    const int hidden = document->ShownTextRevision();
    page->GetLayerAt(1)->SetVisible(true);
    QVERIFY(document->ShownTextRevision() != hidden);
    QVERIFY(text->Parse(0));
    QCOMPARE(WholeText(text), QStringLiteral("HelloWorldPAID"));
}

void TheRendererTellsTheSizesOfThePagesOrNone(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document && document->Renderer());
    for (int i = 0; i < document->GetPageCount(); ++i) {
        const QSizeF size = document->Renderer()->PageSizeMm(i);
        QVERIFY(!size.isValid() || size == document->PageSizeMm(i));
    }
}

void ATextSourceReadsWhatThePagesSay(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    const std::atomic<bool> isGivenUp{false};
    for (int i = 0; i < document->GetPageCount(); ++i) {
        IG_Page* page = document->GetPage(i);
        QVERIFY(page && page->Load() && page->GetTextPage()->Parse(0));
        const QList<G_TextGlyph> known = page->GetTextPage()->AllGlyphs();
        if (!document->TextSource())
            continue; // all text is at hand at once
        const auto read = document->TextSource()->ReadText(i, isGivenUp);
        QVERIFY(read && read->IsReadable());
        const QList<G_TextGlyph> glyphs = read->AllGlyphs();
        QCOMPARE(glyphs.size(), known.size());
        for (int k = 0; k < glyphs.size(); ++k)
            QCOMPARE(glyphs.at(k).text, known.at(k).text);
        QVERIFY(document->TextSource()->IsTextRead(i));
    }
}

} // namespace

QVector<ConformanceCheck> StateConformanceChecks()
{
    return {
        {"the right to print is told", TheRightToPrintIsTold},
        {"a signed document says so and may be edited", ASignedDocumentSaysSoAndMayBeEdited},
        {"a template that is not there is not visible", ATemplateThatIsNotThereIsNotVisible},
        {"annotations tell what they are", AnnotationsTellWhatTheyAre},
        {"text is empty until it is parsed", TextIsEmptyUntilItIsParsed},
        {"the text of a hidden layer goes until it is shown", TheTextOfAHiddenLayerGoesUntilItIsShown},
        {"the renderer tells the sizes of the pages, or none", TheRendererTellsTheSizesOfThePagesOrNone},
        {"a text source reads what the pages say", ATextSourceReadsWhatThePagesSay},
    };
}
