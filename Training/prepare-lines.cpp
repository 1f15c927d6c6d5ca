// SPDX-License-Identifier: MIT
//
// prepare-lines HEIGHT: cuts pages into lines as the program does, so that a network is trained on
// what it is later given.
//
// Standard input: pages, each four 32-bit integers (width, height, the white around the ink in
// pixels as Engine leaves it, 0) and three bytes a pixel. Standard output: for each page a 32-bit
// count, then each line: its box on the page (left, top, right, bottom) and the size of its picture
// (width, height) as 32-bit integers, the column of the page's left edge and columns per pixel of
// the page as 64-bit numbers, and the picture, HEIGHT high, one byte a pixel.

#include "TextRecognition/LineImage.h"
#include "TextRecognition/Network/NetworkLine.h"

#include <QImage>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace recognition;

namespace {

/// A page wider or higher than this is none.
constexpr std::int32_t largestPage = 1 << 14;

/// Every network that is trained has columns this wide.
constexpr int columnWidth = 3;

template <typename T>
void put(const T *values, std::size_t count)
{
    if (std::fwrite(values, sizeof(T), count, stdout) != count) {
        std::exit(1);
    }
}

struct Prepared
{
    TextLine line;
    LineImage image;
};

void putLine(const Prepared &prepared, int margin, int height)
{
    const NetworkLine part(prepared.image.picture, margin);
    const GreyImage picture = part.line(height, columnWidth);
    const Box &box = prepared.line.box;
    const std::array<std::int32_t, 6> numbers{box.left,   box.top,       box.right,
                                              box.bottom, picture.width, picture.height};
    const double columns = double(picture.width) / part.box.width();
    const std::array<double, 2> places{(prepared.image.offsetX - part.box.left) * columns,
                                       prepared.image.scale * columns};
    put(numbers.data(), numbers.size());
    put(places.data(), places.size());
    put(picture.pixels.data(), picture.pixels.size());
}

void preparePage(const QImage &image, int margin, int height)
{
    const GreyImage page = greyImage(image);
    std::vector<Prepared> lines;
    for (TextLine &line : findLines(findMarks(page))) {
        LineImage prepared = lineImage(page, line);
        if (!prepared.isEmpty() && !NetworkLine(prepared.picture, margin).inked.isEmpty()) {
            lines.push_back({std::move(line), std::move(prepared)});
        }
    }
    const auto count = std::int32_t(lines.size());
    put(&count, 1);
    for (const Prepared &line : lines) {
        putLine(line, margin, height);
    }
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    const int height = argc == 2 ? std::atoi(argv[1]) : 0;
    if (height < 8) {
        std::fputs("usage: prepare-lines HEIGHT <PAGES >LINES\n", stderr);
        return 2;
    }
    std::array<std::int32_t, 4> head{};
    while (std::fread(head.data(), sizeof head, 1, stdin) == 1) {
        const auto [pageWidth, pageHeight, margin, unused] = head;
        if (pageWidth < 1 || pageHeight < 1 || pageWidth > largestPage ||
            pageHeight > largestPage || margin < 0) {
            return 1;
        }
        QImage image(pageWidth, pageHeight, QImage::Format_RGB888);
        for (int y = 0; y < pageHeight; ++y) {
            if (std::fread(image.scanLine(y), std::size_t(pageWidth) * 3, 1, stdin) != 1) {
                return 1;
            }
        }
        preparePage(image, margin, height);
    }
    return 0;
}
