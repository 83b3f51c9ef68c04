#pragma once

#include <QByteArray>
#include <QColor>
#include <QVector>

#include <memory>

namespace ofd {

// What the numbers of a device's colours look like, from an ICC profile. The way to screen colours is worked out once.
// Immutable; any thread.
class ColorProfile
{
public:
    // Null when the bytes are no profile for colours of so many channels: 1 gray, 3 red, green and blue, 4 inks.
    static std::shared_ptr<const ColorProfile> FromBytes(const QByteArray& bytes, int channelCount);
    ~ColorProfile();
    ColorProfile(const ColorProfile&) = delete;
    ColorProfile& operator=(const ColorProfile&) = delete;

    // The channels are 0 to 1; missing ones are 0.
    QColor ColorOf(const QVector<double>& channels) const;

private:
    ColorProfile() = default;

    void* context = nullptr;   // owned; of the colour library
    void* transform = nullptr; // owned
    int channelCount = 3;
};

} // namespace ofd
