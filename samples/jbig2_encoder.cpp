#include "jbig2_encoder.h"

#include <array>
#include <vector>

namespace samples {

namespace {

struct QeRow
{
    quint16 qe;
    quint8 nextMps, nextLps;
    bool switches;
};

// The probability states of the arithmetic coder.
const QeRow kStates[] = {
    {0x5601, 1, 1, true},    {0x3401, 2, 6, false},   {0x1801, 3, 9, false},   {0x0AC1, 4, 12, false},
    {0x0521, 5, 29, false},  {0x0221, 38, 33, false}, {0x5601, 7, 6, true},    {0x5401, 8, 14, false},
    {0x4801, 9, 14, false},  {0x3801, 10, 14, false}, {0x3001, 11, 17, false}, {0x2401, 12, 18, false},
    {0x1C01, 13, 20, false}, {0x1601, 29, 21, false}, {0x5601, 15, 14, true},  {0x5401, 16, 14, false},
    {0x5101, 17, 15, false}, {0x4801, 18, 16, false}, {0x3801, 19, 17, false}, {0x3401, 20, 18, false},
    {0x3001, 21, 19, false}, {0x2801, 22, 19, false}, {0x2401, 23, 20, false}, {0x2201, 24, 21, false},
    {0x1C01, 25, 22, false}, {0x1801, 26, 23, false}, {0x1601, 27, 24, false}, {0x1401, 28, 25, false},
    {0x1201, 29, 26, false}, {0x1101, 30, 27, false}, {0x0AC1, 31, 28, false}, {0x09C1, 32, 29, false},
    {0x08A1, 33, 30, false}, {0x0521, 34, 31, false}, {0x0441, 35, 32, false}, {0x02A1, 36, 33, false},
    {0x0221, 37, 34, false}, {0x0141, 38, 35, false}, {0x0111, 39, 36, false}, {0x0085, 40, 37, false},
    {0x0049, 41, 38, false}, {0x0025, 42, 39, false}, {0x0015, 43, 40, false}, {0x0009, 44, 41, false},
    {0x0005, 45, 42, false}, {0x0001, 45, 43, false}, {0x5601, 46, 46, false},
};

// The adaptive binary arithmetic encoder that JBIG2 shares with other image formats.
class ArithmeticEncoder
{
public:
    ArithmeticEncoder()
        : states(65536)
    {
    }

    void Encode(quint32 context, int bit)
    {
        State& state = states[context];
        const QeRow& row = kStates[state.index];
        interval -= row.qe;
        if (bit == state.mps) {
            if (interval & 0x8000) {
                code += row.qe;
                return;
            }
            if (interval < row.qe)
                interval = row.qe;
            else
                code += row.qe;
            state.index = row.nextMps;
        } else {
            if (interval < row.qe)
                code += row.qe;
            else
                interval = row.qe;
            if (row.switches)
                state.mps = 1 - state.mps;
            state.index = row.nextLps;
        }
        Renormalise();
    }

    QByteArray Finish()
    {
        const quint32 upper = code + interval;
        code |= 0xFFFF;
        if (code >= upper)
            code -= 0x8000;
        code <<= shift;
        ByteOut();
        code <<= shift;
        ByteOut();
        if (bytes.isEmpty() || quint8(bytes.back()) != 0xFF)
            bytes.append(char(0xFF));
        bytes.append(char(0xAC));
        return bytes.mid(1); // the first byte stands before the data
    }

private:
    struct State
    {
        quint8 index = 0;
        quint8 mps = 0;
    };

    void Renormalise()
    {
        do {
            interval <<= 1;
            code <<= 1;
            if (--shift == 0)
                ByteOut();
        } while (!(interval & 0x8000));
    }

