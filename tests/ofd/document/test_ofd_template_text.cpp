// The text of templates: where it is read, found and selected, and what goes by the page's own objects alone.
#include "ofd_file.h"
#include "sample_files.h"

#include <frame/document/payloads.h>
#include <frame/document/text_search.h>
#include <frame/document/text_source.h>
#include <frame/document/tree_node.h>
#include <ofd/ofd_document.h>
#include <tests/support/test_main.h>

#include <QTemporaryDir>
#include <QtTest>

namespace {

// A line of 5 mm letters, 4 mm apart, whose first one stands at the left.
QByteArray Line(int x, int y, const QByteArray& letters, const QByteArray& attributes = {})
{
    return "<ofd:TextObject ID=\"" + QByteArray::number(100 + x + y) + "\" Font=\"10\" Size=\"5\" Boundary=\"" +
           QByteArray::number(x) + " " + QByteArray::number(y) + " 40 6\" " + attributes +
           "><ofd:TextCode X=\"0\" Y=\"4\" DeltaX=\"g 30 4\">" + letters + "</ofd:TextCode></ofd:TextObject>";
}

QByteArray Layer(const QByteArray& objects)
{
    return "<ofd:Content><ofd:Layer ID=\"500\">" + objects + "</ofd:Layer></ofd:Content>";
}

QByteArray Use(int id, const QByteArray& order)
{
    return "<ofd:Template TemplateID=\"" + QByteArray::number(id) + "\" ZOrder=\"" + order + "\"/>";
}

struct Template
{
    int id;
    QByteArray content; // of the page element
};

QStringList Texts(const QList<G_TextRun>& runs)
{
    QStringList texts;
    for (const G_TextRun& run : runs)
        texts.append(run.text);
    return texts;
}

G_TextQuery Query(const QString& text)
{
    G_TextQuery query;
    query.text = text;
    return query;
}

} // namespace

class TestOfdTemplateText : public QObject
{
    Q_OBJECT
private slots:
    void aLabelOfATemplateStandsBeforeWhatWasFilledIn();
    void aLabelThatTouchesItsValueIsOneLineWithIt();
    void linesWithoutNeighboursStandBetweenThoseAboveAndBelow();
    void aPageThatIsWrittenUpwardsTakesLinesInAtItsEnds();
    void theOwnTextKeepsItsOrder();
    void aWatermarkOverALineIsNotPartOfIt();
    void aPageThatHasTextOfItsTemplateAloneCanBeSelected();
    void templatesOfTemplatesAreReadOnceAndCyclesEnd();
    void aTemplateThatIsUsedTwiceIsReadOnce();
    void hiddenTemplatesAndLayersHaveNoTextUntilTheyAreShown();
    void thePageCacheOfASearchFollowsWhatIsShown();
    void objectsInARectangleAreThoseOfThePageAlone();
    void tagsReferToNoObjectsOfTemplates();
    void textInARectangleHasThatOfTheTemplate();
    void selectedRectanglesHaveThoseOfTheTemplate();
    void readAheadThePageIsAtHandAsLongAsItIsHeld();
    void readingThatIsGivenUpGivesNothing();
    void aBrokenPageIsReadAsNotReadable();
    void theSampleOfAFormIsReadAsItIsFilledIn();

private:
    ofd::OfdDocument* Open(const QByteArray& page, const QList<Template>& templates);
    const IG_TextPage* Text(int pageIndex = 0);
    QStringList Lines() { return Texts(Text()->AllRuns()); }
    int CountOf(const QString& text, G_PageTextCache* cache = nullptr);

    std::unique_ptr<ofd::OfdDocument> document;
    QTemporaryDir folder;
    int count = 0;
};

ofd::OfdDocument* TestOfdTemplateText::Open(const QByteArray& page, const QList<Template>& templates)
{
    OfdFile file = OfdFile::WithPages(3);
    QByteArray list;
    for (const Template& one : templates) {
        const QByteArray id = QByteArray::number(one.id);
        list += "<ofd:TemplatePage ID=\"" + id + "\" BaseLoc=\"Tpls/Tpl_" + id + ".xml\"/>";
        file.Set(QStringLiteral("Doc_0/Tpls/Tpl_%1.xml").arg(one.id), Element("Page", one.content));
    }
    file.Common(list);
    file.Set(QStringLiteral("Doc_0/Pages/Page_0/Content.xml"), Element("Page", page));
    file.Set(QStringLiteral("Doc_0/Pages/Page_2/Content.xml"), "<broken");
    const QString path = folder.filePath(QStringLiteral("%1.ofd").arg(++count));
    file.Write(path);
    document = ofd::OfdDocument::Open(path).document;
    if (!document)
        qFatal("the file does not open");
    return document.get();
}

