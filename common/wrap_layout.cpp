#include "wrap_layout.h"

#include <QPainter>
#include <QTextLayout>
#include <QTextOption>

#include <algorithm>

WrappedText::WrappedText(const QString& text, const WrapStyle& style)
    : layout(new QTextLayout(text, style.font))
{
    QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
    option.setWrapMode(QTextOption::WrapAnywhere);
    layout->setTextOption(option);
    layout->setCacheEnabled(true);
    qreal y = style.top;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(std::max<qreal>(style.lineWidth, 1)); // a list narrower than its margins still breaks lines
        y += style.beforeLine;
        line.setPosition(QPointF(style.left, y));
        lines.append({line.textStart(), line.textLength(), line.position(), line.height()});
        y += line.height() + style.afterLine;
    }
    layout->endLayout();
    height = y;
}

WrappedText::~WrappedText() = default;

void WrappedText::Draw(QPainter* painter, const QPointF& rowTopLeft) const
{
    layout->draw(painter, rowTopLeft);
}

const WrappedText& WrapLayoutCache::Layout(const QString& text, const WrapStyle& newStyle)
{
    if (!(newStyle == style)) {
        layouts.clear();
        style = newStyle;
    }
    if (const WrappedText* known = layouts.object(text))
        return *known;
    ++layoutCount;
    auto* made = new WrappedText(text, style);
    // Never dearer than the cache holds: what does not fit would be deleted at once.
    layouts.insert(text, made, std::min(1 + text.size() / 64, layouts.maxCost()));
    return *made;
}
