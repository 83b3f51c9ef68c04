// The tour's cover, its page of text and its table.
#include "tour_pages.h"

namespace samples {

namespace {

struct Chapter
{
    const char* chinese;
    const char* english;
};

const Chapter kChapters[] = {
    {"文字", "Text"},   {"表格", "Tables"},       {"路径", "Paths"},       {"颜色与渐变", "Colours and gradients"},
    {"图像", "Images"}, {"模板与图层", "Layers"}, {"批注", "Annotations"}, {"语义与附件", "Tags and attachments"},
};

PageSetup Ordinary(const Tour& tour)
{
    PageSetup setup;
    setup.templates = {tour.background};
    return setup;
}

void CoverArt(ObjectWriter& objects)
{
    PathStyle sky = Filled(kBlue);
    sky.fillPattern = [](XmlPart& xml) {
        xml.Open("AxialShd", {{"StartPoint", "0 0"}, {"EndPoint", "210 120"}, {"Extend", "3"}});
        xml.Open("Segment", {{"Position", "0"}}).Leaf("Color", {{"Value", "32 82 190"}}).Close();
        xml.Open("Segment", {{"Position", "0.6"}}).Leaf("Color", {{"Value", "64 140 230"}}).Close();
        xml.Open("Segment", {{"Position", "1"}}).Leaf("Color", {{"Value", "150 205 245"}}).Close();
        xml.Close();
    };
    objects.Path(QRectF(0, 0, 210, 132), "M 0 0 L 210 0 L 210 108 B 150 140 70 92 0 124 C", sky);
    objects.Ellipse(QRectF(148, 18, 70, 70), Filled(QColor(255, 255, 255, 26)));
    objects.Ellipse(QRectF(170, 52, 46, 46), Filled(QColor(255, 255, 255, 30)));
    PathStyle wave = Stroked(QColor(255, 255, 255, 110), 0.5);
    for (int k = 0; k < 4; ++k)
        objects.Path(QRectF(0, 84 + 6 * k, 210, 40), "M 0 18 B 50 -4 90 34 140 14 B 170 4 190 10 210 2", wave);
}

void ExampleOfWidths(ObjectWriter& objects, const Tour& tour)
{
    TextStyle style = Styled(tour.song, 5);
    double y = 166;
    for (double scale : {0.7, 1.0, 1.3}) {
        style.hScale = scale;
        objects.Text(QPointF(20, y), QString::fromUtf8("字形宽度"), style);
        objects.Text(QPointF(52, y), "HScale " + Num(scale), Styled(tour.mono, 3, kMuted));
        y += 8;
    }
    style.hScale = 1;
    style.letterSpaceMm = 3;
    objects.Text(QPointF(20, y), QString::fromUtf8("疏排文字"), style);
    objects.Text(QPointF(56, y), "DeltaX", Styled(tour.mono, 3, kMuted));
}

void ExampleOfDirections(ObjectWriter& objects, const Tour& tour)
{
    double x = 112;
    for (int degrees : {0, 90, 180, 270}) {
        TextStyle style = Styled(tour.kai, 9, kBlue);
        style.charDirection = degrees;
        objects.Text(QPointF(x, 172), QString::fromUtf8("转"), style);
        objects.TextCentred(QPointF(x, 186), Num(degrees), Styled(tour.mono, 3, kMuted));
        x += 20;
    }
    for (int degrees = -60; degrees <= 60; degrees += 20)
        objects.TextTurned(QPointF(150 + degrees * 0.55, 204), degrees, QString::fromUtf8("弧"),
                           Styled(tour.hei, 6, kGreen));
}

void ExampleOfEmbedding(ObjectWriter& objects, const Tour& tour)
{
    Mixed(objects, tour, QPointF(20, 222), QString::fromUtf8("嵌入字体 Embedded font"), 4.4, kBlue, true);
    if (tour.embedded.id == 0) {
        Caption(objects, tour, QPointF(20, 231),
                QString::fromUtf8("本机没有可嵌入的字体。 No free font on this machine."));
        return;
    }
    objects.Text(QPointF(20, 233), "DejaVu Serif, carried in the file", Styled(tour.embedded, 7));
    TextStyle glyphs = Styled(tour.embedded, 7, kGreen);
    glyphs.hasGlyphs = true;
    objects.Text(QPointF(20, 244), "glyph by glyph: Ωμέγα, Привет", glyphs);
    TextStyle outlined = Styled(tour.embedded, 14, kBlue);
    outlined.isOutlined = true;
    objects.Text(QPointF(20, 264), "Outlined", outlined);
    TextStyle faint = Styled(tour.embedded, 14, QColor(0x2F, 0x6F, 0xDE, 70));
    objects.Text(QPointF(102, 264), "Transparent", faint);
}

} // namespace

void AddCover(Tour& tour)
{
    tour.pages.append(tour.document.AddPage(PageSetup(), [&](PageBuilder& page) {
        page.BeginLayer("Background");
        CoverArt(page.Objects());
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        objects.Text(QPointF(22, 62), QString::fromUtf8("版式文档一览"), Styled(tour.hei, 17, Qt::white));
        objects.Text(QPointF(23, 76), "A tour of a fixed-layout document", Styled(tour.sans, 7, Qt::white));
        objects.Image(QRectF(160, 150, 26, 26), tour.logo);
        objects.Paragraph(
            QPointF(22, 152), 120,
            QString::fromUtf8("这份文件逐页展示阅读器所支持的内容：文字、表格、图形、图像、图层、批注、语义标引和附件。"
                              "左侧的窗格列出目录、书签等，点击即可到达。"),
            Styled(tour.song, 4.2), 6.8);
        double y = 190;
        int number = 2;
        for (const Chapter& chapter : kChapters) {
            objects.Text(QPointF(24, y), QString::fromUtf8(chapter.chinese), Styled(tour.hei, 4.6));
            objects.Text(QPointF(56, y), chapter.english, Styled(tour.sans, 4.2, kMuted));
            PathStyle dots = Stroked(QColor(0xB4, 0xC0, 0xD2), 0.4);
            dots.more = {{"DashPattern", "0.4 1.6"}, {"Cap", "Round"}};
            objects.Line(QPointF(104, y - 0.8), QPointF(176, y - 0.8), dots);
            objects.TextRight(QPointF(186, y), Num(number++), Styled(tour.sans, 4.6, kBlue));
            y += 9.6;
        }
    }));
}

void AddTextPage(Tour& tour)
{
    tour.pages.append(tour.document.AddPage(Ordinary(tour), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "1", QString::fromUtf8("文字"), "Text");
        const QString chinese = QString::fromUtf8("　　版式文档把每个字放在确定的位置。无论在哪台机器上打开，行与页都不"
                                                  "会改变；选取文字时，阅读器按照字的位置给出结果，"
                                                  "因此“所见”即是“所得”。");
        const QString english =
            "A fixed-layout page puts every glyph at a stated place. Lines never reflow, so a quotation "
            "can name a page and a line, and everyone finds the same words there.";
        double y = objects.Paragraph(QPointF(20, 48), 170, chinese, Styled(tour.song, 4.6), 7.4);
        y = objects.Paragraph(QPointF(20, y + 3), 170, english, Styled(tour.sans, 4.2), 6.4);
        const QPair<Font, const char*> faces[] = {{tour.hei, "黑体：山高月小，水落石出。"},
                                                  {tour.song, "宋体：山高月小，水落石出。"},
                                                  {tour.kai, "楷体：山高月小，水落石出。"}};
        double sampleY = y + 8;
        for (const auto& face : faces) {
            objects.Text(QPointF(20, sampleY), QString::fromUtf8(face.second), Styled(face.first, 6));
            sampleY += 10;
        }
        TextStyle bold = Styled(tour.sans, 5, kOrange);
        bold.weight = 700;
        objects.Text(QPointF(118, y + 8), "Bold and orange", bold);
        TextStyle italic = Styled(tour.sans, 5, kGreen);
        italic.isItalic = true;
        objects.Text(QPointF(118, y + 18), "Italic and green", italic);
        objects.Text(QPointF(118, y + 28), "Fixed width 0123456789", Styled(tour.mono, 4.4, kBlue));
        Mixed(objects, tour, QPointF(20, 154), QString::fromUtf8("宽度与间距 Widths"), 4.4, kBlue, true);
        ExampleOfWidths(objects, tour);
        Mixed(objects, tour, QPointF(104, 154), QString::fromUtf8("方向 Directions"), 4.4, kBlue, true);
        ExampleOfDirections(objects, tour);
        ExampleOfEmbedding(objects, tour);
    }));
}

