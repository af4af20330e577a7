#include "capture/CapturePlatform.h"

#include <condition_variable>
#include <mutex>
#include <utility>

namespace vantro::capture {
namespace {

TargetResult lookUp(CapturePlatform& platform, const RecordingRequest& request) {
    const auto content = platform.shareableContent();
    if (!content)
        return std::unexpected(
            model::VantroError(model::VantroError::Kind::captureStartFailed, content.error()));
    try {
        return resolveTarget(request, *content);
    } catch (const model::VantroError& error) {
        return std::unexpected(error);
    }
}

} // namespace

std::unique_ptr<TargetQuestion> CapturePlatform::findTarget(const RecordingRequest& request,
                                                            TargetAnswer answer) {
    const auto told = std::move(answer);
    told(lookUp(*this, request));
    return nullptr;
}

std::expected<std::unique_ptr<SoundSource>, std::string>
CapturePlatform::makeSoundSource(SoundKind kind) {
    const PlatformAbilities able = abilities();
    return std::unexpected((kind == SoundKind::system ? able.systemSound : able.microphone).whyNot);
}

std::optional<RecordingTarget>
awaitTarget(CapturePlatform& platform, const RecordingRequest& request, std::stop_token cancelled) {
    std::mutex mutex;
    std::condition_variable_any answered;
    std::optional<TargetResult> result; // guarded by the mutex
    {
        // Taken back before the mutex goes.
        const auto question = platform.findTarget(request, [&](TargetResult found) {
            const std::lock_guard lock(mutex);
            result = std::move(found);
            answered.notify_all();
        });
        std::unique_lock lock(mutex);
        answered.wait(lock, std::move(cancelled), [&] { return result.has_value(); });
    }
    if (!result)
        return {};
    if (!*result)
        throw model::VantroError(result->error());
    return **result;
}

} // namespace vantro::capture
