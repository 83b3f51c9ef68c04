// What a repaint of a screen of wrapped bookmark rows costs, against the same screen with a bare delegate.

#include "measuring.h"

#include <common/wrap_layout.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTreeWidget>

#include <cmath>

namespace {

constexpr int rowCount = 2000;

// Wraps as the bookmark list does, without its pane.
class WrappingDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        layouts.Layout(index.data().toString(), Style(option)).Draw(painter, option.rect.topLeft());
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const qreal height = layouts.Layout(index.data().toString(), Style(option)).Height();
        return QSize(option.rect.width(), static_cast<int>(std::ceil(height)));
    }
    int LayoutCount() const { return layouts.LayoutCount(); }

private:
    static WrapStyle Style(const QStyleOptionViewItem& option)
    {
        WrapStyle style;
        style.font.setFamily(QStringLiteral("Microsoft YaHei"));
        style.font.setPixelSize(12);
        style.lineWidth = option.widget->width() - 16;
        style.left = 8;
        style.top = 4;
        style.beforeLine = QFontMetrics(style.font).leading();
        style.afterLine = 4;
        return style;
    }
    mutable WrapLayoutCache layouts;
};

void FillList(QTreeWidget* tree)
{
    tree->setHeaderHidden(true);
    tree->setIndentation(0);
    tree->resize(260, 800);
    QList<QTreeWidgetItem*> items;
    for (int row = 0; row < rowCount; ++row)
        items.append(
            new QTreeWidgetItem({QStringLiteral("a bookmark whose name is long enough to be wrapped, %1").arg(row)}));
    tree->addTopLevelItems(items);
    tree->show();
    QApplication::processEvents();
}

double RepaintSeconds(QTreeWidget* tree)
{
    QImage screen(tree->viewport()->size(), QImage::Format_RGB32);
    return BestCpuSecondsOf([&] {
        for (int i = 0; i < 20; ++i)
            tree->viewport()->render(&screen);
    });
}

void RepaintWrappedRows(benchmark::State& state)
{
    QTreeWidget bare;
    FillList(&bare);
    QTreeWidget wrapped;
    WrappingDelegate delegate;
    wrapped.setItemDelegate(&delegate);
    FillList(&wrapped);
    double bareSeconds = 0;
    double wrappedSeconds = 0;
    const int laidOutBefore = delegate.LayoutCount();
    for (auto unused : state) {
        Q_UNUSED(unused)
        bareSeconds = RepaintSeconds(&bare);
        wrappedSeconds = RepaintSeconds(&wrapped);
    }
    state.counters["laid_out_by_repaints"] = delegate.LayoutCount() - laidOutBefore;
    state.counters["wrapped_ms"] = wrappedSeconds / 20 * 1e3;
    state.counters["bare_ms"] = bareSeconds / 20 * 1e3;
    state.counters["ratio_to_bare"] = wrappedSeconds / bareSeconds;
    state.counters["ratio_goal"] = 5;
}
BENCHMARK(RepaintWrappedRows)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    PaintOffscreenByDefault();
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
