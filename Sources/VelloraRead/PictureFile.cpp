// SPDX-License-Identifier: MIT
#include "PictureFile.h"

#include <QBuffer>
#include <QByteArray>
#include <QImageReader>
#include <QString>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

/// A page scanned at 600 dots per inch has 35 million pixels, two screens of 8K have 66.
constexpr qint64 mostPixels = 64LL << 20;
/// What such a picture takes unpacked, at four bytes a pixel; no file of one is larger.
constexpr int mostMebibytes = 256;
constexpr qsizetype mostBytes = qsizetype(mostMebibytes) << 20;
constexpr qsizetype chunkSize = 1 << 20;

/// Formats made of pixels. Drawings (SVG, PDF) are left out: their letters need a desktop's fonts.
constexpr std::array<std::string_view, 10> formats{"bmp", "gif", "jpeg", "pbm",  "pgm",
                                                   "png", "ppm", "tif",  "tiff", "webp"};

/// An open file, closed at the end; standard input stays open.
class Input
{
public:
    explicit Input(const char *path)
        : m_isStandard(std::strcmp(path, "-") == 0)
        , m_descriptor(m_isStandard ? STDIN_FILENO : ::open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY))
    {
        if (m_descriptor < 0) {
            throw PictureError(std::strerror(errno));
        }
    }

    ~Input()
    {
        if (!m_isStandard) {
            ::close(m_descriptor);
        }
    }

    Q_DISABLE_COPY_MOVE(Input)

    /// Everything up to the end, but never more than one chunk above the limit.
    QByteArray content()
    {
        QByteArray content;
        while (content.size() <= mostBytes) {
            const qsizetype had = content.size();
            content.resize(had + chunkSize);
            ssize_t got = 0;
            do {
                got = ::read(m_descriptor, content.data() + had, std::size_t(chunkSize));
            } while (got < 0 && errno == EINTR);
            if (got < 0) {
                throw PictureError(std::strerror(errno));
            }
            content.resize(had + got);
            if (got == 0) {
                break;
            }
        }
        return content;
    }

private:
    bool m_isStandard;
    int m_descriptor;
};

void refuseIfTooLarge(QSize size)
{
    if (size.isValid() && qint64(size.width()) * size.height() > mostPixels) {
        throw PictureError("the picture has more than 64 million pixels");
    }
}

/// Whether what is drawn on a transparent ground is light, so that it would vanish on white.
bool isLight(const QImage &image)
{
    qint64 light = 0;
    qint64 weight = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            light += qint64(qGray(line[x])) * qAlpha(line[x]);
            weight += qAlpha(line[x]);
        }
    }
    return light > weight * 128;
}

/// The picture on a ground that sets off what is drawn on it.
QImage withoutTransparency(const QImage &image)
{
    if (!image.hasAlphaChannel()) {
        return image;
    }
    QImage opaque = image.convertToFormat(QImage::Format_ARGB32);
    const int ground = isLight(opaque) ? 0 : 255;
    const auto blended = [ground](int value, int alpha) {
        return (value * alpha + ground * (255 - alpha)) / 255;
    };
    for (int y = 0; y < opaque.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(opaque.scanLine(y));
        for (int x = 0; x < opaque.width(); ++x) {
            const QRgb p = line[x];
            const int alpha = qAlpha(p);
            line[x] =
                qRgb(blended(qRed(p), alpha), blended(qGreen(p), alpha), blended(qBlue(p), alpha));
        }
    }
    return opaque;
}

} // namespace

QImage pictureFromFile(const char *path)
{
    QByteArray content = Input(path).content();
    if (content.isEmpty()) {
        throw PictureError("the file is empty");
    }
    if (content.size() > mostBytes) {
        throw PictureError("the file is larger than 256 MiB");
    }

    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    QImageReader::setAllocationLimit(mostMebibytes);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    if (std::find(formats.begin(), formats.end(), format.toStdString()) == formats.end()) {
        throw PictureError(format.isEmpty() ? "not a picture of a known format"
                                            : "pictures of this format are not read");
    }
    refuseIfTooLarge(reader.size());
    const QImage image = reader.read();
    if (image.isNull()) {
        throw PictureError("the picture is damaged: " + reader.errorString().toStdString());
    }
    refuseIfTooLarge(image.size());
    return withoutTransparency(image);
}
