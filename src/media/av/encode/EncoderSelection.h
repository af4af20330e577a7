#pragma once

#include "base/Guarded.h"
#include "media/av/encode/CodecSession.h"
#include "media/av/encode/EncoderSetup.h"
#include "media/values/VideoEncoderChoice.h"

#include <functional>
#include <map>
#include <string>
#include <tuple>

namespace vantro::media::av {

/// Opens the encoder that the settings ask for. The automatic choice takes the first hardware
/// encoder that passes a trial with the movie's size, else libx264, and leaves a line in the log;
/// a live source always gets libx264. Throws MediaError with the reason, for `automatic` only when
/// libx264 cannot be had either. Any thread.
CodecSession openSelectedEncoder(const VideoSettings& settings);

/// What became of a trial: why the encoder cannot be used, or nothing; and whether the next trial
/// would say the same. An encoder that could not be opened may only have been busy.
struct Verdict {
    std::string problem;
    bool isLasting = true;
};

/// Remembers lasting verdicts, for each encoder, size and rate. Any thread.
class Verdicts {
  public:
    /// The problem as it is known, else as `tryIt` finds it.
    std::string problem(VideoEncoderChoice hardware, const VideoSettings& settings,
                        const std::function<Verdict()>& tryIt);

  private:
    using Case = std::tuple<VideoEncoderChoice, int, int, double>;
    base::Guarded<std::map<Case, std::string>> m_known;
};

/// What keeps this machine from encoding such pictures with nvenc, qsv or vaapi; empty where
/// nothing does. Any thread.
std::string hardwareProblem(VideoEncoderChoice hardware, const VideoSettings& settings);

} // namespace vantro::media::av