const IG_TextPage* TestOfdTemplateText::Text(int pageIndex)
{
    IG_Page* page = document->GetPage(pageIndex);
    if (!page || !page->Load() || (!page->GetTextPage()->IsParsed() && !page->GetTextPage()->Parse(0)))
        qFatal("the page has no text");
    return page->GetTextPage();
}

int TestOfdTemplateText::CountOf(const QString& text, G_PageTextCache* cache)
{
    return G_TextSearch(Query(text)).FindOnPage(document.get(), 0, 100, nullptr, cache).size();
}

void TestOfdTemplateText::aLabelOfATemplateStandsBeforeWhatWasFilledIn()
{
    Open(Use(50, "Background") + Layer(Line(50, 10, "12345") + Line(50, 20, "Miller")),
         {{50, Layer(Line(10, 10, "Number") + Line(10, 20, "Name") + Line(85, 10, "pcs"))}});
    QCOMPARE(Lines(), (QStringList{"Number", "12345", "pcs", "Name", "Miller"}));
    QCOMPARE(Texts(Text()->RunsBetween({5, 12}, {75, 12})), (QStringList{"Number", "12345"}));
}

void TestOfdTemplateText::aLabelThatTouchesItsValueIsOneLineWithIt()
{
    Open(Use(50, "Foreground") + Layer(Line(26, 10, "1234")), {{50, Layer(Line(10, 10, "No.:"))}});
    QCOMPARE(Lines().size(), 1);
    QCOMPARE(Lines().first().remove(' '), QString("No.:1234")); // narrow signs leave a gap
    QCOMPARE(CountOf("no.:12"), 1);
}

void TestOfdTemplateText::linesWithoutNeighboursStandBetweenThoseAboveAndBelow()
{
    Open(Use(50, "Background") + Layer(Line(10, 20, "one") + Line(10, 40, "two")),
         {{50, Layer(Line(10, 5, "head") + Line(10, 90, "foot") + Line(10, 30, "rows"))}});
    QCOMPARE(Lines(), (QStringList{"head", "one", "rows", "two", "foot"}));
}

void TestOfdTemplateText::aPageThatIsWrittenUpwardsTakesLinesInAtItsEnds()
{
    const QByteArray own = Layer(Line(10, 80, "three") + Line(10, 60, "two") + Line(10, 20, "one"));
    Open(Use(50, "Background") + Use(51, "Foreground") + own,
         {{50, Layer(Line(10, 40, "below"))}, {51, Layer(Line(10, 70, "above"))}});
    QCOMPARE(Lines(), (QStringList{"above", "three", "two", "one", "below"}));
}

void TestOfdTemplateText::theOwnTextKeepsItsOrder()
{
    QByteArray columns;
    for (int x : {10, 60}) {
        for (int y : {20, 30, 40})
            columns += Line(x, y, QByteArray::number(x + y));
    }
    Open(Use(50, "Background") + Use(51, "Foreground") + Layer(columns),
         {{50, Layer(Line(30, 5, "head"))}, {51, Layer(Line(30, 90, "foot"))}});
    QCOMPARE(Lines(), (QStringList{"head", "30", "40", "50", "80", "90", "100", "foot"}));
    QCOMPARE(Texts(Text()->RunsBetween({9, 22}, {20, 42})), (QStringList{"30", "40", "50"}));
}

void TestOfdTemplateText::aWatermarkOverALineIsNotPartOfIt()
{
    Open(Use(50, "Background") + Layer(Line(10, 20, "one") + Line(10, 30, "two")),
         {{50, Layer("<ofd:TextObject ID=\"7\" Font=\"10\" Size=\"30\" Boundary=\"5 5 90 40\">"
                     "<ofd:TextCode X=\"0\" Y=\"30\" DeltaX=\"20\">MK</ofd:TextCode></ofd:TextObject>")}});
    QCOMPARE(Lines(), (QStringList{"MK", "one", "two"}));
}

