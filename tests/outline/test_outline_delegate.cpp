#include "outline_cells.h"
#include "outline_gestures.h"

#include <common/wrap_layout.h>
#include <outline/outline_pane.h>
#include <outline/outline_tree.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QToolTip>
#include <QtTest>

#include <cmath>

namespace {

const QColor listGround(0xF5, 0xF7, 0xF9);

// Shows the entry's tooltip and gives its text.
QString TipOf(const OutlineTab* tab, const QString& title, int column)
{
    const QModelIndex index = Index(tab, title, column);
    QHelpEvent help(QEvent::ToolTip, tab->Tree()->visualRect(index).center(), QPoint(5, 5));
    QStyleOptionViewItem option;
    tab->Tree()->itemDelegate()->helpEvent(&help, tab->Tree(), option, index);
    return QToolTip::text();
}

} // namespace

class TestOutlineDelegate : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    // Paint
    void hoverOrSelectionTintsTheCellAndSelectionWins();
    void theGroundHasRoundCorners();
    void aTitleCellEndsAtThePageColumnWhateverItsRectangle();
    void aPageCellWithoutAScrollBarLeavesAGapAtTheRight();
    void thePageNumberStandsAtTheRight();
    void aLongTitleIsElidedOnOneLineAndWholeWhenWrapped();
    void nothingIsPaintedWithoutAnItem();
    // Heights
    void whatIsMeasuredIsWhatIsPaintedAtEveryDepthAndScale_data();
    void whatIsMeasuredIsWhatIsPaintedAtEveryDepthAndScale();
    void rowsOfOneLineAreTwentyFiveHighTimesTheScale();
    void aboveTheScaleOfOneAWrappedRowGrowsByTwoForEachLine();
    void wrappedRowsAreMeasuredAnewAtAnotherWidth();
    void aScrollBarMakesTheLinesShorter();
    void manyDepthsKeepTheirOwnLines();
    void aTitleOfTenThousandCharactersIsShownInARowThatAViewCanHold();
    // Tooltips
    void aTipShowsTheStoredTitleAsTextWhateverMarkupItHolds();
    void aTipOfAVeryLongTitleIsCut();
};

void TestOutlineDelegate::init()
{
    SetScale(1); // whatever screen this runs on
}

void TestOutlineDelegate::cleanup()
{
    SetScale(0);
}

void TestOutlineDelegate::hoverOrSelectionTintsTheCellAndSelectionWins()
{
    OutlineDesk desk(Page() + Entry("A"));
    const OutlineTab* tab = desk.First();
    for (const int column : {0, 1}) {
        const auto groundOf = [&](QStyle::State state) {
            return Screens::PaintCell(tab->Tree(), Index(tab, "A", column), state, QSize(64, 25)).pixelColor(30, 3);
        };
        QCOMPARE(groundOf(QStyle::State_Enabled), listGround);
        QVERIFY(Screens::Near(groundOf(QStyle::State_MouseOver), Screens::TintedGround(0.2)));
        QVERIFY(Screens::Near(groundOf(QStyle::State_Selected), Screens::TintedGround(0.4)));
        QVERIFY(Screens::Near(groundOf(QStyle::State_MouseOver | QStyle::State_Selected), Screens::TintedGround(0.4)));
    }
}

void TestOutlineDelegate::theGroundHasRoundCorners()
{
    OutlineDesk desk(Page() + Entry("A"));
    const OutlineTab* tab = desk.First();
    const QImage image = Screens::PaintCell(tab->Tree(), Index(tab, "A", 1), QStyle::State_Selected, QSize(64, 25));
    QVERIFY(!Screens::Near(image.pixelColor(0, 0), Screens::TintedGround(0.4)));
    QVERIFY(Screens::Near(image.pixelColor(2, 2), Screens::TintedGround(0.4)));
}

