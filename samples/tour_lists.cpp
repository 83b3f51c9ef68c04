// The tour's last two pages and what the panes list.
#include "pictures.h"
#include "tour_pages.h"

namespace samples {

namespace {

PageSetup Ordinary(const Tour& tour)
{
    PageSetup setup;
    setup.templates = {tour.background};
    return setup;
}

Annotation Make(const QString& type, const QString& subtype, const QRectF& boundary, const QString& remark,
                const std::function<void(ObjectWriter&)>& appearance)
{
    Annotation annotation;
    annotation.type = type;
    annotation.subtype = subtype;
    annotation.boundary = boundary;
    annotation.remark = remark;
    annotation.appearance = appearance;
    return annotation;
}

// An area that takes clicks and paints nothing.
std::function<void(ObjectWriter&)> LinkArea(const QSizeF& size, const XmlHook& actions)
{
    return [=](ObjectWriter& objects) {
        PathStyle style = Stroked(kBlue, 0);
        style.more = {{"Visible", "false"}};
        style.actions = actions;
        objects.Rect(QRectF(QPointF(0, 0), size), style);
    };
}

void AddMarks(Tour& tour, int page)
{
    DocumentBuilder& document = tour.document;
    auto highlight = [](ObjectWriter& objects) {
        objects.Rect(QRectF(0, 0, 84, 6.4), Filled(QColor(255, 226, 60, 130)));
    };
    document.AddAnnotation(page, Make("Highlight", "Highlight", QRectF(20, 44, 84, 6.4),
                                      QString::fromUtf8("重点：这一句要记住。 Worth remembering."), highlight));
    auto under = [](ObjectWriter& objects) {
        objects.Line(QPointF(0, 1), QPointF(84, 1), Stroked(QColor(220, 60, 60), 0.5));
    };
    document.AddAnnotation(page, Make("Highlight", "Underline", QRectF(20, 60.2, 84, 2), "Please check this.", under));
    auto waves = [](ObjectWriter& objects) {
        QString data = "M 0 1.5";
        for (int k = 0; k < 21; ++k)
            data += QStringLiteral(" Q %1 %2 %3 1.5").arg(Num(4 * k + 2.0), k % 2 ? "3" : "0", Num(4 * k + 4.0));
        objects.Path(QRectF(0, 0, 84, 3), data, Stroked(kGreen, 0.4));
    };
    document.AddAnnotation(page, Make("Highlight", "Squiggly", QRectF(20, 71, 84, 3), QString(), waves));
    auto strike = [](ObjectWriter& objects) {
        objects.Line(QPointF(0, 1), QPointF(84, 1), Stroked(QColor(220, 60, 60), 0.5));
    };
    document.AddAnnotation(
        page, Make("Highlight", "Strikeout", QRectF(20, 77.2, 84, 2), QString::fromUtf8("建议删除。"), strike));
}

void AddShapes(Tour& tour, int page)
{
    DocumentBuilder& document = tour.document;
    Annotation pencil =
        Make("Path", "Pencil", QRectF(112, 44, 70, 34), QString::fromUtf8("手写线条 A pencil stroke"),
             [](ObjectWriter& objects) {
                 PathStyle style = Stroked(QColor(0x7B, 0x4F, 0xC9), 0.9);
                 style.more = {{"Cap", "Round"}, {"Join", "Round"}};
                 objects.Path(QRectF(0, 0, 70, 34), "M 4 24 B 14 -6 22 40 34 12 B 40 0 46 30 66 8", style);
             });
    pencil.parameters = {{"Points", "116 68 126 38 134 84 146 56 152 44 158 74 178 52"}};
    document.AddAnnotation(page, pencil);
    document.AddAnnotation(
        page, Make("Path", "Rectangle", QRectF(20, 96, 50, 26), QString::fromUtf8("矩形 Rectangle"),
                   [](ObjectWriter& objects) { objects.Rect(QRectF(1, 1, 48, 24), Stroked(kOrange, 0.8)); }));
    document.AddAnnotation(
        page, Make("Path", "Ellipse", QRectF(80, 96, 50, 26), QString::fromUtf8("椭圆 Ellipse"),
                   [](ObjectWriter& objects) { objects.Ellipse(QRectF(1, 1, 48, 24), Stroked(kGreen, 0.8)); }));
    document.AddAnnotation(page, Make("Path", "Arrow", QRectF(140, 96, 50, 26), QString(), [](ObjectWriter& objects) {
                               objects.Path(QRectF(0, 0, 50, 26), "M 2 24 L 46 4 M 37 4 L 46 4 L 42 12",
                                            Stroked(kBlue, 0.9));
                           }));
    const Font song = tour.song;
    document.AddAnnotation(
        page, Make("Path", "FreeText", QRectF(20, 132, 80, 14), QString(), [song](ObjectWriter& objects) {
            PathStyle box = Stroked(kOrange, 0.3);
            box.fill = QColor(0xFF, 0xFA, 0xEE);
            objects.Rect(QRectF(0.5, 0.5, 79, 13), box);
            objects.Text(QPointF(3, 9), QString::fromUtf8("直接写在页面上的文字"), Styled(song, 5, kOrange));
        }));
}

void AddStampsAndLinks(Tour& tour, int page)
{
    DocumentBuilder& document = tour.document;
    const Font kai = tour.kai;
    document.AddAnnotation(page, Make("Stamp", "Stamp", QRectF(20, 160, 40, 40),
                                      QString::fromUtf8("样例印章 A sample stamp"), [kai](ObjectWriter& objects) {
                                          DrawSeal(objects, QSizeF(40, 40), QString::fromUtf8("版式文档样例之章"),
                                                   QString::fromUtf8("样例"), kai);
                                      }));
    Dest first;
    first.type = "Fit";
    first.pageId = tour.pages.first();
    document.AddAnnotation(
        page, Make("Link", "None", QRectF(74, 166, 80, 8), QString(), LinkArea(QSizeF(80, 8), GotoAction(first))));
    document.AddAnnotation(page, Make("Link", "None", QRectF(74, 180, 80, 8), QString(),
                                      LinkArea(QSizeF(80, 8), UriAction("https://example.org/"))));
    const Font hei = tour.hei;
    document.AddAnnotation(
        page, Make("Watermark", "Watermark", QRectF(20, 206, 170, 70), QString(), [hei](ObjectWriter& objects) {
            objects.TextTurned(QPointF(85, 42), -20, QString::fromUtf8("样例水印"),
                               Styled(hei, 24, QColor(0x2F, 0x6F, 0xDE, 38)));
        }));
}

// The tag paths of the little order form and what they show.
struct Field
{
    const char* tag;
    const char* label;
    const char* value;
};

const Field kFields[] = {
    {"Order/Number", "订单号", "2024-0520-01"},          {"Order/Date", "日期", "2024年5月20日"},
    {"Buyer/Name", "买方", "云岭市示范图书馆"},          {"Buyer/Phone", "电话", "000-1234567"},
    {"Seller/Name", "卖方", "远山文具（云岭）有限公司"},
};

struct Line
{
    const char* name;
    const char* count;
    const char* price;
};

const Line kLines[] = {{"笔记本", "30", "12.00"}, {"订书机", "4", "35.40"}, {"档案盒", "50", "8.50"}};

QByteArray TagFile(const Tour& tour, int page)
{
    auto reference = [&](const QString& key) {
        return QStringLiteral("<ofd:ObjectRef PageRef=\"%1\">%2</ofd:ObjectRef>").arg(page).arg(tour.tagged[key]);
    };
    QString xml = QStringLiteral(
                      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<dd:OrderForm xmlns:dd=\"http://example.org/order\" "
                      "xmlns:ofd=\"%1\" version=\"1.0\">\n")
                      .arg(QLatin1String(kOfdUri));
    QString group;
    for (const Field& field : kFields) {
        const QStringList path = QString(field.tag).split('/');
        if (path[0] != group && !group.isEmpty())
            xml += QStringLiteral("</dd:%1>\n").arg(group);
        if (path[0] != group)
            xml += QStringLiteral("<dd:%1>\n").arg(path[0]);
        group = path[0];
        xml += QStringLiteral("<dd:%1>%2</dd:%1>\n").arg(path[1], reference(field.tag));
    }
    xml += QStringLiteral("</dd:%1>\n<dd:Lines count=\"3\">\n").arg(group);
    for (int row = 0; row < 3; ++row) {
        xml += QStringLiteral("<dd:Line>\n");
        for (const char* cell : {"Name", "Count", "Price"})
            xml += QStringLiteral("<dd:%1>%2</dd:%1>\n")
                       .arg(cell, reference(QStringLiteral("Line%1/%2").arg(row).arg(cell)));
        xml += QStringLiteral("</dd:Line>\n");
    }
    xml += QStringLiteral("</dd:Lines>\n<dd:Total>%1</dd:Total>\n").arg(reference("Total"));
    xml += QStringLiteral("<dd:Currency><ofd:ObjectData>CNY</ofd:ObjectData></dd:Currency>\n</dd:OrderForm>\n");
    return xml.toUtf8();
}

void OrderForm(ObjectWriter& objects, Tour& tour)
{
    PathStyle sheet = Stroked(QColor(0xB9, 0xC6, 0xDD), 0.3);
    sheet.fill = QColor(0xFC, 0xFD, 0xFF);
    objects.Rect(QRectF(20, 62, 170, 120), sheet);
    objects.TextCentred(QPointF(105, 75), QString::fromUtf8("订　购　单"), Styled(tour.hei, 6.5));
    double y = 88;
    for (const Field& field : kFields) {
        objects.Text(QPointF(28, y), QString::fromUtf8(field.label), Styled(tour.song, 4, kMuted));
        tour.tagged[field.tag] = objects.Text(QPointF(50, y), QString::fromUtf8(field.value), Styled(tour.song, 4));
        y += 8;
    }
    const PathStyle rule = Stroked(kBlue, 0.3);
    objects.Line(QPointF(28, 128), QPointF(182, 128), rule);
    y = 136;
    for (int row = 0; row < 3; ++row) {
        const QString key = QStringLiteral("Line%1/").arg(row);
        tour.tagged[key + "Name"] =
            objects.Text(QPointF(28, y), QString::fromUtf8(kLines[row].name), Styled(tour.song, 4));
        tour.tagged[key + "Count"] = objects.TextRight(QPointF(120, y), kLines[row].count, Styled(tour.sans, 4));
        tour.tagged[key + "Price"] = objects.TextRight(QPointF(182, y), kLines[row].price, Styled(tour.sans, 4));
        y += 9;
    }
    objects.Line(QPointF(28, 160), QPointF(182, 160), rule);
    objects.Text(QPointF(28, 170), QString::fromUtf8("合计"), Styled(tour.hei, 4.4));
    tour.tagged["Total"] =
        objects.TextRight(QPointF(182, 170), QString::fromUtf8("926.60"), Styled(tour.sans, 5, kBlue));
}

Dest To(int pageId, const QString& type = "Fit", double left = 0, double top = 0, double zoom = 0)
{
    Dest dest;
    dest.type = type;
    dest.pageId = pageId;
    dest.left = left;
    dest.top = top;
    dest.zoom = zoom;
    return dest;
}

Dest ToRect(int pageId, double left, double top, double right, double bottom)
{
    Dest dest = To(pageId, "FitR", left, top);
    dest.right = right;
    dest.bottom = bottom;
    return dest;
}

Outline Entry(const QString& title, const Dest& dest, const std::vector<Outline>& children = {})
{
    Outline outline;
    outline.title = title;
    outline.dest = dest;
    outline.children = children;
    return outline;
}

void AddOutlines(Tour& tour)
{
    const QVector<int>& p = tour.pages;
    DocumentBuilder& document = tour.document;
    document.AddOutline(Entry(QString::fromUtf8("封面 Cover"), To(p[0])));
    document.AddOutline(Entry(QString::fromUtf8("页面内容 Page content"), To(p[1], "XYZ", 0, 0, 1),
                              {Entry(QString::fromUtf8("文字 Text"), To(p[1], "FitH", 0, 18),
                                     {Entry(QString::fromUtf8("宽度与间距 Widths"), To(p[1], "XYZ", 20, 148, 1.5)),
                                      Entry(QString::fromUtf8("方向 Directions"), ToRect(p[1], 100, 146, 192, 212)),
                                      Entry(QString::fromUtf8("嵌入字体 Embedded font"), To(p[1], "XYZ", 20, 214))}),
                               Entry(QString::fromUtf8("表格 Tables"), To(p[2], "FitV", 20)),
                               Entry(QString::fromUtf8("路径 Paths"), To(p[3]),
                                     {Entry(QString::fromUtf8("线 Lines"), To(p[3], "XYZ", 20, 122)),
                                      Entry(QString::fromUtf8("填充与裁剪 Filling"), To(p[3], "FitH", 0, 186))}),
                               Entry(QString::fromUtf8("颜色与渐变 Colours"), To(p[4])),
                               Entry(QString::fromUtf8("图像 Images"), To(p[5]))}));
    Outline lists = Entry(QString::fromUtf8("窗格所列 What the panes list"), To(p[6], "XYZ", 0, 0),
                          {Entry(QString::fromUtf8("模板与图层 Layers"), To(p[6])),
                           Entry(QString::fromUtf8("批注 Annotations"), To(p[7])),
                           Entry(QString::fromUtf8("语义与附件 Tags and attachments"), To(p[8], "XYZ", 0, 40, 1.25))});
    lists.isExpanded = false;
    document.AddOutline(lists);
    Outline web = Entry(QString::fromUtf8("一个网址 A web address"), Dest());
    web.action = [](XmlPart& xml) { xml.Leaf("URI", {{"URI", "https://example.org/"}}); };
    document.AddOutline(web);
}

void AddBookmarks(Tour& tour)
{
    const QVector<int>& p = tour.pages;
    DocumentBuilder& document = tour.document;
    document.AddBookmark(QString::fromUtf8("封面（整页 Fit）"), To(p[0]));
    document.AddBookmark(QString::fromUtf8("字体示例（坐标 XYZ，150%）"), To(p[1], "XYZ", 20, 100, 1.5));
    document.AddBookmark(QString::fromUtf8("表格（页高 FitV）"), To(p[2], "FitV", 20));
    document.AddBookmark(QString::fromUtf8("线型（页宽 FitH）"), To(p[3], "FitH", 0, 122));
    document.AddBookmark(QString::fromUtf8("印章（矩形 FitR）"), ToRect(p[7], 14, 154, 66, 206));
    document.AddBookmark(QString::fromUtf8("订购单（坐标 XYZ，缩放不变）"), To(p[8], "XYZ", 20, 60));
}

void AddAttachments(Tour& tour)
{
    Attachment note;
    note.name = QString::fromUtf8("说明");
    note.fileName = "note.txt";
    note.format = "txt";
    note.data = QString::fromUtf8("这是随文件保存的文本附件。\r\nA text attachment that travels with the document.\r\n")
                    .toUtf8();
    tour.document.AddAttachment(note);
    Attachment picture;
    picture.name = "landscape";
    picture.fileName = "picture.png";
    picture.format = "png";
    picture.data = LandscapePng();
    picture.isStored = true;
    tour.document.AddAttachment(picture);
    Attachment hidden;
    hidden.name = "machine_data";
    hidden.fileName = "machine_data.xml";
    hidden.format = "xml";
    hidden.data = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<order number=\"2024-0520-01\" total=\"926.60\"/>\n";
    hidden.isVisible = false;
    tour.document.AddAttachment(hidden);
}

} // namespace

void AddAnnotationPage(Tour& tour)
{
    tour.pages.append(tour.document.AddPage(Ordinary(tour), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "7", QString::fromUtf8("批注"), "Annotations");
        const char* const lines[] = {"荧光笔标出的文字，附有一条备注。", "下划线标出的文字，请核对数字。",
                                     "波浪线标出的文字，没有备注。", "删除线标出的文字，建议去掉。"};
        const double places[] = {48.8, 59.4, 70, 79.6};
        for (int line = 0; line < 4; ++line)
            objects.Text(QPointF(20, places[line]), QString::fromUtf8(lines[line]), Styled(tour.song, 4.8));
        Mixed(objects, tour, QPointF(75, 171.6), QString::fromUtf8("链接到封面 A link to the cover"), 4.4, kBlue);
        Mixed(objects, tour, QPointF(75, 185.6), QString::fromUtf8("链接到网址 A link to an address"), 4.4, kBlue);
        objects.Paragraph(
            QPointF(20, 216), 170,
            QString::fromUtf8(
                "批注不属于页面内容：它们单独保存，画在页面之上，可以隐藏、筛选和排序。水印也是批注的一种。"),
            Styled(tour.song, 4.4), 7);
    }));
}

