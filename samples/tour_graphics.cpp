// The tour's pages of paths, colours, images and layers.
#include "tour_pages.h"

namespace samples {

namespace {

PageSetup Ordinary(const Tour& tour)
{
    PageSetup setup;
    setup.templates = {tour.background};
    return setup;
}

struct PathExample
{
    const char* name;
    const char* data; // in a box of 30 x 24
};

const PathExample kOperators[] = {
    {"M L", "M 3 20 L 10 4 L 17 18 L 27 6"},
    {"L C", "M 4 20 L 15 4 L 26 20 C"},
    {"Q", "M 3 18 Q 9 -4 15 12 Q 21 28 27 6"},
    {"B", "M 3 18 B 8 -6 22 30 27 6"},
    {"A", "M 5 16 A 10 8 0 1 1 25 16"},
    {"A 30", "M 5 16 A 11 5 30 0 1 25 12"},
    {"S", "S 4 6 L 13 6 L 13 18 S 18 18 L 26 18 L 26 6"},
    {"two", "M 4 5 L 12 5 L 12 19 L 4 19 C M 18 5 L 26 5 L 26 19 L 18 19 C"},
};

void OperatorGrid(ObjectWriter& objects, const Tour& tour, double top)
{
    int index = 0;
    for (const PathExample& example : kOperators) {
        const QPointF at(20 + (index % 4) * 43.5, top + (index / 4) * 36);
        objects.Rect(QRectF(at, QSizeF(39, 27)), Filled(kPale));
        objects.Path(QRectF(at + QPointF(4.5, 1.5), QSizeF(30, 24)), example.data, Stroked(kBlue, 0.6));
        objects.Text(at + QPointF(0, 31), example.name, Styled(tour.mono, 3.2, kMuted));
        ++index;
    }
}

void LineStyles(ObjectWriter& objects, const Tour& tour, double top)
{
    const Attributes kinds[] = {{{"Cap", "Butt"}},
                                {{"Cap", "Round"}},
                                {{"Cap", "Square"}},
                                {{"DashPattern", "4 2"}},
                                {{"DashPattern", "0.1 2.4"}, {"Cap", "Round"}},
                                {{"DashPattern", "6 2 1 2"}, {"DashOffset", "3"}}};
    double y = top;
    for (const Attributes& kind : kinds) {
        PathStyle style = Stroked(kInk, 1.4);
        style.more = kind;
        objects.Line(QPointF(22, y), QPointF(76, y), style);
        QStringList words;
        for (const auto& attribute : kind)
            words.append(attribute.first + " " + attribute.second);
        objects.Text(QPointF(82, y + 1), words.join(", "), Styled(tour.mono, 3, kMuted));
        y += 7;
    }
    double x = 142;
    for (const char* join : {"Miter", "Round", "Bevel"}) {
        PathStyle style = Stroked(kGreen, 3);
        style.more = {{"Join", join}};
        objects.Path(QRectF(x, top, 16, 24), "M 2 22 L 8 3 L 14 22", style);
        objects.TextCentred(QPointF(x + 8, top + 30), join, Styled(tour.mono, 3, kMuted));
        x += 17;
    }
}

QString Star()
{
    return "M 15 1 L 23.5 27 L 1.4 10.9 L 28.6 10.9 L 6.5 27 C";
}

void FillRules(ObjectWriter& objects, const Tour& tour, double top)
{
    PathStyle style = Stroked(kOrange, 0.4);
    style.fill = QColor(0xFB, 0xDD, 0xB8);
    objects.Path(QRectF(22, top, 30, 28), Star(), style);
    style.more = {{"Rule", "Even-Odd"}};
    objects.Path(QRectF(60, top, 30, 28), Star(), style);
    PathStyle clipped = Filled(kBlue);
    clipped.clips = [&objects](XmlPart& xml) {
        xml.Open("Clips").Open("Clip").Open("Area");
        xml.Open("Path", {{"Boundary", "0 0 30 28"}, {"Fill", "true"}}).Leaf("AbbreviatedData", {}, Star()).Close();
        xml.Close().Close().Close();
    };
    objects.Path(QRectF(98, top, 30, 28), "M 0 0 L 30 0 L 30 28 L 0 28 C", clipped);
    PathStyle turned = Stroked(kGreen, 0.5);
    turned.fill = QColor(0x2F, 0xA0, 0x8A, 60);
    turned.more = {{"CTM", "0.866 0.5 -0.5 0.866 14 0"}};
    objects.Path(QRectF(140, top, 44, 34), "M 1 1 L 27 1 L 27 17 L 1 17 C", turned);
    const char* const names[] = {"NonZero", "Even-Odd", "Clips", "CTM"};
    for (int k = 0; k < 4; ++k)
        objects.Text(QPointF(22 + 38 * k + (k == 3 ? 6 : 0), top + 36), names[k], Styled(tour.mono, 3, kMuted));
}

XmlHook Axial(const QString& extent, const QString& mapType)
{
    return [=](XmlPart& xml) {
        xml.Open("AxialShd", {{"StartPoint", "10 0"}, {"EndPoint", "30 0"}, {"Extend", extent}, {"MapType", mapType}});
        xml.Open("Segment", {{"Position", "0"}}).Leaf("Color", {{"Value", "47 111 222"}}).Close();
        xml.Open("Segment", {{"Position", "1"}}).Leaf("Color", {{"Value", "255 214 120"}}).Close();
        xml.Close();
    };
}

XmlHook Radial()
{
    return [](XmlPart& xml) {
        xml.Open("RadialShd", {{"StartPoint", "16 11"}, {"EndPoint", "20 15"}, {"EndRadius", "20"}, {"Extend", "3"}});
        xml.Open("Segment", {{"Position", "0"}}).Leaf("Color", {{"Value", "255 255 255"}}).Close();
        xml.Open("Segment", {{"Position", "0.5"}}).Leaf("Color", {{"Value", "120 190 175"}}).Close();
        xml.Open("Segment", {{"Position", "1"}}).Leaf("Color", {{"Value", "20 90 80"}}).Close();
        xml.Close();
    };
}

XmlHook Triangle()
{
    return [](XmlPart& xml) {
        xml.Open("GouraudShd");
        const QPair<const char*, const char*> corners[] = {
            {"2 28", "220 50 50"}, {"20 2", "50 170 80"}, {"38 28", "50 90 220"}};
        for (const auto& corner : corners) {
            const QStringList at = QString(corner.first).split(' ');
            xml.Open("Point", {{"X", at[0]}, {"Y", at[1]}}).Leaf("Color", {{"Value", corner.second}}).Close();
        }
        xml.Close();
    };
}

XmlHook Pattern(Ids& ids)
{
    return [&ids](XmlPart& xml) {
        xml.Open("Pattern", {{"Width", "6"}, {"Height", "6"}, {"XStep", "6"}, {"YStep", "6"}});
        xml.Open("CellContent");
        ObjectWriter cell(xml, ids);
        cell.Ellipse(QRectF(1, 1, 2.4, 2.4), Filled(kBlue));
        cell.Ellipse(QRectF(3.6, 3.6, 1.6, 1.6), Filled(kOrange));
        xml.Close().Close();
    };
}

void Gradient(ObjectWriter& objects, const Tour& tour, const QPointF& at, const QString& name, const XmlHook& fill,
              const QString& outline = "M 0 0 L 40 0 L 40 30 L 0 30 C")
{
    PathStyle style;
    style.stroke = QColor(0xB9, 0xC6, 0xDD);
    style.fillPattern = fill;
    objects.Path(QRectF(at, QSizeF(40, 30)), outline, style);
    objects.Text(at + QPointF(0, 35.5), name, Styled(tour.mono, 3, kMuted));
}

} // namespace

void AddPathPage(Tour& tour)
{
    tour.pages.append(tour.document.AddPage(Ordinary(tour), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "3", QString::fromUtf8("路径"), "Paths");
        OperatorGrid(objects, tour, 46);
        Mixed(objects, tour, QPointF(20, 128), QString::fromUtf8("线 Lines"), 4.4, kBlue, true);
        LineStyles(objects, tour, 138);
        Mixed(objects, tour, QPointF(20, 192), QString::fromUtf8("填充与裁剪 Filling and clipping"), 4.4, kBlue, true);
        FillRules(objects, tour, 202);
    }));
}