void TestOfdTemplateText::aPageThatHasTextOfItsTemplateAloneCanBeSelected()
{
    Open(Use(50, "Body"), {{50, Layer(Line(10, 20, "form"))}});
    QCOMPARE(Lines(), QStringList{"form"});
    QCOMPARE(Texts(Text()->RunsBetween({0, 0}, {18, 22})), QStringList{"fo"});
    QCOMPARE(CountOf("FORM"), 1);
}

void TestOfdTemplateText::templatesOfTemplatesAreReadOnceAndCyclesEnd()
{
    Open(Use(50, "Background") + Layer(Line(10, 50, "own")),
         {{50, Use(51, "Background") + Use(52, "Background") + Layer(Line(10, 30, "outer"))},
          {51, Use(50, "Background") + Use(52, "Background") + Layer(Line(10, 20, "inner"))},
          {52, Use(99, "Background") + Layer(Line(10, 10, "shared"))}});
    QCOMPARE(Lines(), (QStringList{"shared", "inner", "outer", "own"}));
}

void TestOfdTemplateText::aTemplateThatIsUsedTwiceIsReadOnce()
{
    Open(Use(50, "Background") + Use(50, "Foreground") + Layer(Line(10, 50, "own")),
         {{50, Layer(Line(10, 20, "twice"))}});
    QCOMPARE(Lines(), (QStringList{"twice", "own"}));
}

void TestOfdTemplateText::hiddenTemplatesAndLayersHaveNoTextUntilTheyAreShown()
{
    Open(Use(50, "Background") + Layer(Line(10, 50, "own")), {{50, Layer(Line(10, 20, "form"))}});
    QCOMPARE(Lines(), (QStringList{"form", "own"}));
    document->SetTemplateVisible(50, false);
    QVERIFY(!document->GetPage(0)->GetTextPage()->IsParsed());
    QCOMPARE(Lines(), QStringList{"own"});
    QCOMPARE(CountOf("form"), 0);
    document->GetPage(0)->GetLayerAt(0)->SetVisible(false);
    QVERIFY(Lines().isEmpty());
    document->SetTemplateVisible(50, true);
    document->GetPage(0)->GetLayerAt(0)->SetVisible(true);
    QCOMPARE(Lines(), (QStringList{"form", "own"}));
}

void TestOfdTemplateText::thePageCacheOfASearchFollowsWhatIsShown()
{
    Open(Use(50, "Background") + Layer(Line(10, 50, "own")), {{50, Layer(Line(10, 20, "form"))}});
    G_PageTextCache cache;
    document->SetTemplateVisible(50, false);
    QCOMPARE(CountOf("form", &cache), 0);
    QVERIFY(cache.Knows(0));
    document->SetTemplateVisible(50, true);
    QCOMPARE(CountOf("form", &cache), 1);
}

void TestOfdTemplateText::objectsInARectangleAreThoseOfThePageAlone()
{
    Open(Use(50, "Background") + Layer(Line(10, 50, "own")),
         {{50, Layer(Line(10, 20, "form") + Line(10, 48, "over"))}});
    QCOMPARE(Lines().size(), 3);
    G_PageObjRef objects;
    QCOMPARE(document->GetPage(0)->CollectObjectsInRect(CCA_GRect(0, 0, 100, 100), &objects), 1);
    QCOMPARE(objects.objectIds, QList<int>{160});
    QCOMPARE(document->GetPage(0)->CollectObjectsInRect(CCA_GRect(0, 10, 100, 30), &objects), 0);
}

