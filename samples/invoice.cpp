#include "invoice.h"

#include "document_builder.h"
#include "pictures.h"

namespace samples {

namespace {

const QColor kForm(0x8C, 0x3B, 0x1E); // the printed form
const QColor kData(0x1F, 0x28, 0x38); // what was filled in

constexpr double kLeft = 8, kRight = 202;
const double kColumns[] = {kLeft, 60, 84, 96, 112, 134, 156, 174, kRight};

struct Item
{
    const char* cells[8];
};

const Item kItems[] = {
    {{"*办公用品*订书机", "A-10", "个", "20", "35.40", "708.00", "13%", "92.04"}},
    {{"*印刷品*会议手册", "16开", "册", "120", "12.50", "1500.00", "9%", "135.00"}},
    {{"*信息技术服务*文档归档", "", "次", "1", "1886.79", "1886.79", "6%", "113.21"}},
};

const char* const kHeads[] = {"项目名称", "规格型号", "单位", "数量", "单价", "金额", "税率/征收率", "税额"};

// A field of the form: the tag it belongs to and the object that shows it.
struct Field
{
    QString tag;
    int object;
};

class InvoicePage
{
public:
    InvoicePage(ObjectWriter& objects, const Font& kai, const Font& song, const Font& mono)
        : objects(objects)
    {
        label.font = kai;
        label.sizeMm = 3.2;
        label.colour = kForm;
        data.font = song;
        data.sizeMm = 3.2;
        data.colour = kData;
        number.font = mono;
        number.sizeMm = 3.2;
        number.colour = kData;
        line.stroke = kForm;
        line.widthMm = 0.25;
    }

    void Head(int codeImage)
    {
        objects.Image(QRectF(9, 5, 20, 20), codeImage);
        TextStyle title = label;
        title.sizeMm = 7;
        title.letterSpaceMm = 0.6;
        objects.TextCentred(QPointF(101, 14.5), QString::fromUtf8("电子发票（普通发票）"), title);
        objects.Line(QPointF(66, 17.6), QPointF(142, 17.6), line);
        objects.Line(QPointF(66, 18.8), QPointF(142, 18.8), line);
        objects.Text(QPointF(146, 12), QString::fromUtf8("发票号码："), label);
        fields.append({"InvoiceNumber", objects.Text(QPointF(162, 12), "24310000000012345678", number)});
        objects.Text(QPointF(146, 18), QString::fromUtf8("开票日期："), label);
        fields.append({"IssueDate", objects.Text(QPointF(162, 18), QString::fromUtf8("2024年05月20日"), data)});
    }

    void Frame()
    {
        objects.Rect(QRectF(kLeft, 28, kRight - kLeft, 100), line);
        for (double y : {50.0, 92.0, 100.0})
            objects.Line(QPointF(kLeft, y), QPointF(kRight, y), line);
        for (double x : {15.0, 105.0, 112.0})
            objects.Line(QPointF(x, 28), QPointF(x, 50), line);
        objects.Line(QPointF(15, 100), QPointF(15, 128), line);
    }

    void Party(double x, const QString& title, const QString& tag, const QString& name, const QString& taxNumber)
    {
        double y = 32.4;
        for (const QChar& letter : title) {
            objects.TextCentred(QPointF(x + 3.5, y), QString(letter), label);
            y += 4;
        }
        objects.Text(QPointF(x + 9, 36), QString::fromUtf8("名称："), label);
        fields.append({tag + "Name", objects.Text(QPointF(x + 19, 36), name, data)});
        objects.Text(QPointF(x + 9, 45), QString::fromUtf8("统一社会信用代码/纳税人识别号："), label);
        TextStyle small = number;
        small.sizeMm = 2.9;
        fields.append({tag + "TaxNumber", objects.Text(QPointF(x + 57.5, 45), taxNumber, small)});
    }

    void Table()
    {
        for (int column = 0; column < 8; ++column)
            objects.TextCentred(QPointF((kColumns[column] + kColumns[column + 1]) / 2, 54.6),
                                QString::fromUtf8(kHeads[column]), label);
        double y = 60.5;
        for (const Item& item : kItems) {
            for (int column = 0; column < 8; ++column)
                fields.append(
                    {QStringLiteral("Item/") + Num(column), Cell(column, y, QString::fromUtf8(item.cells[column]))});
            y += 5.5;
        }
        objects.Text(QPointF(28, 90), QString::fromUtf8("合　　计"), label);
        fields.append({"AmountWithoutTax", objects.TextRight(QPointF(155, 90), QString::fromUtf8("¥4094.79"), number)});
        fields.append({"TaxAmount", objects.TextRight(QPointF(200, 90), QString::fromUtf8("¥340.25"), number)});
    }

