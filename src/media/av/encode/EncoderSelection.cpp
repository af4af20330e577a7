#include "media/av/encode/EncoderSelection.h"

#include "base/Log.h"
#include "media/av/encode/EncoderTrial.h"
#include "media/av/encode/HardwareEncoder.h"
#include "media/av/encode/SoftwareEncoder.h"
#include "media/values/MediaError.h"

#include <array>
#include <optional>
#include <vector>

#include <fmt/ranges.h>

namespace vantro::media::av {
namespace {

// At 20 Mbit/s what these make cannot be told from libx264's work by eye, it is there several times
// sooner, and the processor is free to compose. NVENC has the best rate control; on Intel qsv has a
// better one than vaapi, which is for all others.
constexpr std::array byPreference{VideoEncoderChoice::nvenc, VideoEncoderChoice::qsv,
                                  VideoEncoderChoice::vaapi};

Verdict tryHardware(VideoEncoderChoice hardware, const VideoSettings& settings) {
    if (auto missing = missingDevice(hardware); !missing.empty())
        return {missing};
    try {
        return {faultInTrial(openHardwareEncoder(hardware, settings), settings)};
    } catch (const MediaError& error) {
        return {error.what(), false};
    }
}

CodecSession openForced(const VideoSettings& settings) {
    const auto name = optionName(settings.encoder);
    const auto problem = hardwareProblem(settings.encoder, settings);
    if (!problem.empty())
        throw MediaError(fmt::format("The encoder {} cannot be used: {}", name, problem));
    return openHardwareEncoder(settings.encoder, settings);
}

CodecSession openAutomatic(const VideoSettings& settings) {
    std::vector<std::string> problems;
    for (const auto hardware : byPreference) {
        auto problem = hardwareProblem(hardware, settings);
        try {
            if (problem.empty())
                return openHardwareEncoder(hardware, settings);
        } catch (const MediaError& error) { // works, but not now: all its sessions may be in use
            problem = error.what();
        }
        problems.push_back(fmt::format("{}: {}", optionName(hardware), problem));
    }
    base::logInfo("Encoding with libx264 ({})", fmt::join(problems, "; "));
    return openSoftwareEncoder(settings);
}

} // namespace

std::string Verdicts::problem(VideoEncoderChoice hardware, const VideoSettings& settings,
                              const std::function<Verdict()>& tryIt) {
    const Case wanted{hardware, settings.width, settings.height, settings.expectedFrameRate};
    const auto answer = m_known.with([&](auto& answers) {
        const auto found = answers.find(wanted);
        return found == answers.end() ? std::optional<std::string>{} : found->second;
    });
    if (answer)
        return *answer;
    auto verdict = tryIt();
    if (verdict.isLasting)
        m_known.with([&](auto& answers) { answers.emplace(wanted, verdict.problem); });
    return verdict.problem;
}

std::string hardwareProblem(VideoEncoderChoice hardware, const VideoSettings& settings) {
    static Verdicts known;
    return known.problem(hardware, settings, [&] { return tryHardware(hardware, settings); });
}

CodecSession openSelectedEncoder(const VideoSettings& settings) {
    const bool isSmall = settings.quality == VideoQuality::small;
    if (isSmall && settings.encoder == VideoEncoderChoice::automatic)
        return openSoftwareEncoder(settings);
    if (settings.expectsRealTime || settings.encoder == VideoEncoderChoice::libx264)
        return openSoftwareEncoder(settings);
    return settings.encoder == VideoEncoderChoice::automatic ? openAutomatic(settings)
                                                             : openForced(settings);
}

} // namespace vantro::media::av