void AddColourPage(Tour& tour)
{
    const int gray = tour.document.AddColorSpace("GRAY"), cmyk = tour.document.AddColorSpace("CMYK");
    tour.pages.append(tour.document.AddPage(Ordinary(tour), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "4", QString::fromUtf8("颜色与渐变"), "Colours and gradients");
        for (int step = 0; step < 17; ++step)
            objects.Rect(QRectF(20 + step * 10, 46, 10, 12), Filled(QColor::fromHsv(step * 21, 190, 225)));
        for (int step = 0; step < 10; ++step)
            objects.Rect(QRectF(20 + step * 17, 62, 14, 10), Filled(QColor(0x2F, 0x6F, 0xDE, 25 * (step + 1))));
        Caption(objects, tour, QPointF(20, 77), "Alpha 25 ... 250");
        const QPair<int, const char*> spaces[] = {{gray, "60"},          {gray, "150"},       {gray, "220"},
                                                  {cmyk, "255 0 0 0"},   {cmyk, "0 255 0 0"}, {cmyk, "0 0 255 0"},
                                                  {cmyk, "180 120 0 60"}};
        double x = 20;
        for (const auto& space : spaces) {
            XmlPart& xml = objects.Xml();
            xml.Open("PathObject", {{"ID", Num(objects.NextId())},
                                    {"Boundary", Box(QRectF(x, 84, 20, 12))},
                                    {"Stroke", "false"},
                                    {"Fill", "true"}});
            xml.Leaf("FillColor", {{"Value", space.second}, {"ColorSpace", Num(space.first)}});
            xml.Leaf("AbbreviatedData", {}, "M 0 0 L 20 0 L 20 12 L 0 12 C").Close();
            x += 25;
        }
        Caption(objects, tour, QPointF(20, 101), "GRAY and CMYK");
        Gradient(objects, tour, QPointF(20, 112), "Axial, Extend 0", Axial("0", "Direct"));
        Gradient(objects, tour, QPointF(75, 112), "Axial, Extend 3", Axial("3", "Direct"));
        Gradient(objects, tour, QPointF(130, 112), "Axial, Reflect", Axial("3", "Reflect"));
        Gradient(objects, tour, QPointF(20, 162), "Radial", Radial(), "M 20 0 A 20 15 0 1 1 19.9 0 C");
        Gradient(objects, tour, QPointF(75, 162), "Gouraud", Triangle(), "M 2 28 L 20 2 L 38 28 C");
        Gradient(objects, tour, QPointF(130, 162), "Pattern", Pattern(tour.document.UnitIds()));
    }));
}

