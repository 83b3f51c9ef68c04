#include <ofd/package/limits.h>
#include <ofd/package/xml_names.h>
#include <ofd/package/xml_part.h>
#include <ofd/package/xml_text.h>
#include <ofd/package/xml_values.h>
#include <tests/support/test_main.h>

#include <QTextCodec>
#include <QtTest>

#include <clocale>
#include <cmath>
#include <limits>

using namespace ofd;

namespace {

std::unique_ptr<XmlPart> Parse(const QByteArray& bytes, PackageError* error = nullptr)
{
    return XmlPart::Parse(QStringLiteral("part.xml"), bytes, error);
}

QByteArray Nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

} // namespace

// XML parts as they are in the wild, the values in them, and what is written back.
class TestXml : public QObject
{
    Q_OBJECT

private slots:
    void namesMatchWithAnyPrefixOrNone();
    void aRootWithAnEmptyPrefixParses();
    void anUndeclaredPrefixParses();
    void unNamespacedChildrenAreFound();
    void declarationsAreNoAttributes();
    void attributesOfOthersDoNotHideOurs();
    void namespacesAreLookedUpOutward();
    void blankTextIsText();
    void cdataCommentsAndReferencesMakeTheText();
    void aByteOrderMarkAndLineEndsAreRemembered();
    void otherEncodingsBecomeUtf8();
    void bytesThatAreNoUtf8AreReadAsGb18030();
    void singleDamagedLettersDoNotMakeGb18030();
    void zeroBytesBehindTheEndAreLeftOut();
    void aDocTypeIsRefused();
    void aBareChildHasItsContentInTheBytesOnly();
    void theFirstChildOfTheNameIsBareAndNoOther();
    void tagsInABareChildMustMatch();
    void depthIsLimited();
    void malformedXmlIsAnErrorAtEveryLength();
    void numbersAreStrictAndIndependentOfTheLocale();
    void integersIdsAndBooleans();
    void boxesPositionsAndArrays();
    void attributesFallBackToTheirDefaults();
    void numbersAreWrittenShort();
    void textIsEscaped();
    void fragmentsNestAndEscape();
};

void TestXml::namesMatchWithAnyPrefixOrNone()
{
    QCOMPARE(LocalName("ofd:Page"), std::string_view("Page"));
    QCOMPARE(LocalName("Page"), std::string_view("Page"));
    QCOMPARE(LocalName("a:b:c"), std::string_view("b:c"));
    const auto part = Parse("<x:Pages xmlns:x='u'><Page/>text<ofd:Page ID='2'/><!-- Page --><Other/></x:Pages>");
    QVERIFY(part);
    QVERIFY(IsElement(part->GetRoot(), "Pages"));
    QCOMPARE(ChildElements(part->GetRoot(), "Page").size(), size_t(2));
    QCOMPARE(ChildElements(part->GetRoot()).size(), size_t(3));
    QCOMPARE(PrefixOf(part->GetRoot()), QByteArray("x:"));
    QCOMPARE(PrefixOf(ChildElement(part->GetRoot(), "Page")), QByteArray());
    QVERIFY(!ChildElement(pugi::xml_node(), "Page"));
}

void TestXml::aRootWithAnEmptyPrefixParses()
{
    const auto part = Parse("<?xml version=\"1.0\"?>\n<:name xmlns:=\"\"><:child a=\"1\"/></:name>");
    QVERIFY(part);
    QCOMPARE(LocalName(part->GetRoot()), std::string_view("name"));
    QCOMPARE(PrefixOf(part->GetRoot()), QByteArray(":"));
    QVERIFY(ChildElement(part->GetRoot(), "child"));
}

void TestXml::anUndeclaredPrefixParses()
{
    const auto part = Parse("<tags><ofd:ObjectRef PageRef=\"1\">5</ofd:ObjectRef></tags>");
    QVERIFY(part);
    QCOMPARE(TrimmedText(ChildElement(part->GetRoot(), "ObjectRef")), QStringLiteral("5"));
}