void TestOfdTemplateText::tagsReferToNoObjectsOfTemplates()
{
    Open(Use(50, "Background") + Layer(Line(10, 50, "own")), {{50, Layer(Line(10, 20, "form"))}});
    QVERIFY(document->AddCustomTagRoot("tag", "t", "http://example.org", 0));
    G_TreeNode* root = document->CustomTagRoot(0);
    auto* tag = dynamic_cast<G_CustomTagItem*>(root->data ? root->data : root->SubNode(0)->data);
    QVERIFY(tag);
    auto* reference = new G_PageObjRef; // owned by the tag
    reference->pageId = 1;
    reference->objectIds = {130, 160}; // that of the template's object, and one of the page
    tag->objects.Add(reference);
    CCA_LockedArray<G_PageObjectPath> paths;
    document->CustomTagObjects(paths, tag);
    QCOMPARE(paths.GetSize(), 1);
    QVERIFY(document->GetPage(0)->Load());
    QVERIFY(!document->GetPage(0)->CustomTagAtPoint(12, 22, nullptr, nullptr));
    QVERIFY(document->GetPage(0)->CustomTagAtPoint(12, 52, nullptr, nullptr));
}

void TestOfdTemplateText::textInARectangleHasThatOfTheTemplate()
{
    Open(Use(50, "Background") + Layer(Line(50, 10, "12345")), {{50, Layer(Line(10, 10, "Number"))}});
    wchar_t* wide = nullptr;
    Text()->GetTextInRect(CCA_GRect(0, 5, 100, 20), &wide);
    QCOMPARE(QString::fromWCharArray(wide), QString("Number12345"));
    CCA_FreeWide(wide);
}

void TestOfdTemplateText::selectedRectanglesHaveThoseOfTheTemplate()
{
    Open(Use(50, "Background") + Layer(Line(50, 10, "12345")), {{50, Layer(Line(10, 10, "Number"))}});
    const QList<G_TextRects> rects = document->SelectTextRange({0, 0}, 0, {99, 99}, 0, {});
    QCOMPARE(rects.size(), 1);
    QCOMPARE(rects.first().rects.GetSize(), 2);
}

void TestOfdTemplateText::readAheadThePageIsAtHandAsLongAsItIsHeld()
{
    Open(Use(50, "Background") + Layer(Line(50, 10, "12345")), {{50, Layer(Line(10, 10, "Number"))}});
    IG_TextSource* source = document->TextSource();
    QVERIFY(source);
    QVERIFY(!source->IsTextRead(0));
    const std::atomic<bool> isGivenUp{false};
    const std::shared_ptr<const IG_ReadText> text = source->ReadText(0, isGivenUp);
    QVERIFY(text && text->IsReadable());
    QVERIFY(source->IsTextRead(0));
    QCOMPARE(text->AllGlyphs().size(), Text()->AllGlyphs().size());
    document->SetTemplateVisible(50, false);
    QVERIFY(!source->IsTextRead(0));
    QCOMPARE(source->ReadText(0, isGivenUp)->AllGlyphs().size(), 5);
    QCOMPARE(text->AllGlyphs().size(), 11); // as it was read
}

void TestOfdTemplateText::readingThatIsGivenUpGivesNothing()
{
    Open(Layer(Line(50, 10, "12345")), {});
    const std::atomic<bool> isGivenUp{true};
    QVERIFY(!document->TextSource()->ReadText(0, isGivenUp));
    QVERIFY(!document->TextSource()->IsTextRead(0));
}

void TestOfdTemplateText::aBrokenPageIsReadAsNotReadable()
{
    Open(Layer(Line(50, 10, "12345")), {});
    const std::atomic<bool> isGivenUp{false};
    const std::shared_ptr<const IG_ReadText> text = document->TextSource()->ReadText(2, isGivenUp);
    QVERIFY(text);
    QVERIFY(!text->IsReadable());
    QVERIFY(text->AllGlyphs().isEmpty());
    QVERIFY(document->TextSource()->IsTextRead(2));
    QVERIFY(!document->GetPage(2) || !document->GetPage(2)->Load());
}

void TestOfdTemplateText::theSampleOfAFormIsReadAsItIsFilledIn()
{
    document = ofd::OfdDocument::Open(SamplePath("features/form_in_template")).document;
    QVERIFY(document);
    QCOMPARE(Lines(), (QStringList{"Letterhead", "form_in_template", "Number:", "4711", "Name:", "Miller", "Footer"}));
    QCOMPARE(Texts(Text(1)->AllRuns()).first(), QString("Letterhead"));
    QCOMPARE(Texts(Text(1)->AllRuns()).last(), QString("Footer"));
    QCOMPARE(CountOf("number: 4711"), 1);
}

TETO_TEST_MAIN(TestOfdTemplateText)
#include "test_ofd_template_text.moc"