    void Foot()
    {
        objects.Text(QPointF(20, 97.2), QString::fromUtf8("价税合计（大写）"), label);
        PathStyle ring = line;
        objects.Ellipse(QRectF(62, 93.6, 4.6, 4.6), ring);
        objects.Path(QRectF(62, 93.6, 4.6, 4.6), "M 0.7 0.7 L 3.9 3.9 M 3.9 0.7 L 0.7 3.9", ring);
        fields.append(
            {"TotalInWords", objects.Text(QPointF(70, 97.2), QString::fromUtf8("肆仟肆佰叁拾伍圆零肆分"), data)});
        objects.Text(QPointF(140, 97.2), QString::fromUtf8("（小写）"), label);
        fields.append({"Total", objects.Text(QPointF(156, 97.2), QString::fromUtf8("¥4435.04"), number)});
        double y = 109;
        for (const QString& letter : {QString::fromUtf8("备"), QString::fromUtf8("注")}) {
            objects.TextCentred(QPointF(11.5, y), letter, label);
            y += 9;
        }
        fields.append(
            {"Remark", objects.Text(QPointF(18, 106),
                                    QString::fromUtf8("合同编号 HT-2024-0520，样例数据，不作报销凭证。"), data)});
        objects.Text(QPointF(16, 134.5), QString::fromUtf8("开票人："), label);
        fields.append({"Issuer", objects.Text(QPointF(29, 134.5), QString::fromUtf8("林小满"), data)});
    }

    QVector<Field> fields;

private:
    int Cell(int column, double y, const QString& text)
    {
        if (text.isEmpty())
            return 0;
        if (column == 0)
            return objects.Text(QPointF(kColumns[0] + 1.5, y), text, data);
        if (column == 1 || column == 2)
            return objects.TextCentred(QPointF((kColumns[column] + kColumns[column + 1]) / 2, y), text, data);
        return objects.TextRight(QPointF(kColumns[column + 1] - 2, y), text, number);
    }

    ObjectWriter& objects;
    TextStyle label, data, number;
    PathStyle line;
};

QString Reference(int page, int object)
{
    return QStringLiteral("<ofd:ObjectRef PageRef=\"%1\">%2</ofd:ObjectRef>").arg(page).arg(object);
}

// The invoice's fields as a tree: single fields in the order of the form, the items grouped by line.
QByteArray TagFile(int page, const QVector<Field>& fields)
{
    static const char* const columns[] = {"Name", "Model", "Unit", "Quantity", "Price", "Amount", "TaxRate", "Tax"};
    QString xml =
        QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<fp:Invoice xmlns:fp=\"http://example.org/invoice\" xmlns:ofd=\"%1\" version=\"1.0\">\n")
            .arg(QLatin1String(kOfdUri));
    QString items;
    for (const Field& field : fields) {
        if (!field.tag.startsWith(QLatin1String("Item/"))) {
            xml += QStringLiteral("<fp:%1>%2</fp:%1>\n").arg(field.tag, Reference(page, field.object));
            continue;
        }
        const int column = field.tag.mid(5).toInt();
        if (column == 0)
            items += QStringLiteral("<fp:Item>\n");
        if (field.object > 0)
            items += QStringLiteral("<fp:%1>%2</fp:%1>\n")
                         .arg(QLatin1String(columns[column]), Reference(page, field.object));
        if (column == 7)
            items += QStringLiteral("</fp:Item>\n");
    }
    xml += QStringLiteral("<fp:Items>\n") + items + QStringLiteral("</fp:Items>\n</fp:Invoice>\n");
    return xml.toUtf8();
}

QByteArray DataXml()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<invoice number=\"24310000000012345678\" date=\"2024-05-20\">\n"
           "<total currency=\"CNY\" net=\"4094.79\" tax=\"340.25\" gross=\"4435.04\"/>\n</invoice>\n";
}

} // namespace

Package MakeInvoice()
{
    DocumentBuilder document(QString::fromUtf8("电子发票 24310000000012345678"));
    const Font kai = document.AddFont(QString::fromUtf8("楷体"), Face::Cjk, {{"FamilyName", "KaiTi"}});
    const Font song = document.AddFont(QString::fromUtf8("宋体"), Face::Cjk, {{"FamilyName", "SimSun"}});
    const Font mono = document.AddFont("Courier New", Face::Mono, {{"FixedWidth", "true"}});
    const int code = document.AddImage("code.png", CodePng(), "PNG");
    QVector<Field> fields;
    PageSetup setup;
    setup.sizeMm = QSizeF(210, 140);
    const int page = document.AddPage(setup, [&](PageBuilder& builder) {
        builder.BeginLayer();
        InvoicePage form(builder.Objects(), kai, song, mono);
        form.Head(code);
        form.Frame();
        form.Party(8, QString::fromUtf8("购买方信息"), "Buyer", QString::fromUtf8("云岭市示范图书馆"),
                   "12990000MB0A1B2C3D");
        form.Party(105, QString::fromUtf8("销售方信息"), "Seller", QString::fromUtf8("远山文具（云岭）有限公司"),
                   "91990000MA0X9Y8Z7W");
        form.Table();
        form.Foot();
        fields = form.fields;
    });
    Annotation seal;
    seal.type = "Stamp";
    seal.subtype = "Stamp";
    seal.boundary = QRectF(150, 101, 40, 28);
    seal.remark = QString::fromUtf8("销售方印章（样例）");
    seal.isReadOnly = true;
    seal.appearance = [kai](ObjectWriter& objects) {
        DrawSeal(objects, QSizeF(40, 28), QString::fromUtf8("远山文具有限公司"), QString::fromUtf8("发票专用章"), kai);
    };
    document.AddAnnotation(page, seal);
    document.AddTagFile("Invoice.xml", "http://example.org/invoice", TagFile(page, fields));
    Attachment data;
    data.name = "original_invoice";
    data.fileName = "original_invoice.xml";
    data.format = "xml";
    data.data = DataXml();
    data.isVisible = false;
    document.AddAttachment(data);
    return document.Build();
}

} // namespace samples
