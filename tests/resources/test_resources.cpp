#include <tests/support/test_main.h>

#include <QFile>
#include <QImage>
#include <QMovie>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QtTest>

namespace {

// The names that code and style sheets ask for, by folder. Written out here, not taken from the resource list itself,
// so that a picture that gets lost or renamed is noticed.
struct Family
{
    const char* folder;
    const char* suffix;
    QSize size;
    const char* names;
};

const Family families[] = {
    {":/nodeQrc/image/", ".svg", QSize(24, 24),
     "actionselect btn_add_disabled btn_add_normal btn_del_disabled btn_del_normal btn_export_customtag_disabled "
     "btn_export_customtag_normal btn_import_customtag_disabled btn_import_customtag_normal close collapse "
     "cursor_customtag customtag_down customtag_up expand export_attachment export_attachment_disabled ico more "
     "open_attachment open_attachmet_disabled remark select unselect"},
    {":/annotation/image/", ".svg", QSize(24, 24),
     "annot_expand annot_lineedit_close annot_putaway annotation_hide btn_annot_screen btn_annot_screen_disabled "
     "btn_annot_sort btn_annot_sort_disabled btn_search_annot btn_searchannot_disabled checkbox_deselect "
     "checkbox_partiallychecked checkbox_select type_affix type_anotherparagraph type_arrow type_chapter type_cloud "
     "type_continueline type_datestamp type_ellipse type_exchange type_fluorescent type_freetext type_highlight "
     "type_increasespace type_insertline type_line type_link type_moveback type_movedout type_moveforward type_none "
     "type_notebox type_other type_path type_pen type_pencil type_polygon type_polyline type_preseal type_rectangle "
     "type_rectmask type_reducespace type_replace type_seal type_squiggly type_stamp type_strikeout type_switchfont "
     "type_tabletdlg type_underline type_watercolor type_watermark"},
    {":/attachType/image/", ".svg", QSize(32, 32),
     "AFT CEB EDC OPG PS caj docx exl gd largeFile mp4 music ofd other pdf picture ppt sfd txt xml zip"},
    {":/catalog/image/", ".svg", QSize(24, 24),
     "btn_collapse_outline_disabled btn_collapse_outline_normal btn_expand_outline_disabled btn_expand_outline_normal "
     "down_triangle_disabled down_triangle_normal"},
    {":/nocontent/image/", ".svg", QSize(120, 112),
     "nocontent_annotation nocontent_attachment nocontent_bookmark nocontent_customtag nocontent_outline"},
    {":/core/res/icons/navi/", "", QSize(24, 24),
     "vn_outline vn_customtag vn_bookmark vn_attachment vn_annotation vn_layers"},
    {":/reader/image/", ".svg", QSize(24, 24),
     "open save save_as bookmark_add undo redo zoom_in zoom_out actual_size fit_width fit_page hand text_select "
     "first_page "
     "prev_page "
     "next_page last_page close more open_disabled save_disabled undo_disabled redo_disabled"},
    {":/reader/image/", ".svg", QSize(64, 64), "tetoreader"},
};

int PaintedPixels(QSvgRenderer& renderer, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    int painted = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            painted += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return painted;
}

struct Translation
{
    QString context;
    QString source;
    QString text;
    bool isUnfinished = false;
};

QList<Translation> Translations()
{
    QList<Translation> list;
    QFile file(QStringLiteral(TETO_CATALOGUE));
    if (!file.open(QIODevice::ReadOnly))
        return list;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            list.append({context, xml.readElementText(), QString(), false});
        } else if (xml.name() == QLatin1String("translation") && !list.isEmpty()) {
            list.last().isUnfinished = xml.attributes().hasAttribute(QStringLiteral("type"));
            list.last().text = xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
    }
    return xml.hasError() ? QList<Translation>() : list;
}

// The places for arguments that a text has, each once, sorted.
QStringList Places(const QString& text)
{
    QStringList places;
    QRegularExpressionMatchIterator matches = QRegularExpression(QStringLiteral("%[0-9Ln]+")).globalMatch(text);
    while (matches.hasNext())
        places += matches.next().captured();
    places.removeDuplicates();
    places.sort();
    return places;
}

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

private slots:
    void everyNamedPictureExistsParsesAndPaints_data();
    void everyNamedPictureExistsParsesAndPaints();
    void disabledButtonsDifferFromEnabledOnes();
    void theSpinnerIsAnAnimationOfTwelveDifferentFrames();
    void everyTextOfTheCatalogueIsTranslatedAndKeepsItsArguments();
};

void TestResources::everyNamedPictureExistsParsesAndPaints_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    for (const Family& family : families) {
        const QStringList names = QString::fromLatin1(family.names).split(QLatin1Char(' '));
        for (const QString& name : names) {
            const QString path = QLatin1String(family.folder) + name + QLatin1String(family.suffix);
            QTest::newRow(qPrintable(path)) << path << family.size;
        }
    }
}

void TestResources::everyNamedPictureExistsParsesAndPaints()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);
    QVERIFY(QFile::exists(path));
    QSvgRenderer renderer(path);
    QVERIFY(renderer.isValid());
    QCOMPARE(renderer.defaultSize(), size);
    QVERIFY(PaintedPixels(renderer, size) > 8);
}

void TestResources::disabledButtonsDifferFromEnabledOnes()
{
    const QStringList stems{QStringLiteral(":/nodeQrc/image/btn_add_%1.svg"),
                            QStringLiteral(":/nodeQrc/image/btn_del_%1.svg"),
                            QStringLiteral(":/catalog/image/btn_expand_outline_%1.svg")};
    for (const QString& stem : stems) {
        QFile normal(stem.arg(QLatin1String("normal")));
        QFile disabled(stem.arg(QLatin1String("disabled")));
        QVERIFY(normal.open(QIODevice::ReadOnly) && disabled.open(QIODevice::ReadOnly));
        QVERIFY(normal.readAll() != disabled.readAll());
    }
}

void TestResources::theSpinnerIsAnAnimationOfTwelveDifferentFrames()
{
    QMovie movie(QStringLiteral(":/nodeQrc/image/loading.gif"));
    QVERIFY(movie.isValid());
    QCOMPARE(movie.frameCount(), 12);
    QList<QImage> frames;
    for (int frame = 0; frame < 12; ++frame) {
        QVERIFY(movie.jumpToFrame(frame));
        const QImage image = movie.currentImage();
        QCOMPARE(image.size(), QSize(48, 48));
        QVERIFY(!frames.contains(image));
        frames.append(image);
    }
}

void TestResources::everyTextOfTheCatalogueIsTranslatedAndKeepsItsArguments()
{
    const QList<Translation> list = Translations();
    QVERIFY(list.size() > 250);
    for (const Translation& item : list) {
        const QByteArray what = (item.context + QStringLiteral(": ") + item.source).toUtf8();
        QVERIFY2(!item.isUnfinished && !item.text.trimmed().isEmpty(), what.constData());
        QVERIFY2(Places(item.text) == Places(item.source), what.constData());
    }
}

TETO_TEST_MAIN(TestResources)
#include "test_resources.moc"
