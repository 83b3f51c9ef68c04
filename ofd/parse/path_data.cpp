#include "path_data.h"

#include <ofd/model/problem_log.h>
#include <ofd/package/limits.h>

#include <QCoreApplication>
#include <QtMath>

#include <array>
#include <charconv>
#include <cmath>

namespace ofd {

namespace {

constexpr double DotLength = 1e-4; // of a line that only its caps show

bool IsSeparator(char c)
{
    return c == ' ' || c == ',' || c == '\t' || c == '\n' || c == '\r';
}

bool BeginsNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+';
}

class PathReader
{
public:
    explicit PathReader(std::string_view text)
        : at(text.data())
        , end(text.data() + text.size())
    {
    }

    QPainterPath Read()
    {
        char command = NoCommand;
        for (SkipSeparators(); at != end; SkipSeparators()) {
            const char* begin = at;
            command = NextCommand(command);
            if (!ReadCommand(command)) {
                TellOfRest(begin);
                break;
            }
        }
        return path;
    }

private:
    static constexpr char NoCommand = '\0';

    // The letter, or where numbers stand alone that of the numbers before them: more of the same, and lines behind a
    // start point.
    char NextCommand(char last)
    {
        if (!BeginsNumber(*at))
            return *at++;
        if (last == 'M' || last == 'S')
            return 'L';
        return last == 'C' ? NoCommand : last;
    }

    void TellOfRest(const char* begin) const
    {
        constexpr int shownLength = 40;
        ReportProblem(ProblemKind::BadValue,
                      QCoreApplication::translate("OfdDocument", "The path cannot be read from \"%1\" on.")
                          .arg(QString::fromUtf8(begin, int(end - begin)).left(shownLength)));
    }

    bool ReadCommand(char command)
    {
        switch (command) {
        case 'S':
        case 'M':
            return ReadNumbers(2) && (path.moveTo(Point(0)), isBegun = true);
        case 'L':
            return ReadNumbers(2) && (Begin(), Line(), true);
        case 'Q':
            return ReadNumbers(4) && (Begin(), path.quadTo(Point(0), Point(2)), true);
        case 'B':
            return ReadNumbers(6) && (Begin(), path.cubicTo(Point(0), Point(2), Point(4)), true);
        case 'A':
            return ReadNumbers(7) && (Begin(5), Arc(), true);
        case 'C':
            path.closeSubpath();
            return true;
        default:
            return false;
        }
    }

    // A figure that begins without a start point begins at its first point.
    void Begin(int firstNumber = 0)
    {
        if (!isBegun)
            path.moveTo(Point(firstNumber));
        isBegun = true;
    }

    // A figure that is nothing but a line to where it begins is a dot of its caps; Qt would leave it out.
    void Line()
    {
        const QPointF to = Point(0);
        const bool isDot = path.elementCount() > 0 && path.elementAt(path.elementCount() - 1).isMoveTo() &&
                           to == path.currentPosition();
        path.lineTo(isDot ? to + QPointF(DotLength, 0) : to);
    }

    // The arc from the current point, as curves of at most a quarter turn each.
    void Arc()
    {
        const QPointF from = path.currentPosition();
        const QPointF to = Point(5);
        double rx = std::abs(numbers[0]);
        double ry = std::abs(numbers[1]);
        if (rx == 0 || ry == 0) {
            path.lineTo(to);
            return;
        }
        if (from == to)
            return;
        const double turn = qDegreesToRadians(numbers[2]);
        QTransform toUnit;
        toUnit.rotateRadians(-turn);
        const QPointF half = toUnit.map((from - to) / 2);
        const double stretch = std::hypot(half.x() / rx, half.y() / ry);
        if (stretch > 1) { // radii that do not reach are scaled up
            rx *= stretch;
            ry *= stretch;
        }
        const QPointF unit(half.x() / rx, half.y() / ry);
        const double square = QPointF::dotProduct(unit, unit);
        double factor = std::sqrt(std::max(0.0, (1 - square) / std::max(square, 1e-12)));
        const bool isLarge = numbers[3] != 0;
        const bool isClockwise = numbers[4] != 0;
        if (isLarge == isClockwise)
            factor = -factor;
        const QPointF center(factor * unit.y(), -factor * unit.x());
        double first = std::atan2(unit.y() - center.y(), unit.x() - center.x());
        double sweep = std::atan2(-unit.y() - center.y(), -unit.x() - center.x()) - first;
        if (isClockwise && sweep < 0)
            sweep += 2 * M_PI;
        else if (!isClockwise && sweep > 0)
            sweep -= 2 * M_PI;
        QTransform fromUnit;
        fromUnit.translate((from.x() + to.x()) / 2, (from.y() + to.y()) / 2);
        fromUnit.rotateRadians(turn);
        fromUnit.scale(rx, ry);
        fromUnit.translate(center.x(), center.y());
        AppendUnitArc(first, sweep, fromUnit, to);
    }

    void AppendUnitArc(double first, double sweep, const QTransform& fromUnit, const QPointF& to)
    {
        const int pieces = std::max(1, int(std::ceil(std::abs(sweep) / M_PI_2 - 1e-9)));
        const double step = sweep / pieces;
        const double reach = 4.0 / 3.0 * std::tan(step / 4);
        for (int i = 0; i < pieces; ++i) {
            const double a = first + i * step;
            const double b = a + step;
            const QPointF p1(std::cos(a) - reach * std::sin(a), std::sin(a) + reach * std::cos(a));
            const QPointF p2(std::cos(b) + reach * std::sin(b), std::sin(b) - reach * std::cos(b));
            const QPointF p3 = i + 1 == pieces ? to : fromUnit.map(QPointF(std::cos(b), std::sin(b)));
            path.cubicTo(fromUnit.map(p1), fromUnit.map(p2), p3);
        }
    }

    bool ReadNumbers(int count)
    {
        for (int i = 0; i < count; ++i) {
            SkipSeparators();
            if (at != end && *at == '+')
                ++at;
            const std::from_chars_result result = std::from_chars(at, end, numbers[i]);
            if (result.ec != std::errc() || !std::isfinite(numbers[i]) || std::abs(numbers[i]) > limits::MaxNumber)
                return false;
            at = result.ptr;
        }
        return true;
    }

    void SkipSeparators()
    {
        while (at != end && IsSeparator(*at))
            ++at;
    }

    QPointF Point(int first) const { return QPointF(numbers[first], numbers[first + 1]); }

    const char* at;
    const char* end;
    std::array<double, 7> numbers{};
    QPainterPath path;
    bool isBegun = false;
};

} // namespace

QPainterPath ParsePathData(std::string_view text)
{
    return PathReader(text).Read();
}

} // namespace ofd
