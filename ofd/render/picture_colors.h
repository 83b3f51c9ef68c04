#pragma once

#include <QByteArray>
#include <QImage>

#include <memory>

namespace ofd {

// Turns the numbers of a picture into colours of the screen by the profile that the picture carries. For one picture
// on one thread.
class PictureColors
{
public:
    // Null, and told, when the profile cannot be used; null too when it is that of the screen, or empty.
    static std::unique_ptr<PictureColors> FromProfile(const QByteArray& profile);
    ~PictureColors();
    PictureColors(const PictureColors&) = delete;
    PictureColors& operator=(const PictureColors&) = delete;

    bool IsForInks() const { return channelCount == 4; }
    // Changes a picture that was decoded without a look at the profile. One that has other channels than the profile,
    // or too many pixels, stays as it is.
    void Convert(QImage& image) const;
    // A row of four inks a pixel, 255 = full. Only of a profile for inks.
    void ConvertInks(const quint8* inks, QRgb* out, int width) const;

private:
    explicit PictureColors(int channelCount)
        : channelCount(channelCount)
    {
    }
    bool Open(const QByteArray& profile);
    bool ChangesNothing() const;
    void ConvertLights(QRgb* pixels, int count) const;
    void ConvertLights(QImage& image) const;
    void ConvertGray(QImage& image) const;

    const int channelCount;
    void* context = nullptr;   // owned; of the colour library
    void* transform = nullptr; // owned
};

} // namespace ofd
