#include "digest.h"

#include <QtGlobal>

#include <array>

namespace samples {

namespace {

quint32 Turn(quint32 value, int bits)
{
    bits %= 32;
    return bits == 0 ? value : (value << bits) | (value >> (32 - bits));
}

quint32 P0(quint32 value)
{
    return value ^ Turn(value, 9) ^ Turn(value, 17);
}

quint32 P1(quint32 value)
{
    return value ^ Turn(value, 15) ^ Turn(value, 23);
}

quint32 WordAt(const QByteArray& bytes, int at)
{
    return quint32(quint8(bytes[at])) << 24 | quint32(quint8(bytes[at + 1])) << 16 |
           quint32(quint8(bytes[at + 2])) << 8 | quint32(quint8(bytes[at + 3]));
}

using State = std::array<quint32, 8>;

void Compress(State& state, const QByteArray& bytes, int at)
{
    quint32 words[68];
    for (int j = 0; j < 16; ++j)
        words[j] = WordAt(bytes, at + 4 * j);
    for (int j = 16; j < 68; ++j)
        words[j] = P1(words[j - 16] ^ words[j - 9] ^ Turn(words[j - 3], 15)) ^ Turn(words[j - 13], 7) ^ words[j - 6];
    auto [a, b, c, d, e, f, g, h] = state;
    for (int j = 0; j < 64; ++j) {
        const quint32 constant = j < 16 ? 0x79CC4519u : 0x7A879D8Au;
        const quint32 ss1 = Turn(Turn(a, 12) + e + Turn(constant, j), 7), ss2 = ss1 ^ Turn(a, 12);
        const quint32 ff = j < 16 ? a ^ b ^ c : (a & b) | (a & c) | (b & c);
        const quint32 gg = j < 16 ? e ^ f ^ g : (e & f) | (~e & g);
        const quint32 tt1 = ff + d + ss2 + (words[j] ^ words[j + 4]), tt2 = gg + h + ss1 + words[j];
        d = c;
        c = Turn(b, 9);
        b = a;
        a = tt1;
        h = g;
        g = Turn(f, 19);
        f = e;
        e = P0(tt2);
    }
    const State turned = {a, b, c, d, e, f, g, h};
    for (size_t j = 0; j < state.size(); ++j)
        state[j] ^= turned[j];
}

} // namespace

QByteArray Sm3(const QByteArray& bytes)
{
    QByteArray padded = bytes + char(0x80);
    padded.append((120 - padded.size() % 64) % 64, '\0');
    const quint64 bits = quint64(bytes.size()) * 8;
    for (int shift = 56; shift >= 0; shift -= 8)
        padded.append(char(bits >> shift));
    State state = {0x7380166F, 0x4914B2B9, 0x172442D7, 0xDA8A0600, 0xA96F30BC, 0x163138AA, 0xE38DEE4D, 0xB0FB0E4E};
    for (int at = 0; at < padded.size(); at += 64)
        Compress(state, padded, at);
    QByteArray digest;
    for (quint32 word : state)
        for (int shift = 24; shift >= 0; shift -= 8)
            digest.append(char(word >> shift));
    return digest;
}

} // namespace samples