void TestXml::unNamespacedChildrenAreFound()
{
    const auto part =
        Parse("<ofd:Document xmlns:ofd=\"u\"><ofd:Bookmarks><Bookmark Name=\"a\"><Dest PageID=\"3\"/></Bookmark>"
              "</ofd:Bookmarks></ofd:Document>");
    const pugi::xml_node dest = Descend(part->GetRoot(), {"Bookmarks", "Bookmark", "Dest"});
    QCOMPARE(IdAttribute(dest, "PageID"), 3U);
    QVERIFY(!Descend(part->GetRoot(), {"Bookmarks", "None", "Dest"}));
}

void TestXml::declarationsAreNoAttributes()
{
    const auto part = Parse("<a xmlns:ID=\"u\" ofd:ID=\"5\" xmlns=\"v\"/>");
    QCOMPARE(AttributeText(part->GetRoot(), "ID"), QStringLiteral("5"));
    QVERIFY(!HasAttribute(part->GetRoot(), "xmlns"));
}

void TestXml::attributesOfOthersDoNotHideOurs()
{
    const auto part = Parse("<a x:ID=\"other\" MyID=\"no\" ID=\"5\" y:Name=\"first\" z:Name=\"second\"/>");
    QCOMPARE(AttributeText(part->GetRoot(), "ID"), QStringLiteral("5"));
    QCOMPARE(AttributeText(part->GetRoot(), "Name"), QStringLiteral("first"));
    QVERIFY(!HasAttribute(part->GetRoot(), "D"));
}

void TestXml::namespacesAreLookedUpOutward()
{
    const auto part = Parse("<a xmlns='d' xmlns:p='outer'><b xmlns:p='inner'><c/></b></a>");
    const pugi::xml_node c = Descend(part->GetRoot(), {"b", "c"});
    QCOMPARE(NamespaceOfPrefix(c, "p"), QStringLiteral("inner"));
    QCOMPARE(NamespaceOfPrefix(part->GetRoot(), "p"), QStringLiteral("outer"));
    QCOMPARE(NamespaceOfPrefix(c, ""), QStringLiteral("d"));
    QCOMPARE(NamespaceOfPrefix(c, "q"), QString());
}

void TestXml::blankTextIsText()
{
    const auto part = Parse("<a><TextCode>   </TextCode><TextCode> <!-- c --> x</TextCode></a>");
    const auto codes = ChildElements(part->GetRoot(), "TextCode");
    QCOMPARE(ElementText(codes[0]), QStringLiteral("   "));
    QCOMPARE(ElementText(codes[1]), QStringLiteral("  x"));
    QCOMPARE(TrimmedText(codes[0]), QString());
}

void TestXml::cdataCommentsAndReferencesMakeTheText()
{
    const auto part = Parse("<a>1&#x20;&lt;<![CDATA[<2>&amp;]]><!-- no -->&#20013;</a>");
    QCOMPARE(ElementText(part->GetRoot()), QStringLiteral("1 <<2>&amp;中"));
}

void TestXml::aByteOrderMarkAndLineEndsAreRemembered()
{
    const auto marked = Parse("\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"yes\"?>\r\n<a/>\r\n");
    QVERIFY(marked);
    QVERIFY(marked->HasByteOrderMark());
    QCOMPARE(marked->GetLineEnd(), QByteArray("\r\n"));
    const auto plain = Parse("<a>\n</a>");
    QVERIFY(!plain->HasByteOrderMark());
    QCOMPARE(plain->GetLineEnd(), QByteArray("\n"));
}

void TestXml::otherEncodingsBecomeUtf8()
{
    const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"GBK\"?><a>目录</a>");
    const auto gbk = Parse(QTextCodec::codecForName("GBK")->fromUnicode(text));
    QVERIFY(gbk);
    QCOMPARE(ElementText(gbk->GetRoot()), QStringLiteral("目录"));
    QVERIFY(gbk->GetBytes().contains("encoding=\"UTF-8\""));
    const QString wide = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>目录</a>");
    const auto utf16 = Parse(QTextCodec::codecForName("UTF-16")->fromUnicode(wide));
    QVERIFY(utf16);
    QCOMPARE(ElementText(utf16->GetRoot()), QStringLiteral("目录"));
}