void AddTagPage(Tour& tour)
{
    tour.pages.append(tour.document.AddPage(Ordinary(tour), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "8", QString::fromUtf8("语义与附件"), "Tags and attachments");
        objects.Paragraph(
            QPointF(20, 44), 170,
            QString::fromUtf8("下面的订购单中，每一项都与语义树里的一个节点相连；选中节点，对应的文字就会亮起来。"),
            Styled(tour.song, 4.2), 6.6);
        OrderForm(objects, tour);
        objects.Paragraph(QPointF(20, 196), 170,
                          QString::fromUtf8("文件还带有三个附件：一个文本、一张图片，以及一个不显示的数据文件。"),
                          Styled(tour.song, 4.2), 6.6);
    }));
}

void AddTourAnnotations(Tour& tour)
{
    const int page = tour.pages[7];
    AddMarks(tour, page);
    AddShapes(tour, page);
    AddStampsAndLinks(tour, page);
    // The cover's list of chapters is made of links.
    for (int chapter = 0; chapter < 8; ++chapter) {
        const QRectF area(22, 185 + 9.6 * chapter, 166, 8);
        tour.document.AddAnnotation(
            tour.pages[0],
            Make("Link", "None", area, QString(), LinkArea(area.size(), GotoAction(To(tour.pages[chapter + 1])))));
    }
}

void AddTourLists(Tour& tour)
{
    AddOutlines(tour);
    AddBookmarks(tour);
    tour.document.AddTagFile("OrderForm.xml", "http://example.org/order", TagFile(tour, tour.pages[8]));
    AddAttachments(tour);
    tour.document.SetPermissions({{"Edit", true},
                                  {"Annot", true},
                                  {"Export", true},
                                  {"Signature", true},
                                  {"Watermark", true},
                                  {"PrintScreen", true}});
}

} // namespace samples