void TestOutlineDelegate::aTitleCellEndsAtThePageColumnWhateverItsRectangle()
{
    OutlineDesk desk(Page() + Entry("A") + "  " + Entry("B"));
    const OutlineTab* tab = desk.First();
    const int width = tab->Tree()->width();
    int depth = 0;
    for (const char* title : {"A", "B"}) {
        ++depth;
        const QImage image =
            Screens::PaintCell(tab->Tree(), Index(tab, title, 0), QStyle::State_Selected, QSize(width, 25));
        const int end = width - depth * 20 - 64;
        QVERIFY(Screens::Near(image.pixelColor(end - 3, 12), Screens::TintedGround(0.4)));
        QCOMPARE(image.pixelColor(end + 1, 12), QColor(Qt::red)); // not touched
        // That is what the view gives the cell.
        QCOMPARE(Gesture::TitleRect(tab, title).width(), end);
    }
}

void TestOutlineDelegate::aPageCellWithoutAScrollBarLeavesAGapAtTheRight()
{
    OutlineDesk desk(Page() + Entry("A"));
    const QImage image =
        Screens::PaintCell(desk.First()->Tree(), Index(desk.First(), "A", 1), QStyle::State_Selected, QSize(64, 25));
    QVERIFY(Screens::Near(image.pixelColor(57, 3), Screens::TintedGround(0.4)));
    QCOMPARE(image.pixelColor(61, 12), QColor(Qt::red));
    QString text = Page();
    for (int i = 0; i < 60; ++i)
        text += Entry(QString::number(i));
    OutlineDesk full(text);
    const QImage wide =
        Screens::PaintCell(full.First()->Tree(), Index(full.First(), "3", 1), QStyle::State_Selected, QSize(64, 25));
    QVERIFY(Screens::Near(wide.pixelColor(62, 3), Screens::TintedGround(0.4)));
}

void TestOutlineDelegate::thePageNumberStandsAtTheRight()
{
    OutlineDesk desk(Page() + Entry("A"));
    const QImage image =
        Screens::PaintCell(desk.First()->Tree(), Index(desk.First(), "A", 1), QStyle::State_Enabled, QSize(64, 25));
    const QRect ink = Ink(image);
    QVERIFY(!ink.isEmpty());
    QVERIFY2(ink.right() <= 64 - 4 - 8 && ink.right() > 64 - 4 - 8 - 5, qPrintable(QString::number(ink.right())));
    QVERIFY(qAbs(ink.center().y() - 12) <= 2);
}

void TestOutlineDelegate::aLongTitleIsElidedOnOneLineAndWholeWhenWrapped()
{
    const QString title(90, QLatin1Char('W'));
    OutlineDesk desk(Page() + Entry(title));
    const OutlineTab* tab = desk.First();
    QVERIFY(
        Ink(Screens::PaintCell(tab->Tree(), Index(tab, title, 0), QStyle::State_Enabled, QSize(254, 200))).height() >
        60);
    tab->pane->SetWordWrap(false);
    const QRect ink = Ink(Screens::PaintCell(tab->Tree(), Index(tab, title, 0), QStyle::State_Enabled, QSize(254, 25)));
    QVERIFY(ink.height() < 16);
    QVERIFY(ink.left() >= 12 && ink.left() < 16);
    QVERIFY(ink.right() < tab->Tree()->width() - 84);
}

void TestOutlineDelegate::nothingIsPaintedWithoutAnItem()
{
    OutlineDesk desk(Page() + Entry("A"));
    const QImage image = Screens::PaintCell(desk.First()->Tree(), QModelIndex(), QStyle::State_Selected, QSize(64, 25));
    for (int x = 0; x < 64; ++x)
        QCOMPARE(image.pixelColor(x, 12), QColor(Qt::red));
}

void TestOutlineDelegate::whatIsMeasuredIsWhatIsPaintedAtEveryDepthAndScale_data()
{
    QTest::addColumn<float>("scale");
    QTest::addColumn<int>("entries");
    for (const float scale : {1.0F, 1.25F, 1.5F, 2.0F}) {
        QTest::addRow("%g", double(scale)) << scale << 0;
        QTest::addRow("%g with a scroll bar", double(scale)) << scale << 200;
    }
}