    void ByteOut()
    {
        const auto last = quint8(bytes.back());
        if (last == 0xFF) {
            Append20();
        } else if (code < 0x8000000) {
            Append19();
        } else {
            bytes[bytes.size() - 1] = char(last + 1);
            if (quint8(bytes.back()) == 0xFF) {
                code &= 0x7FFFFFF;
                Append20();
            } else {
                Append19();
            }
        }
    }

    void Append20()
    {
        bytes.append(char(code >> 20));
        code &= 0xFFFFF;
        shift = 7;
    }

    void Append19()
    {
        bytes.append(char(code >> 19));
        code &= 0x7FFFF;
        shift = 8;
    }

    std::vector<State> states;
    QByteArray bytes = QByteArray(1, '\0');
    quint32 code = 0, interval = 0x8000;
    int shift = 12;
};

int PixelAt(const QImage& bitmap, int x, int y)
{
    return x < 0 || y < 0 || x >= bitmap.width() ? 0 : bitmap.pixelIndex(x, y);
}

// The sixteen pixels above and left of (x, y) in the order of template 0 with its adaptive pixels in their usual
// places.
quint32 Context(const QImage& bitmap, int x, int y)
{
    static const std::array<std::pair<int, int>, 16> places = {{{-1, 0},
                                                                {-2, 0},
                                                                {-3, 0},
                                                                {-4, 0},
                                                                {3, -1},
                                                                {2, -1},
                                                                {1, -1},
                                                                {0, -1},
                                                                {-1, -1},
                                                                {-2, -1},
                                                                {-3, -1},
                                                                {2, -2},
                                                                {1, -2},
                                                                {0, -2},
                                                                {-1, -2},
                                                                {-2, -2}}};
    quint32 context = 0;
    for (size_t bit = 0; bit < places.size(); ++bit)
        context |= quint32(PixelAt(bitmap, x + places[bit].first, y + places[bit].second)) << bit;
    return context;
}

void Append32(QByteArray& bytes, quint32 value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char(value >> shift));
}

QByteArray Segment(quint32 number, quint8 type, quint8 page, const QByteArray& data)
{
    QByteArray bytes;
    Append32(bytes, number);
    bytes.append(char(type));
    bytes.append('\0'); // refers to no other segment
    bytes.append(char(page));
    Append32(bytes, quint32(data.size()));
    return bytes + data;
}

QByteArray PageInfo(const QImage& bitmap)
{
    QByteArray data;
    Append32(data, quint32(bitmap.width()));
    Append32(data, quint32(bitmap.height()));
    Append32(data, 0); // resolution unknown
    Append32(data, 0);
    data.append('\0');    // default pixel white
    data.append(2, '\0'); // no stripes
    return data;
}

QByteArray GenericRegion(const QImage& bitmap)
{
    QByteArray data;
    Append32(data, quint32(bitmap.width()));
    Append32(data, quint32(bitmap.height()));
    Append32(data, 0); // at the page's top left
    Append32(data, 0);
    data.append('\0'); // laid over the page with OR
    data.append('\0'); // arithmetic coding, template 0, no typical prediction
    for (int place : {3, -1, -3, -1, 2, -2, -2, -2})
        data.append(char(place));
    ArithmeticEncoder encoder;
    for (int y = 0; y < bitmap.height(); ++y)
        for (int x = 0; x < bitmap.width(); ++x)
            encoder.Encode(Context(bitmap, x, y), PixelAt(bitmap, x, y));
    return data + encoder.Finish();
}

} // namespace

QByteArray EncodeJbig2(const QImage& bitmap)
{
    QByteArray file("\x97\x4A\x42\x32\x0D\x0A\x1A\x0A", 8);
    file.append('\x01'); // sequential, number of pages known
    Append32(file, 1);
    file += Segment(0, 48, 1, PageInfo(bitmap));
    file += Segment(1, 38, 1, GenericRegion(bitmap));
    file += Segment(2, 49, 1, QByteArray());
    file += Segment(3, 51, 0, QByteArray());
    return file;
}

} // namespace samples
