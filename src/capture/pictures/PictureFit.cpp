#include "capture/pictures/PictureFit.h"

#include <algorithm>
#include <cmath>

namespace vantro::capture::pictures {
namespace {

constexpr int channels = 4;

// Sizes are counted in whole points of a few pixels each and rounded to even: the first picture may
// be larger than the movie by less than this. Cutting that off beats scaling the whole picture.
constexpr int mostCutOff = 10; // pixels

/// The source samples that make up one destination sample.
struct Taps {
    int first = 0;
    std::vector<float> weights; // their sum is 1
};

/// A box as wide as the destination sample, but at least one source sample, which then blends two.
std::vector<Taps> tapsFor(int sourceSize, int size) {
    const double ratio = static_cast<double>(sourceSize) / size;
    const double half = std::max(ratio, 1.0) / 2;
    std::vector<Taps> all(static_cast<std::size_t>(size));
    for (int index = 0; index < size; ++index) {
        const double centre = (index + 0.5) * ratio;
        const double start = std::max(centre - half, 0.0);
        const double end = std::min(centre + half, static_cast<double>(sourceSize));
        Taps& taps = all[static_cast<std::size_t>(index)];
        taps.first = std::min(static_cast<int>(start), sourceSize - 1);
        for (int sample = taps.first; sample < end && sample < sourceSize; ++sample) {
            const double covered = std::min(end, sample + 1.0) - std::max(start, 1.0 * sample);
            taps.weights.push_back(static_cast<float>(covered / (end - start)));
        }
    }
    return all;
}

} // namespace

void scalePicture(const PictureView& source, std::uint8_t* destination, std::ptrdiff_t stride,
                  int width, int height) {
    const auto columns = tapsFor(source.width, width);
    const auto rows = tapsFor(source.height, height);
    std::vector<float> blended(static_cast<std::size_t>(source.width) * channels);
    for (const Taps& row : rows) {
        std::ranges::fill(blended, 0.0F);
        for (std::size_t tap = 0; tap < row.weights.size(); ++tap) {
            const auto* samples = source.pixels + (row.first + std::ptrdiff_t(tap)) * source.stride;
            for (std::size_t index = 0; index < blended.size(); ++index)
                blended[index] += row.weights[tap] * static_cast<float>(samples[index]);
        }
        std::uint8_t* pixel = destination;
        for (const Taps& column : columns) {
            float sums[channels]{};
            const float* sample = blended.data() + std::ptrdiff_t{channels} * column.first;
            for (const float weight : column.weights)
                for (float& sum : sums)
                    sum += weight * *sample++;
            for (const float sum : sums)                          // from 0 to 255
                *pixel++ = static_cast<std::uint8_t>(sum + 0.5F); // NOLINT(*-incorrect-roundings)
        }
        destination += stride;
    }
}

PictureFit::PictureFit(int width, int height) : m_width(width), m_height(height) {}

PictureView PictureFit::fit(const PictureView& source, const TileMap& sourceChanged,
                            TileMap& changed) {
    const bool isNewSize = source.width != m_sourceWidth || source.height != m_sourceHeight;
    m_sourceWidth = source.width;
    m_sourceHeight = source.height;
    if (isNewSize)
        changed.addAll();
    if (isRightSize(source)) {
        sourceChanged.forEachRun([&](media::color::PixelRect run) { changed.add(run); });
        return source;
    }
    if (!sourceChanged.isEmpty())
        changed.addAll();
    return scaled(source);
}

bool PictureFit::isRightSize(const PictureView& source) {
    const auto isNear = [](int length, int wanted) {
        return length >= wanted && length < wanted + mostCutOff;
    };
    if (m_rightWidth == 0 && isNear(source.width, m_width) && isNear(source.height, m_height)) {
        m_rightWidth = source.width;
        m_rightHeight = source.height;
    }
    return source.width == m_rightWidth && source.height == m_rightHeight;
}

Fitting fitting(int sourceWidth, int sourceHeight, int width, int height) {
    const double scale = std::min(static_cast<double>(width) / sourceWidth,
                                  static_cast<double>(height) / sourceHeight);
    const auto fitted = [scale](int length, int limit) {
        return std::clamp(static_cast<int>(std::lround(length * scale)), 1, limit);
    };
    Fitting place{.width = fitted(sourceWidth, width), .height = fitted(sourceHeight, height)};
    place.x = (width - place.width) / 2;
    place.y = (height - place.height) / 2;
    return place;
}

PictureView PictureFit::scaled(const PictureView& source) {
    const Fitting place = fitting(source.width, source.height, m_width, m_height);
    const std::ptrdiff_t stride = std::ptrdiff_t{channels} * m_width;
    m_pixels.assign(static_cast<std::size_t>(stride * m_height), 0);
    auto* corner = m_pixels.data() + place.y * stride + std::ptrdiff_t{channels} * place.x;
    scalePicture(source, corner, stride, place.width, place.height);
    return {.pixels = m_pixels.data(), .stride = stride, .width = m_width, .height = m_height};
}

} // namespace vantro::capture::pictures
