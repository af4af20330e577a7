#include "media/av/Orientation.h"

#include <array>
#include <cstring>

namespace vantro::media::av {
namespace {

int signOf(std::int32_t value) {
    return (value > 0) - (value < 0);
}

} // namespace

Orientation orientationFromMatrix(const std::uint8_t* data) {
    // Rows a b u, c d v, x y w: shown x = a x + c y, shown y = b x + d y.
    std::array<std::int32_t, 9> matrix{};
    std::memcpy(matrix.data(), data, sizeof matrix);
    const Orientation turned{signOf(matrix[0]), signOf(matrix[3]), signOf(matrix[1]),
                             signOf(matrix[4])};
    const bool straight = turned.xy == 0 && turned.yx == 0 && turned.xx != 0 && turned.yy != 0;
    const bool sideways = turned.xx == 0 && turned.yy == 0 && turned.xy != 0 && turned.yx != 0;
    return straight || sideways ? turned : Orientation{};
}

Orientation orientationFromExif(int value) {
    static constexpr std::array<Orientation, 8> turns{{{1, 0, 0, 1},
                                                       {-1, 0, 0, 1},
                                                       {-1, 0, 0, -1},
                                                       {1, 0, 0, -1},
                                                       {0, 1, 1, 0},
                                                       {0, -1, 1, 0},
                                                       {0, -1, -1, 0},
                                                       {0, 1, -1, 0}}};
    return value >= 1 && value <= 8 ? turns[static_cast<std::size_t>(value - 1)] : Orientation{};
}

Orientation orientation(const AVStream& stream) {
    const auto* matrix = av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr);
    return matrix == nullptr ? Orientation{} : orientationFromMatrix(matrix);
}

std::shared_ptr<PixelBuffer> turnedUpright(const PixelBuffer& stored, Orientation turn) {
    const int width = turn.swapsSides() ? stored.height() : stored.width();
    const int height = turn.swapsSides() ? stored.width() : stored.height();
    auto upright = PixelBuffer::allocate(PixelFormat::bgra, width, height);
    // Negative directions count from the far edge.
    const int originX = turn.xx < 0 || turn.xy < 0 ? width - 1 : 0;
    const int originY = turn.yx < 0 || turn.yy < 0 ? height - 1 : 0;
    for (int y = 0; y < stored.height(); ++y) {
        const std::uint8_t* from = stored.row(0, y);
        for (int x = 0; x < stored.width(); ++x, from += 4) {
            const int toX = originX + turn.xx * x + turn.xy * y;
            const int toY = originY + turn.yx * x + turn.yy * y;
            std::memcpy(upright->mutableRow(0, toY) + std::ptrdiff_t{toX} * 4, from, 4);
        }
    }
    return upright;
}

} // namespace vantro::media::av
