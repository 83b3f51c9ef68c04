#include <common/wrap_layout.h>
#include <tests/support/test_main.h>

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTextLayout>
#include <QtTest>

#include <cmath>

namespace {

WrapStyle StyleOf(qreal lineWidth)
{
    WrapStyle style;
    style.font.setPixelSize(12);
    style.lineWidth = lineWidth;
    style.left = 8;
    style.top = 4;
    style.beforeLine = QFontMetricsF(style.font).leading();
    style.afterLine = 4;
    return style;
}

} // namespace

// How the text of a wrapped row is broken, measured and drawn.
class TestWrapLayout : public QObject
{
    Q_OBJECT

private slots:
    void aTextThatFitsStandsOnOneLine()
    {
        const WrapStyle style = StyleOf(500);
        const WrappedText text(QStringLiteral("short"), style);
        QCOMPARE(text.Lines().size(), 1);
        const WrapLine& line = text.Lines().first();
        QCOMPARE(line.length, 5);
        QCOMPARE(line.position, QPointF(8, 4 + style.beforeLine));
        QCOMPARE(text.Height(), 4 + style.beforeLine + line.height + 4);
    }

    void aLongTextBreaksAnywhereAndEveryCharacterIsOnALine()
    {
        const QString source(200, QLatin1Char('W'));
        const WrapStyle style = StyleOf(60);
        const WrappedText text(source, style);
        QVERIFY(text.Lines().size() > 5);
        int next = 0;
        qreal y = style.top;
        for (const WrapLine& line : text.Lines()) {
            QCOMPARE(line.start, next);
            next += line.length;
            QVERIFY(QFontMetricsF(style.font).horizontalAdvance(source.mid(line.start, line.length)) <= 60.5);
            y += style.beforeLine;
            QCOMPARE(line.position, QPointF(8, y));
            y += line.height + style.afterLine;
        }
        QCOMPARE(next, source.size());
        QCOMPARE(text.Height(), y);
    }

    void aNarrowerListNeedsNoFewerLines()
    {
        const QString source = QStringLiteral("the quick brown fox jumps over the lazy dog ").repeated(3);
        int lines = 0;
        for (const qreal width : {400.0, 200.0, 100.0, 50.0, 10.0}) {
            const WrappedText text(source, StyleOf(width));
            QVERIFY(text.Lines().size() >= lines);
            lines = text.Lines().size();
        }
    }

    void aListNarrowerThanACharacterStillEnds()
    {
        const WrappedText text(QStringLiteral("abc"), StyleOf(-20));
        QCOMPARE(text.Lines().size(), 3);
    }

    void spaceAroundLinesAddsToTheHeightOnceALine()
    {
        WrapStyle style = StyleOf(60);
        const QString source(40, QLatin1Char('W'));
        const WrappedText plain(source, style);
        style.beforeLine += 1;
        style.afterLine += 1;
        const WrappedText spaced(source, style);
        QCOMPARE(spaced.Lines().size(), plain.Lines().size());
        QCOMPARE(spaced.Height() - plain.Height(), 2.0 * plain.Lines().size());
    }

    void anEmptyTextIsOneEmptyLine()
    {
        const WrappedText text(QString(), StyleOf(100));
        QCOMPARE(text.Lines().size(), 1);
        QCOMPARE(text.Lines().first().length, 0);
        QVERIFY(text.Height() > 8);
    }

    void whatIsDrawnStaysWithinWhatWasMeasured()
    {
        const WrappedText text(QString(30, QLatin1Char('W')), StyleOf(80));
        QImage image(200, static_cast<int>(std::ceil(text.Height())) + 40, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        text.Draw(&painter, QPointF(0, 20));
        painter.end();
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) == qRgb(255, 255, 255))
                    continue;
                ++inked;
                QVERIFY2(y >= 20 && y <= 20 + text.Height() && x >= 7 && x <= 8 + 81, "ink outside the row");
            }
        }
        QVERIFY(inked > 100);
    }

    void aTextIsLaidOutOnceForAStyle()
    {
        WrapLayoutCache cache;
        const QString text(50, QLatin1Char('W'));
        const qreal height = cache.Layout(text, StyleOf(60)).Height();
        QCOMPARE(cache.Layout(text, StyleOf(60)).Height(), height);
        QCOMPARE(cache.LayoutCount(), 1);
        cache.Layout(QStringLiteral("other"), StyleOf(60));
        QCOMPARE(cache.LayoutCount(), 2);
    }

    void anotherWidthIsLaidOutAnewAndEqualsAFreshLayout()
    {
        WrapLayoutCache cache;
        const QString source(50, QLatin1Char('W'));
        cache.Layout(source, StyleOf(60));
        const WrappedText& again = cache.Layout(source, StyleOf(90));
        const WrappedText fresh(source, StyleOf(90));
        QCOMPARE(cache.LayoutCount(), 2);
        QCOMPARE(again.Lines(), fresh.Lines());
        QCOMPARE(again.Height(), fresh.Height());
    }

    void aTextThatIsTooDearForTheCacheIsStillLaidOut()
    {
        WrapLayoutCache cache;
        const QString source(400000, QLatin1Char('i'));
        QVERIFY(cache.Layout(source, StyleOf(10000)).Height() > 100);
    }
};

TETO_TEST_MAIN(TestWrapLayout)
#include "test_wrap_layout.moc"