void AddImagePage(Tour& tour)
{
    tour.pages.append(tour.document.AddPage(Ordinary(tour), [&](PageBuilder& page) {
        page.BeginLayer();
        ObjectWriter& objects = page.Objects();
        Heading(objects, tour, "5", QString::fromUtf8("图像"), "Images and composite objects");
        objects.Image(QRectF(20, 46, 80, 50), tour.landscapePng);
        objects.Image(QRectF(110, 46, 80, 50), tour.landscapeJpeg);
        Caption(objects, tour, QPointF(20, 101.5), "PNG");
        Caption(objects, tour, QPointF(110, 101.5), "JPEG");
        objects.Rect(QRectF(20, 112, 46, 46), Filled(kPale));
        objects.Image(QRectF(22, 114, 42, 42), tour.logo);
        Caption(objects, tour, QPointF(20, 164), QString::fromUtf8("透明底 Transparent ground"));
        objects.Image(QRectF(78, 110, 60, 52), tour.landscapeJpeg, {{"CTM", "43.3 25 -15.6 27 15.6 0"}});
        Caption(objects, tour, QPointF(78, 164), QString::fromUtf8("旋转 Turned by its matrix"));
        objects.Image(QRectF(150, 112, 40, 40), tour.code, {{"Alpha", "200"}});
        Caption(objects, tour, QPointF(150, 164), QString::fromUtf8("黑白 Black and white"));
        Mixed(objects, tour, QPointF(20, 182), QString::fromUtf8("复合对象 Composite objects"), 4.4, kBlue, true);
        double x = 20;
        for (double scale : {0.5, 0.8, 1.1, 1.5, 2.0}) {
            const QRectF box(x, 192, 20 * scale, 20 * scale);
            objects.Composite(box, tour.badge, {{"CTM", Nums({scale, 0, 0, scale, 0, 0})}});
            x += 20 * scale + 8;
        }
        Caption(objects, tour, QPointF(20, 240), QString::fromUtf8("同一单元的五次引用 One unit, used five times"));
    }));
}