void TestXml::bytesThatAreNoUtf8AreReadAsGb18030()
{
    const QTextCodec* codec = QTextCodec::codecForName("GB18030"); // not owned
    for (const char* head : {"", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"}) {
        const auto part = Parse(head + codec->fromUnicode(QStringLiteral("<a>图片、目录</a>")));
        QVERIFY(part);
        QCOMPARE(ElementText(part->GetRoot()), QStringLiteral("图片、目录"));
        QVERIFY(part->GetBytes().contains(QStringLiteral("目录").toUtf8()));
    }
    const auto wide = Parse(QByteArray("<\0a\0/\0>\0", 8));
    QVERIFY(wide);
    QCOMPARE(wide->GetBytes(), QByteArray("<a/>"));
    QVERIFY(Parse(QByteArray("\0<\0a\0/\0>", 8)));
}

void TestXml::singleDamagedLettersDoNotMakeGb18030()
{
    const QString accents = QStringLiteral("éàèùâêîôûç");
    for (const QString& text : {QStringLiteral("目录"), accents}) {
        const QByteArray bytes = "<a>" + text.toUtf8() + "\xc4\xbf\xc2 \xbc</a>";
        const auto part = Parse(bytes);
        QVERIFY(part);
        QCOMPARE(part->GetBytes(), bytes);
        QVERIFY(ElementText(part->GetRoot()).startsWith(text));
    }
}

void TestXml::zeroBytesBehindTheEndAreLeftOut()
{
    const auto part = Parse(QByteArray("<a>x</a>\0\0\0", 11));
    QVERIFY(part);
    QCOMPARE(part->GetBytes(), QByteArray("<a>x</a>"));
    QVERIFY(!Parse(QByteArray("<a>x\0</a>\0", 11)));
    QVERIFY(!Parse(QByteArray(3, '\0')));
}

void TestXml::aDocTypeIsRefused()
{
    PackageError error;
    QVERIFY(!Parse("<!DOCTYPE a [<!ENTITY x \"y\">]><a>&x;</a>", &error));
    QCOMPARE(error.kind, PackageErrorKind::BadXml);
    QVERIFY(error.text.contains(QStringLiteral("part.xml")));
    QVERIFY(!Parse("<!DOCTYPE a SYSTEM \"file:///etc/passwd\"><a/>"));
    // Unknown entities stay what they are.
    QCOMPARE(ElementText(Parse("<a>&x;</a>")->GetRoot()), QStringLiteral("&x;"));
}

void TestXml::aBareChildHasItsContentInTheBytesOnly()
{
    const QByteArray bytes = "<o:a><b>1</b><o:list k='v'><e><list/></e> <!-- < --> <e a='>'/></o:list><c>2</c></o:a>";
    const auto part = XmlPart::Parse(QStringLiteral("part.xml"), bytes, nullptr, "list");
    QVERIFY(part);
    QCOMPARE(part->GetBytes(), bytes);
    const pugi::xml_node list = ChildElement(part->GetRoot(), "list");
    QCOMPARE(AttributeText(list, "k"), QStringLiteral("v"));
    QVERIFY(!list.first_child());
    for (const pugi::xml_node& child : ChildElements(part->GetRoot()))
        QCOMPARE(part->PlaceOf(child), qint64(bytes.indexOf(QByteArray("<") + child.name())));
    const auto again = part->Reparse("<a><list><x/></list></a>");
    QVERIFY(again);
    QVERIFY(!ChildElement(again->GetRoot(), "list").first_child());
}

void TestXml::theFirstChildOfTheNameIsBareAndNoOther()
{
    const QByteArray bytes = "<a><b><list><c/></list></b><list>1</list><list><d/></list></a>";
    const auto part = XmlPart::Parse(QStringLiteral("part.xml"), bytes, nullptr, "list");
    QVERIFY(part);
    QVERIFY(Descend(part->GetRoot(), {"b", "list", "c"}));
    const auto lists = ChildElements(part->GetRoot(), "list");
    QVERIFY(!lists[0].first_child());
    QVERIFY(ChildElement(lists[1], "d"));
    QCOMPARE(part->PlaceOf(lists[1]), qint64(bytes.lastIndexOf("<list")));
    const auto none = XmlPart::Parse(QStringLiteral("part.xml"), "<a><list/><b/></a>", nullptr, "list");
    QVERIFY(none);
    QCOMPARE(none->PlaceOf(ChildElement(none->GetRoot(), "b")), qint64(10));
}

void TestXml::tagsInABareChildMustMatch()
{
    for (const char* bytes : {"<a><list><b></c></list></a>", "<a><list><b></list></a>", "<a><list></b></list></a>",
                              "<a><list><b></a>", "<a><list><!DOCTYPE b></list></a>"}) {
        PackageError error;
        QVERIFY2(!XmlPart::Parse(QStringLiteral("part.xml"), bytes, &error, "list"), bytes);
        QVERIFY(error);
    }
}

void TestXml::depthIsLimited()
{
    QVERIFY(Parse(Nested(limits::MaxXmlDepth)));
    PackageError error;
    QVERIFY(!Parse(Nested(limits::MaxXmlDepth + 1), &error));
    QCOMPARE(error.kind, PackageErrorKind::BadXml);
    QVERIFY(!Parse(Nested(1'000'000)));
    QVERIFY(!Parse(QByteArray("<a>").repeated(1'000'000)));
}

void TestXml::malformedXmlIsAnErrorAtEveryLength()
{
    const QByteArray whole = "<?xml version=\"1.0\"?><!-- c --><ofd:a b=\"1\" c='>'>t<![CDATA[x]]><d/><e></e></ofd:a>";
    QVERIFY(Parse(whole));
    for (int length = 0; length < whole.size(); ++length)
        QVERIFY2(!Parse(whole.left(length)), whole.left(length).constData());
    for (const char* bad : {"", "text", "<a></b>", "<a><b></a></b>", "<a b></a>", "<a b=1/>", "</a>", "<!-- only -->"})
        QVERIFY2(!Parse(bad), bad);
    QVERIFY(!Parse(QByteArray("<a>\0</a>", 8)));
}

void TestXml::numbersAreStrictAndIndependentOfTheLocale()
{
    const char* locale = std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // may be missing; the rest holds anyway
    Q_UNUSED(locale);
    QCOMPARE(ParseNumber(" 1.5 "), std::optional<double>(1.5));
    QCOMPARE(ParseNumber("+2"), std::optional<double>(2));
    QCOMPARE(ParseNumber("-.25"), std::optional<double>(-0.25));
    QCOMPARE(ParseNumber("1e3"), std::optional<double>(1000));
    QCOMPARE(ParseNumber("10000000"), std::optional<double>(1e7));
    for (const char* bad :
         {"", " ", "x", "1x", "1,5", "nan", "inf", "-inf", "1e8", "-10000001", "1e999", "+-1", "1 2", "--1"})
        QVERIFY2(!ParseNumber(bad), bad);
    std::setlocale(LC_NUMERIC, "C");
}

void TestXml::integersIdsAndBooleans()
{
    QCOMPARE(ParseInteger(" 12 "), std::optional<int>(12));
    QCOMPARE(ParseInteger("12.0"), std::optional<int>(12));
    QVERIFY(!ParseInteger("12.5"));
    QVERIFY(!ParseInteger("99999999999"));
    QCOMPARE(ParseId("4294967295"), std::optional<quint32>(4294967295U));
    QCOMPARE(ParseId("0"), std::optional<quint32>(0U));
    QVERIFY(!ParseId("-1"));
    QVERIFY(!ParseId("4294967296"));
    QVERIFY(!ParseId("s001"));
    for (const char* yes : {"true", "TRUE", " 1 ", "True"})
        QCOMPARE(ParseBoolean(yes), std::optional<bool>(true));
    for (const char* no : {"false", "False", "0"})
        QCOMPARE(ParseBoolean(no), std::optional<bool>(false));
    QVERIFY(!ParseBoolean("yes"));
    QVERIFY(EqualsWord(" fith ", "FitH"));
    QVERIFY(!EqualsWord("Fit", "FitH"));
}

void TestXml::boxesPositionsAndArrays()
{
    QCOMPARE(ParseBox("0 1.5\n-3  4"), std::optional<QRectF>(QRectF(0, 1.5, -3, 4)));
    QCOMPARE(ParseBox("0,1.5, -3 ,4"), std::optional<QRectF>(QRectF(0, 1.5, -3, 4)));
    QVERIFY(!ParseBox("0 0 210"));
    QVERIFY(!ParseBox("0 0 210 297 1"));
    QVERIFY(!ParseBox("0 0 nan 297"));
    QCOMPARE(ParsePosition("3 4"), std::optional<QPointF>(QPointF(3, 4)));
    QCOMPARE(ParseArray("1 x 2.5"), std::optional<QVector<double>>(QVector<double>({1, 0, 2.5})));
    QCOMPARE(ParseArray("1,2.5, 3"), std::optional<QVector<double>>(QVector<double>({1, 2.5, 3})));
    QCOMPARE(ParseArray("  "), std::optional<QVector<double>>(QVector<double>()));
}

void TestXml::attributesFallBackToTheirDefaults()
{
    const auto part = Parse("<a n='1.5' bad='x' yes='TRUE' box='0 0 1 2' list='1 2'/>");
    const pugi::xml_node root = part->GetRoot();
    QCOMPARE(NumberAttribute(root, "n", 7), 1.5);
    QCOMPARE(NumberAttribute(root, "bad", 7), 7.0);
    QCOMPARE(NumberAttribute(root, "none", 7), 7.0);
    QCOMPARE(IntegerAttribute(root, "bad", -1), -1);
    QCOMPARE(IdAttribute(root, "bad", 9), 9U);
    QCOMPARE(BooleanAttribute(root, "yes", false), true);
    QCOMPARE(BooleanAttribute(root, "bad", true), true);
    QVERIFY(BoxAttribute(root, "box"));
    QVERIFY(!BoxAttribute(root, "none"));
    QCOMPARE(ArrayAttribute(root, "list")->size(), 2);
    QVERIFY(!ArrayAttribute(root, "none"));
    QCOMPARE(AttributeText(root, "none", QStringLiteral("d")), QStringLiteral("d"));
}

void TestXml::numbersAreWrittenShort()
{
    QCOMPARE(FormatNumber(1), QByteArray("1"));
    QCOMPARE(FormatNumber(1.5), QByteArray("1.5"));
    QCOMPARE(FormatNumber(100), QByteArray("100"));
    QCOMPARE(FormatNumber(0.00001), QByteArray("0"));
    QCOMPARE(FormatNumber(-0.00001), QByteArray("0"));
    QCOMPARE(FormatNumber(1.0 / 3), QByteArray("0.3333"));
    QCOMPARE(FormatNumber(1.0 / 3, 6), QByteArray("0.333333"));
    QCOMPARE(FormatNumber(1e20), QByteArray("100000000000000000000"));
    QCOMPARE(FormatNumber(std::numeric_limits<double>::quiet_NaN()), QByteArray("0"));
    QCOMPARE(FormatNumbers({0, -2.25, 3}), QByteArray("0 -2.25 3"));
}

void TestXml::textIsEscaped()
{
    QCOMPARE(EscapeText(QStringLiteral("a<b>&\"c\"\n\t")), QByteArray("a&lt;b&gt;&amp;&quot;c&quot;\n\t"));
    QCOMPARE(EscapeText(QStringLiteral("\r")), QByteArray("&#13;"));
    QCOMPARE(EscapeAttribute(QStringLiteral("\r\n\t")), QByteArray("&#13;&#10;&#9;"));
    QString odd = QStringLiteral("a");
    odd += QChar(1);
    odd += QChar(0xd800);
    odd += QChar(0xffff);
    odd += QStringLiteral("😀");
    QCOMPARE(QString::fromUtf8(EscapeText(odd)), QStringLiteral("a\ufffd😀"));
    // What is written reads back.
    const QString text = QStringLiteral(" <a>&\"'\r\n\t中 ");
    const auto part = Parse("<a b=\"" + EscapeAttribute(text) + "\">" + EscapeText(text) + "</a>");
    QCOMPARE(AttributeText(part->GetRoot(), "b"), text);
    QCOMPARE(ElementText(part->GetRoot()), text);
}

void TestXml::fragmentsNestAndEscape()
{
    XmlFragment fragment("ofd:");
    fragment.Open("Bookmark").Attribute("Name", QStringLiteral("a & b")).Open("Dest").Attribute("Left", 1.50).Close();
    fragment.Element("Title", QStringLiteral("<t>")).Open("Empty").Text({}).Close().Raw("<raw/>");
    QCOMPARE(fragment.GetBytes(), QByteArray("<ofd:Bookmark Name=\"a &amp; b\"><ofd:Dest Left=\"1.5\"/>"
                                             "<ofd:Title>&lt;t&gt;</ofd:Title><ofd:Empty/><raw/></ofd:Bookmark>"));
}

TETO_TEST_MAIN(TestXml)
#include "test_xml.moc"
