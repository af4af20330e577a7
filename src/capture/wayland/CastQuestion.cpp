#include "capture/wayland/CastQuestion.h"

#include "base/Log.h"
#include "base/SerialQueue.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantro::capture::wayland {
namespace {

// Whatever the screen does, desktops send a picture when a stream begins or when reminded of it.
constexpr base::HostDuration longestWaitForPicture = std::chrono::seconds(2);

/// Whole pixels a point, at least one. What has no size in points is taken for unscaled.
double wholeScale(const PortalStream& source, pipewire::Size pixels) {
    const double scale = source.size ? pixels.width / source.size->width : 1;
    return std::isfinite(scale) ? std::clamp(std::floor(scale), 1.0, 8.0) : 1;
}

RecordingTarget targetOf(const PortalStream& source, pipewire::Size pixels) {
    RecordingTarget target;
    target.mode = source.mode;
    const double scale = wholeScale(source, pixels);
    const model::Point corner = source.position.value_or(model::Point());
    target.captureRect = {.x = corner.x,
                          .y = corner.y,
                          .width = pixels.width / scale,
                          .height = pixels.height / scale};
    target.display = {.displayID = 0,
                      .name = source.id,
                      .frame = target.captureRect,
                      .backingScaleFactor = scale,
                      .isMain = true};
    target.width = pixels.width & ~1;
    target.height = pixels.height & ~1;
    return target;
}

ChosenSource chosenSource(const PortalStream& source, pipewire::Size pixels) {
    return {.id = source.id,
            .position = source.position,
            .size = source.size,
            .width = pixels.width,
            .height = pixels.height};
}

PortalRefusal failure(const std::string& reason) {
    return {.kind = PortalRefusal::Kind::failed, .reason = reason};
}

} // namespace

CastQuestion::CastQuestion(RecordingRequest request, PointerWay pointer, RestoreTokens tokens,
                           Answer answer)
    : m_request(std::move(request))
    , m_pointer(pointer)
    , m_tokens(std::move(tokens))
    , m_answer(std::move(answer))
    , m_thread([this](const std::stop_token& cancelled) { run(cancelled); }) {}

void CastQuestion::run(const std::stop_token& cancelled) {
    base::setThreadName("com.vantro.asking");
    Picked picked = std::unexpected(failure({}));
    try {
        auto remembered = m_tokens.take(m_request.mode);
        if (m_request.chooseAgain)
            remembered.reset();
        picked = pick(remembered, cancelled);
    } catch (const std::exception& error) {
        picked = std::unexpected(failure(error.what()));
    }
    if (cancelled.stop_requested())
        return;
    if (picked)
        answerWith(*picked);
    else if (picked.error().kind == PortalRefusal::Kind::takenBack)
        m_answer(std::nullopt, nullptr);
    else
        m_answer(std::unexpected(model::VantroError(model::VantroError::Kind::captureStartFailed,
                                                    picked.error().reason)),
                 nullptr);
}

void CastQuestion::answerWith(const std::shared_ptr<Cast>& cast) {
    auto target = targetOf(cast->source(), m_size);
    // Without an area the user selects one on the picture.
    const bool hasArea =
        m_request.mode == model::CaptureMode::area && m_request.area != model::Rect{};
    try {
        if (hasArea)
            target = cropped(std::move(target), m_request.area);
    } catch (const model::VantroError& error) {
        return m_answer(std::unexpected(error), nullptr);
    }
    m_answer(std::move(target), cast);
}

/// What a desktop restores may be something else than was chosen, another monitor say; then the
/// user is asked.
CastQuestion::Picked CastQuestion::pick(const std::optional<RememberedChoice>& remembered,
                                        const std::stop_token& cancelled) {
    std::string token = remembered ? remembered->token : "";
    auto picked = negotiate(token, cancelled);
    if (!picked)
        return picked;
    const auto source = chosenSource((*picked)->source(), m_size);
    if (remembered && !isSame(remembered->source, source)) {
        base::logInfo("The desktop has restored something else than was chosen: asking again");
        m_tokens.take(m_request.mode);
        picked->reset(); // its session ends before the next one begins
        return pick({}, cancelled);
    }
    m_tokens.keep(m_request.mode, {token, source});
    return picked;
}

/// Replaces the token by the next one. Which screen it is shows only once it is there; where the
/// compositor cannot tell of the pointer on it, the token has the same one come again.
CastQuestion::Picked CastQuestion::negotiate(std::string& token, const std::stop_token& cancelled) {
    const bool isRestored = !token.empty();
    auto cast = open(m_pointer.asked, token, isRestored, cancelled);
    if (!cast || !m_pointer.instead || (*cast)->takePointerFromCompositor(m_size) ||
        m_pointer.instead == m_pointer.asked)
        return cast;
    base::logInfo("The compositor does not tell of the pointer on the screen that was chosen");
    cast->reset(); // its session ends before the next one begins
    return open(*m_pointer.instead, token, isRestored && !token.empty(), cancelled);
}

CastQuestion::Picked CastQuestion::open(PortalCursor cursor, std::string& token, bool isRestored,
                                        const std::stop_token& cancelled) {
    auto session = std::make_unique<PortalSession>();
    auto grant =
        session->ask({.mode = m_request.mode, .cursor = cursor, .restoreToken = token}, cancelled);
    if (!grant)
        return std::unexpected(grant.error());
    token = grant->restoreToken;
    // At once: the one before is used up, and what was chosen may never show a picture.
    m_tokens.keep(m_request.mode, {token, chosenSource(grant->stream, {})});
    grant->stream.isRestored = isRestored;
    auto cast = std::make_shared<Cast>(std::move(session), std::move(*grant));
    const auto size = cast->awaitPicture(longestWaitForPicture, cancelled);
    if (!size && size.error().empty())
        return std::unexpected(PortalRefusal{PortalRefusal::Kind::takenBack, {}});
    if (!size)
        return std::unexpected(failure(size.error()));
    m_size = size->value_or(pipewire::Size());
    if (m_size.width < 2 || m_size.height < 2)
        return std::unexpected(failure("The desktop sent no picture"));
    return cast;
}

} // namespace vantro::capture::wayland