void AddLayerPage(Tour& tour)
{
    PageSetup setup = Ordinary(tour);
    setup.foregroundTemplates = Num(tour.foreground);
    tour.pages.append(tour.document.AddPage(setup, [&](PageBuilder& page) {
        page.BeginLayer("Background");
        page.Objects().Rect(QRectF(30, 60, 100, 70), Filled(QColor(0xDC, 0xE8, 0xFC)));
        Mixed(page.Objects(), tour, QPointF(34, 68), QString::fromUtf8("背景层 Background"), 4.4, kBlue);
        page.BeginLayer("Body");
        Heading(page.Objects(), tour, "6", QString::fromUtf8("模板与图层"), "Templates and layers");
        page.Objects().Rect(QRectF(50, 85, 100, 70), Filled(QColor(0xFD, 0xE4, 0xC6)));
        Mixed(page.Objects(), tour, QPointF(54, 93), QString::fromUtf8("正文层 Body"), 4.4, kOrange);
        page.BeginLayer("Custom", tour.softLine);
        page.Objects().Rect(QRectF(70, 110, 100, 70), Filled(QColor(0xCF, 0xEC, 0xE5, 220)));
        Mixed(page.Objects(), tour, QPointF(74, 118), QString::fromUtf8("自定义层 Custom"), 4.4, kGreen);
        XmlPart& xml = page.Objects().Xml();
        xml.Open("PathObject", {{"ID", Num(page.Objects().NextId())}, {"Boundary", "74 124 60 20"}});
        xml.Leaf("AbbreviatedData", {}, "M 2 16 B 14 -8 26 30 38 8 L 56 8").Close();
        Caption(page.Objects(), tour, QPointF(74, 150), QString::fromUtf8("线型来自图层 Line style of the layer"));
        page.BeginLayer("Foreground");
        page.Objects().Rect(QRectF(90, 158, 90, 40), Filled(QColor(0x26, 0x32, 0x4A, 200)));
        Mixed(page.Objects(), tour, QPointF(94, 167), QString::fromUtf8("前景层 Foreground"), 4.4, Qt::white);
        page.BeginLayer("Body");
        page.Objects().Paragraph(
            QPointF(20, 222), 170,
            QString::fromUtf8("这一页引用两个模板：背景模板画页眉和页脚，前景模板画右上角的标记；页面自己有五个图层。"
                              "在图层窗格里可以逐个隐藏它们。"),
            Styled(tour.song, 4.4), 7);
    }));
}

} // namespace samples