void TestOutlineDelegate::whatIsMeasuredIsWhatIsPaintedAtEveryDepthAndScale()
{
    QFETCH(float, scale);
    QFETCH(int, entries);
    SetScale(scale);
    QString text = Page();
    QStringList titles;
    for (int depth = 0; depth < 5; ++depth) {
        titles.append(QString(30 + 7 * depth, QLatin1Char('g')));
        text += QString(2 * depth, QLatin1Char(' ')) + Entry(titles.last());
    }
    for (int i = 0; i < entries; ++i)
        text += Entry(QString::number(i));
    OutlineDesk desk(text);
    const OutlineTab* tab = desk.First();
    tab->pane->resize(qRound(260 * scale), qRound(1400 * scale));
    ViewFixture::Settle();
    QCOMPARE(tab->Tree()->verticalScrollBar()->isVisible(), entries > 0);
    for (const QString& title : qAsConst(titles)) {
        const int height = Height(tab, title);
        const QRect ink = Ink(Screens::PaintCell(tab->Tree(), Index(tab, title, 0), QStyle::State_Enabled,
                                                 QSize(qRound(260 * scale), height + 100)));
        QVERIFY2(ink.bottom() < height, qPrintable(QStringLiteral("%1 %2").arg(ink.bottom()).arg(height)));
        // And no line more is measured than painted.
        QVERIFY2(ink.bottom() > height - 20 * scale, qPrintable(QStringLiteral("%1 %2").arg(ink.bottom()).arg(height)));
    }
}

void TestOutlineDelegate::rowsOfOneLineAreTwentyFiveHighTimesTheScale()
{
    for (const float scale : {1.0F, 1.3F, 2.0F}) {
        SetScale(scale);
        OutlineDesk desk(Page() + Entry("A"));
        desk.Perform("d_outline_wordwrap");
        QCOMPARE(Height(desk.First(), "A"), int(std::ceil(25 * scale)));
    }
}

void TestOutlineDelegate::aboveTheScaleOfOneAWrappedRowGrowsByTwoForEachLine()
{
    const QString title(60, QLatin1Char('g'));
    // The smallest scale above 1 that leaves every rounded length what it is, and the width with it.
    constexpr float justAbove = 1.0000001F;
    QVERIFY(justAbove > 1);
    int heights[2];
    int lines = 0;
    for (const bool isScaled : {false, true}) {
        SetScale(isScaled ? justAbove : 1);
        OutlineDesk desk(Page() + Entry(title));
        const OutlineTab* tab = desk.First();
        heights[isScaled] =
            tab->Tree()->itemDelegate()->sizeHint(QStyleOptionViewItem(), Index(tab, title, 0)).height();
        if (!isScaled) {
            QFont font(QStringLiteral("Microsoft YaHei"));
            font.setPointSize(9);
            WrapStyle style;
            style.font = font;
            style.lineWidth = tab->Tree()->width() - 84 - 8;
            lines = WrappedText(title, style).Lines().size();
        }
    }
    QVERIFY(lines > 1);
    // Lengths are rounded up, so that each of the three that are scaled grows by one as well: the margin above once,
    // the distance after each line. Those are told from what a line gains for itself.
    const int rounded = 1 + lines;
    QCOMPARE(heights[1] - heights[0] - rounded, 2 * lines);
}

void TestOutlineDelegate::wrappedRowsAreMeasuredAnewAtAnotherWidth()
{
    const QString title(90, QLatin1Char('w'));
    OutlineDesk desk(Page() + Entry(title));
    const OutlineTab* tab = desk.First();
    const int narrow = Height(tab, title);
    tab->pane->resize(500, 420);
    ViewFixture::Settle();
    QVERIFY(Height(tab, title) < narrow);
    tab->pane->resize(260, 420);
    ViewFixture::Settle();
    QCOMPARE(Height(tab, title), narrow);
}

void TestOutlineDelegate::aScrollBarMakesTheLinesShorter()
{
    const QString title(200, QLatin1Char('w'));
    QString text = Page() + Entry(title);
    OutlineDesk few(text);
    for (int i = 0; i < 60; ++i)
        text += Entry(QString::number(i));
    OutlineDesk many(text);
    QVERIFY(Height(many.First(), title) > Height(few.First(), title));
}

