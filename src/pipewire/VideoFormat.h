#pragma once

#include "media/values/RawPicture.h"

#include <cstdint>
#include <optional>
#include <vector>

/// What cameras and screen casts over PipeWire share.
namespace vantro::pipewire {

using Layout = media::RawLayout;

/// In pixels.
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

/// Pictures a second, as a fraction; 0/1: as they come.
struct Rate {
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 1;
    double perSecond() const { return denominator == 0 ? 0 : double(numerator) / denominator; }
    bool operator==(const Rate&) const = default;
};

/// From `least` to `most`; `usual` is preferred. All three are the same for what is fixed.
template <typename Value>
struct Range {
    Value usual;
    Value least = usual;
    Value most = usual;
    bool isFixed() const { return least == most; }
    bool operator==(const Range&) const = default;
};

/// What somebody gives or takes. A plain record.
struct FormatOffer {
    std::vector<Layout> layouts; ///< the best first; mjpeg stands alone
    Range<Size> size;
    Range<Rate> rate;
    std::optional<Range<Rate>> highestRate; ///< of what comes at no fixed rate
    bool operator==(const FormatOffer&) const = default;
};

/// What two sides have agreed upon. A plain record.
struct VideoFormat {
    Layout layout{};
    Size size;
    Rate rate;
    Rate highestRate;
    bool operator==(const VideoFormat&) const = default;
};

} // namespace vantro::pipewire
