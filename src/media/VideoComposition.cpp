#include "media/VideoComposition.h"

#include "base/Fatal.h"
#include "media/values/Fraction.h"

#include <limits>

namespace vantro::media {

std::int64_t VideoComposition::frameCount(MediaTime duration) const {
    if (duration <= MediaTime{})
        return 0;
    const WideInteger count = (Fraction(duration) / Fraction(frameDuration)).ceiling();
    base::require(count <= std::numeric_limits<std::int64_t>::max(), "too many frames");
    return static_cast<std::int64_t>(count);
}

} // namespace vantro::media