void TestOutlineDelegate::manyDepthsKeepTheirOwnLines()
{
    QString text = Page();
    QStringList titles;
    for (int depth = 0; depth < 50; ++depth) {
        titles.append(QStringLiteral("%1 %2").arg(depth).arg(QString(25, QLatin1Char('m'))));
        text += QString(2 * depth, QLatin1Char(' ')) + Entry(titles.last());
    }
    OutlineDesk desk(text);
    const OutlineTab* tab = desk.First();
    tab->pane->resize(1300, 420);
    ViewFixture::Settle();
    const QAbstractItemDelegate* delegate = tab->Tree()->itemDelegate();
    for (int round = 0; round < 2; ++round) {
        for (int depth = 0; depth < titles.size(); ++depth) {
            const QSize size = delegate->sizeHint(QStyleOptionViewItem(), Index(tab, titles.at(depth), 0));
            QCOMPARE(
                size.width(),
                tab->Tree()->width() - 20 * (depth + 1) - 64 -
                    (tab->Tree()->verticalScrollBar()->isVisible() ? tab->Tree()->verticalScrollBar()->width() : 0));
        }
    }
    const auto height = [&](int depth) {
        return delegate->sizeHint(QStyleOptionViewItem(), Index(tab, titles.at(depth), 0)).height();
    };
    QVERIFY(height(49) > height(0)); // lines of its own width
}

void TestOutlineDelegate::aTitleOfTenThousandCharactersIsShownInARowThatAViewCanHold()
{
    for (const float scale : {1.0F, 3.0F}) {
        SetScale(scale);
        const QString title(10000, QChar(0x6587));
        OutlineDesk desk(Page() + Entry(title) + Entry("next"));
        const OutlineTab* tab = desk.First();
        const int height = Height(tab, title);
        QVERIFY2(height > 1000 && height <= 32000, qPrintable(QString::number(height)));
        QVERIFY(!tab->pane->grab().isNull());
        QCOMPARE(tab->Item(QList<int>{1})->text(0), QStringLiteral("next"));
        desk.Perform("d_outline_wordwrap");
        QCOMPARE(Height(tab, title), int(std::ceil(25 * scale)));
        QVERIFY(!tab->pane->grab().isNull());
    }
}

void TestOutlineDelegate::aTipShowsTheStoredTitleAsTextWhateverMarkupItHolds()
{
    OutlineDesk desk(Page() + Entry("  <b>bold</b> & more ") + Entry("B", QString()));
    const OutlineTab* tab = desk.First();
    QCOMPARE(tab->Item(QList<int>{0})->toolTip(0), QStringLiteral("  <b>bold</b> & more "));
    const QString tip = TipOf(tab, "<b>bold</b> & more", 0);
    QVERIFY(tip.contains(QLatin1String("&lt;b&gt;bold&lt;/b&gt; &amp; more")));
    QVERIFY(TipOf(tab, "<b>bold</b> & more", 1).contains(QLatin1Char('1')));
    QVERIFY(TipOf(tab, "B", 1).contains(QLatin1String("...")));
    QToolTip::hideText();
}

void TestOutlineDelegate::aTipOfAVeryLongTitleIsCut()
{
    const QString title(10000, QLatin1Char('x'));
    OutlineDesk desk(Page() + Entry(title));
    QVERIFY(TipOf(desk.First(), title, 0).size() < 1100);
    QToolTip::hideText();
    // The cut comes in the middle of a character of two halves.
    const QString faces = QString(999, QLatin1Char('y')) + QString::fromUtf8("\xF0\x9F\x98\x80").repeated(4);
    OutlineDesk other(Page() + Entry(faces));
    const QString tip = TipOf(other.First(), faces, 0);
    QVERIFY(tip.contains(QString(999, QLatin1Char('y')) + QChar(0x2026)));
    QToolTip::hideText();
}

TETO_TEST_MAIN(TestOutlineDelegate)
#include "test_outline_delegate.moc"