namespace {

struct Row
{
    const char* place;
    const char* english;
    double values[4];
};

const Row kRows[] = {
    {"云岭", "Yunling", {12.4, 15.1, 18.9, 21.0}}, {"远山", "Yuanshan", {8.3, 9.9, 11.2, 14.6}},
    {"长桥", "Changqiao", {5.7, 6.1, 7.8, 9.4}},   {"白塔", "Baita", {10.2, 9.6, 12.7, 13.3}},
    {"竹溪", "Zhuxi", {3.9, 4.8, 6.6, 8.1}},       {"石门", "Shimen", {7.1, 8.8, 8.5, 10.9}},
};

void TableGrid(ObjectWriter& objects, double left, double top, const QVector<double>& widths, int rows,
               double rowHeight)
{
    double width = 0;
    for (double w : widths)
        width += w;
    objects.Rect(QRectF(left, top, width, rowHeight), Filled(kBlue));
    for (int row = 2; row < rows; row += 2)
        objects.Rect(QRectF(left, top + row * rowHeight, width, rowHeight), Filled(kPale));
    const PathStyle line = Stroked(QColor(0xB9, 0xC6, 0xDD), 0.2);
    for (int row = 0; row <= rows; ++row)
        objects.Line(QPointF(left, top + row * rowHeight), QPointF(left + width, top + row * rowHeight), line);
    double x = left;
    for (int column = 0; column <= widths.size(); ++column) {
        objects.Line(QPointF(x, top), QPointF(x, top + rows * rowHeight), line);
        if (column < widths.size())
            x += widths[column];
    }
}

void Bars(ObjectWriter& objects, const Tour& tour, const QPointF& origin)
{
    const QColor colours[] = {kBlue, kGreen, kOrange, QColor(0x7B, 0x4F, 0xC9)};
    objects.Line(origin, origin + QPointF(100, 0), Stroked(kInk, 0.3));
    objects.Line(origin, origin - QPointF(0, 74), Stroked(kInk, 0.3));
    double x = origin.x() + 3;
    for (const Row& row : kRows) {
        for (int quarter = 0; quarter < 4; ++quarter) {
            const double height = row.values[quarter] * 3.2;
            objects.Rect(QRectF(x, origin.y() - height, 3, height), Filled(colours[quarter]));
            x += 3.2;
        }
        objects.TextCentred(QPointF(x - 6.4, origin.y() + 5.5), QString::fromUtf8(row.place), Styled(tour.song, 3.4));
        x += 3.4;
    }
}

} // namespace

