#pragma once

#include <QCache>
#include <QFont>
#include <QPointF>
#include <QString>
#include <QVector>

#include <memory>

class QPainter;
class QTextLayout;

// How a row's text is wrapped. All lengths in pixels of the list, scaled by the caller, because the panes round
// differently. A value type.
struct WrapStyle
{
    QFont font;
    qreal lineWidth = 0;  // room for one line
    qreal left = 0;       // x of every line
    qreal top = 0;        // y where the first line's space begins
    qreal beforeLine = 0; // added to y ahead of each line
    qreal afterLine = 0;  // added to y after each line's height

    friend bool operator==(const WrapStyle& a, const WrapStyle& b)
    {
        return a.lineWidth == b.lineWidth && a.left == b.left && a.top == b.top && a.beforeLine == b.beforeLine &&
               a.afterLine == b.afterLine && a.font == b.font;
    }
};

// One line of a wrapped text.
struct WrapLine
{
    int start;  // first character
    int length; // in characters
    QPointF position;
    qreal height;

    friend bool operator==(const WrapLine& a, const WrapLine& b)
    {
        return a.start == b.start && a.length == b.length && a.position == b.position && a.height == b.height;
    }
};

// A text laid out in lines that break anywhere. What paint draws and what sizeHint measures is this one result.
class WrappedText
{
public:
    WrappedText(const QString& text, const WrapStyle& style);
    ~WrappedText();
    qreal Height() const { return height; } // the final y, from the row's top
    const QVector<WrapLine>& Lines() const { return lines; }
    // With the painter's pen.
    void Draw(QPainter* painter, const QPointF& rowTopLeft) const;

private:
    Q_DISABLE_COPY(WrappedText)
    std::unique_ptr<QTextLayout> layout;
    QVector<WrapLine> lines;
    qreal height = 0;
};

// Keeps the layouts of the rows in view, so that a text is laid out once for a width. Owned by a delegate; one style at
// a time: another style empties it. Main thread only.
class WrapLayoutCache
{
public:
    // Valid until the next call.
    const WrappedText& Layout(const QString& text, const WrapStyle& style);
    int LayoutCount() const { return layoutCount; } // texts laid out so far

private:
    QCache<QString, WrappedText> layouts{4096}; // cost: one, and one more for each 64 characters
    WrapStyle style;
    int layoutCount = 0;
};
