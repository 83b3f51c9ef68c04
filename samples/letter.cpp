#include "document_builder.h"
#include "invoice.h"

namespace samples {

namespace {

const QColor kRed(0xD2, 0x1F, 0x1F);

struct LetterFonts
{
    Font heavy, body, title;
};

const char* const kFirstPage[] = {
    "各区图书馆、市属各文化馆站：",
    "　　为做好版式文件的长期保存工作，方便公众查阅，经研究，决定自2024年6月起在全市开展馆藏电子文件整理活动。现将有关"
    "事项通知如下。",
    "　　一、整理范围。2010年以来形成的通知、报告、目录和票据，凡已转换为版式文件的，均列入本次整理；尚未转换的，由各馆"
    "自行安排。",
    "　　二、整理要求。文件应当具有完整的目录和书签，附件齐全；页面文字可以选取，图像清晰；批注和印章不得遮挡正文。",
    "　　三、时间安排。6月底前完成清点，8月底前完成编目，10月底前完成核对与移交。各馆应当指定一名联络员，并于6月5日前报"
    "送名单。",
};

const char* const kSecondPage[] = {
    "　　四、质量核查。核查采取抽样方式，每批抽取百分之五。核查中发现的问题，由原单位在十个工作日内改正。",
    "　　五、经费保障。所需费用在年度预算中列支，票据应当随文件一并归档。",
    "　　特此通知。",
};

TextStyle Style(const Font& font, double sizeMm, const QColor& colour = Qt::black)
{
    TextStyle style;
    style.font = font;
    style.sizeMm = sizeMm;
    style.colour = colour;
    return style;
}

double WriteParagraphs(ObjectWriter& objects, double y, const char* const* texts, int count, const TextStyle& style,
                       QVector<int>& ids)
{
    for (int index = 0; index < count; ++index)
        y = objects.Paragraph(QPointF(28, y), 28 * style.sizeMm + 0.1, QString::fromUtf8(texts[index]), style, 10,
                              &ids);
    return y;
}

void Head(ObjectWriter& objects, const LetterFonts& fonts, QMap<QString, int>& fields)
{
    TextStyle red = Style(fonts.title, 17, kRed);
    red.letterSpaceMm = 1.5;
    fields["发文机关"] = objects.Text(QPointF(31, 62), QString::fromUtf8("云岭市文化局文件"), red);
    fields["发文字号"] =
        objects.TextCentred(QPointF(105, 82), QString::fromUtf8("云文发〔2024〕12号"), Style(fonts.body, 5.6));
    PathStyle rule;
    rule.stroke = kRed;
    rule.widthMm = 0.9;
    objects.Line(QPointF(28, 87), QPointF(182, 87), rule);
    fields["标题"] = objects.TextCentred(QPointF(105, 107), QString::fromUtf8("关于开展馆藏电子文件整理活动的通知"),
                                         Style(fonts.title, 7.4));
}

void PageNumber(ObjectWriter& objects, const LetterFonts& fonts, int number)
{
    const QString text = QString::fromUtf8("— %1 —").arg(number);
    objects.TextCentred(QPointF(number % 2 ? 170 : 40, 277), text, Style(fonts.body, 4.9));
}

QByteArray TagFile(const QMap<QString, int>& first, int firstPage, const QMap<QString, int>& second, int secondPage)
{
    QString xml =
        QString::fromUtf8("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gw:公文 xmlns:gw=\"http://example.org/notice\" "
                          "xmlns:ofd=\"%1\" version=\"1.0\">\n")
            .arg(QLatin1String(kOfdUri));
    auto write = [&xml](const QMap<QString, int>& fields, int page) {
        for (auto field = fields.cbegin(); field != fields.cend(); ++field)
            xml += QStringLiteral("<gw:%1><ofd:ObjectRef PageRef=\"%2\">%3</ofd:ObjectRef></gw:%1>\n")
                       .arg(field.key(), Num(page), Num(field.value()));
    };
    write(first, firstPage);
    write(second, secondPage);
    return (xml + QString::fromUtf8("</gw:公文>\n")).toUtf8();
}

} // namespace

Package MakeLetter()
{
    DocumentBuilder document(QString::fromUtf8("关于开展馆藏电子文件整理活动的通知"));
    LetterFonts fonts;
    fonts.heavy = document.AddFont(QString::fromUtf8("黑体"), Face::Cjk, {{"FamilyName", "SimHei"}});
    fonts.body = document.AddFont(QString::fromUtf8("仿宋"), Face::Cjk, {{"FamilyName", "FangSong"}});
    fonts.title = document.AddFont(QString::fromUtf8("宋体"), Face::Cjk, {{"FamilyName", "SimSun"}, {"Bold", "true"}});
    const TextStyle body = Style(fonts.body, 5.5);
    QMap<QString, int> first, second;
    QVector<int> paragraphs;
    const int firstPage = document.AddPage(PageSetup(), [&](PageBuilder& page) {
        page.BeginLayer();
        Head(page.Objects(), fonts, first);
        WriteParagraphs(page.Objects(), 124, kFirstPage, int(std::size(kFirstPage)), body, paragraphs);
        PageNumber(page.Objects(), fonts, 1);
    });
    first["主送机关"] = paragraphs.first();
    const int secondPage = document.AddPage(PageSetup(), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        const double y = WriteParagraphs(objects, 48, kSecondPage, int(std::size(kSecondPage)), body, paragraphs);
        objects.Text(QPointF(28, y + 12), QString::fromUtf8("附件：馆藏电子文件整理进度表"), body);
        second["署名"] = objects.Text(QPointF(126, y + 48), QString::fromUtf8("云岭市文化局"), body);
        second["成文日期"] = objects.Text(QPointF(122, y + 58), QString::fromUtf8("2024年5月20日"), body);
        PageNumber(objects, fonts, 2);
    });
    Annotation seal;
    seal.type = "Stamp";
    seal.boundary = QRectF(121, 128, 42, 42);
    seal.isReadOnly = true;
    seal.appearance = [fonts](ObjectWriter& objects) {
        DrawSeal(objects, QSizeF(42, 42), QString::fromUtf8("云岭市文化局"), QString(), fonts.title);
    };
    document.AddAnnotation(secondPage, seal);
    document.AddTagFile("Notice.xml", "http://example.org/notice", TagFile(first, firstPage, second, secondPage));
    Dest dest;
    dest.pageId = secondPage;
    dest.top = 40;
    document.AddBookmark(QString::fromUtf8("第二页"), dest);
    Attachment plan;
    plan.name = QString::fromUtf8("整理进度表");
    plan.fileName = "plan.txt";
    plan.format = "txt";
    plan.data = QString::fromUtf8("清点\t6月30日\r\n编目\t8月31日\r\n核对与移交\t10月31日\r\n").toUtf8();
    document.AddAttachment(plan);
    return document.Build();
}

} // namespace samples