void AddTablePage(Tour& tour)
{
    PageSetup landscape;
    landscape.sizeMm = QSizeF(297, 210);
    tour.pages.append(tour.document.AddPage(landscape, [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "2", QString::fromUtf8("表格"), "Tables, on a page that lies on its side", 277);
        const QVector<double> widths{24, 32, 22, 22, 22, 22};
        TableGrid(objects, 20, 46, widths, 7, 11);
        const char* const heads[] = {"馆", "Library", "一季度", "二季度", "三季度", "四季度"};
        double x = 20;
        for (int column = 0; column < 6; ++column) {
            const Font& font = column == 1 ? tour.sans : tour.hei;
            objects.TextCentred(QPointF(x + widths[column] / 2, 53), QString::fromUtf8(heads[column]),
                                Styled(font, 4, Qt::white));
            x += widths[column];
        }
        double y = 64;
        for (const Row& row : kRows) {
            objects.TextCentred(QPointF(32, y), QString::fromUtf8(row.place), Styled(tour.song, 4));
            objects.Text(QPointF(47, y), row.english, Styled(tour.sans, 4));
            for (int quarter = 0; quarter < 4; ++quarter)
                objects.TextRight(QPointF(94 + 22 * quarter, y), QString::number(row.values[quarter], 'f', 1),
                                  Styled(tour.sans, 4));
            y += 11;
        }
        Caption(objects, tour, QPointF(20, 131),
                QString::fromUtf8("各馆每季借阅（千册） Loans in thousands, invented figures"));
        Bars(objects, tour, QPointF(174, 123));
        Caption(objects, tour, QPointF(174, 138), QString::fromUtf8("同一组数字的柱形图 The same figures as bars"));
        objects.Paragraph(
            QPointF(20, 152), 257,
            "A table is nothing but lines and text at their places: the grid is drawn with paths, every cell is a "
            "text object of its own, and numbers are set flush right by their widths.",
            Styled(tour.sans, 4.2), 6.6);
    }));
}

} // namespace samples
