#include "capture/wayland/WaylandCapturePlatform.h"

#include "base/Guarded.h"
#include "capture/wayland/CastQuestion.h"
#include "capture/wayland/clicks/ClickAccess.h"
#include "capture/wayland/clicks/PlacedPresses.h"
#include "capture/wayland/portal/PortalWatch.h"

#include <utility>

namespace vantro::capture::wayland {
namespace {

// A portal may have to be started first. The window waits for this once, at its start.
constexpr base::HostDuration longestFirstAnswer = std::chrono::seconds(5);

// Later than this a window is gone, or was never in the picture.
constexpr base::HostDuration longestFade = std::chrono::milliseconds(500);

constexpr const char* windowsDiffer =
    "The pointer is recorded apart from the picture, but as part of it where a single window is "
    "recorded.";
constexpr const char* desktopAsks =
    "The desktop itself asks what to record, in a dialog of its own, when a recording begins.";

/// A cast as the stream of a recording; it ends with the stop.
class CastStream final : public ScreenStream {
  public:
    CastStream(std::shared_ptr<Cast> cast, RecordingTarget target)
        : m_cast(std::move(cast)), m_target(std::move(target)) {}
    ~CastStream() override { stopCapture(); }

    void startCapture(ScreenStreamOutput& output) override { m_cast->record(m_target, output); }
    void stopCapture() override {
        if (m_cast)
            m_cast->stopRecording();
        m_cast.reset();
    }

  private:
    std::shared_ptr<Cast> m_cast;
    const RecordingTarget m_target;
};

/// The pointer that comes beside a cast's pictures, and the presses that a reader tells of. Without
/// a cast there are only presses.
class CastPointer final : public PointerSource {
  public:
    CastPointer(std::shared_ptr<Cast> cast, std::unique_ptr<PressReader> presses,
                const RecordingTarget& target)
        : m_cast(std::move(cast))
        , m_reader(std::move(presses))
        , m_scale{.width = target.width,
                  .height = target.height,
                  .pixelsPerPoint = target.display.backingScaleFactor} {}
    ~CastPointer() override { stop(); }

    void start(PointerOutput& output) override {
        m_presses.emplace(std::move(m_reader), output, OwnPresses::ofThisProgram());
        if (m_cast)
            m_cast->followPointer(*m_presses, m_scale);
    }
    void stop() override {
        if (m_cast)
            m_cast->leavePointer();
        m_cast.reset();
        m_presses.reset();
    }

  private:
    std::shared_ptr<Cast> m_cast;
    std::unique_ptr<PressReader> m_reader; // until the start
    std::optional<PlacedPresses> m_presses;
    const PointerScale m_scale;
};

class WaylandCapturePlatform final : public CapturePlatform {
  public:
    WaylandCapturePlatform(RestoreTokens tokens, std::shared_ptr<ClickAccess> clicks)
        : m_portal(longestFirstAnswer), m_tokens(std::move(tokens)), m_clicks(std::move(clicks)) {}

    PlatformAbilities abilities() override;
    std::expected<std::vector<ShareableDisplay>, std::string> displays() override {
        return std::unexpected(desktopAsks);
    }
    std::expected<ShareableContent, std::string> shareableContent(WindowIcons) override {
        return std::unexpected(desktopAsks);
    }
    bool isConnected() override { return true; }
    std::unique_ptr<TargetQuestion> findTarget(const RecordingRequest& request,
                                               TargetAnswer answer) override;
    void settleClicks(const std::stop_token& cancelled) override { m_clicks->ask(cancelled); }
    std::optional<ChosenContent> chosen() override;
    bool isShared() override;
    void awaitHiddenWindows() override;
    std::expected<std::unique_ptr<ScreenStream>, std::string>
    makeScreenStream(const RecordingTarget& target) override;
    std::expected<std::unique_ptr<PointerSource>, std::string>
    makePointerSource(const RecordingTarget& target) override;

  private:
    PointerWay pointerWay(const PortalOffer& offer, model::CaptureMode mode);
    Ability pointerAbility(const PortalOffer& offer);
    std::shared_ptr<Cast> cast() const;

    PortalWatch m_portal;
    RestoreTokens m_tokens;
    const std::shared_ptr<ClickAccess> m_clicks;
    base::Guarded<std::shared_ptr<Cast>> m_picked; // until a stream takes it over
    std::weak_ptr<Cast> m_streamed;
    std::optional<bool> m_hasCursorSessions; // once it matters
};

/// What has been chosen, or is being recorded; null otherwise.
std::shared_ptr<Cast> WaylandCapturePlatform::cast() const {
    auto picked = m_picked.with([](const auto& each) { return each; });
    return picked ? picked : m_streamed.lock();
}

PointerWay WaylandCapturePlatform::pointerWay(const PortalOffer& offer, model::CaptureMode mode) {
    if (offer.pointerApart)
        return {.asked = PortalCursor::apart, .instead = {}};
    const auto alone = offer.pointerInPicture ? PortalCursor::inPicture : PortalCursor::hidden;
    if (!offer.pointerHidden || mode == model::CaptureMode::window)
        return {.asked = alone, .instead = {}};
    if (!m_hasCursorSessions)
        m_hasCursorSessions = CursorSession::isOffered();
    if (!*m_hasCursorSessions)
        return {.asked = alone, .instead = {}};
    return {.asked = PortalCursor::hidden, .instead = alone};
}

/// Of what has been chosen; before that, of what the desktop promises.
Ability WaylandCapturePlatform::pointerAbility(const PortalOffer& offer) {
    const auto way = pointerWay(offer, model::CaptureMode::screen);
    auto cursor = way.asked;
    if (const auto current = cast()) {
        if (current->tellsPointer())
            return {};
        cursor = current->source().cursor;
    } else if (way.instead) {
        return {.whyNot = {}, .remark = offer.windows ? windowsDiffer : ""};
    }
    if (cursor == PortalCursor::apart)
        return {};
    return {cursor == PortalCursor::inPicture
                ? "The pointer is recorded as part of the picture: this desktop does not tell "
                  "where it is."
                : "The pointer is not recorded: this desktop does not tell where it is."};
}

PlatformAbilities WaylandCapturePlatform::abilities() {
    const PortalOffer offer = m_portal.offer();
    if (!offer.whyNot.empty())
        return noAbilities("Nothing can be recorded: " + offer.whyNot + ".");
    PlatformAbilities able;
    if (!offer.screens)
        able.screens.whyNot = "This desktop does not share whole screens.";
    if (!offer.windows)
        able.windows.whyNot = "This desktop does not share single windows.";
    able.areas = able.screens; // chosen on a screen's picture
    able.listsContent.whyNot = desktopAsks;
    able.ownWindowsLeftOut.whyNot =
        "On this desktop Vantro's own windows are hidden while recording.";
    able.pointer = pointerAbility(offer);
    able.clicks = m_clicks->ability();
    if (able.clicks.isAvailable() && able.clicks.remark.empty() && !able.pointer.isAvailable())
        able.clicks.remark = "Clicks are recorded without their places.";
    return able;
}

std::unique_ptr<TargetQuestion> WaylandCapturePlatform::findTarget(const RecordingRequest& request,
                                                                   TargetAnswer answer) {
    m_picked.with([](auto& picked) { return std::exchange(picked, nullptr); });
    auto able = abilities();
    if (request.displayID.value_or(0) != 0 || request.windowID || !request.windowTitle.empty())
        able.screens = able.windows = able.areas = able.listsContent;
    const Ability& wanted = request.mode == model::CaptureMode::screen   ? able.screens
                            : request.mode == model::CaptureMode::window ? able.windows
                                                                         : able.areas;
    if (!wanted.isAvailable()) {
        answer(std::unexpected(
            model::VantroError(model::VantroError::Kind::captureStartFailed, wanted.whyNot)));
        return nullptr;
    }
    return std::make_unique<CastQuestion>(
        request, pointerWay(m_portal.offer(), request.mode), m_tokens,
        [this, told = std::move(answer)](TargetResult result, std::shared_ptr<Cast> cast) {
            m_picked.with([&](auto& picked) { picked.swap(cast); });
            told(std::move(result));
        });
}

std::optional<ChosenContent> WaylandCapturePlatform::chosen() {
    const auto cast = m_picked.with([](const auto& picked) { return picked; });
    if (!cast)
        return {};
    const PortalStream& source = cast->source();
    ChosenContent content{.isRestored = source.isRestored,
                          .name = source.id,
                          .place = {},
                          .picture = cast->picture()};
    if (source.position)
        content.place = {.x = source.position->x,
                         .y = source.position->y,
                         .width = source.size ? source.size->width : 0,
                         .height = source.size ? source.size->height : 0};
    return content;
}

bool WaylandCapturePlatform::isShared() {
    const auto cast = m_picked.with([](const auto& picked) { return picked; });
    return !cast || cast->failure() != Cast::Failure();
}

void WaylandCapturePlatform::awaitHiddenWindows() {
    if (const auto cast = m_picked.with([](const auto& picked) { return picked; }))
        cast->awaitChange(longestFade);
}

std::expected<std::unique_ptr<ScreenStream>, std::string>
WaylandCapturePlatform::makeScreenStream(const RecordingTarget& target) {
    auto cast = m_picked.with([](auto& picked) { return std::exchange(picked, nullptr); });
    if (!cast)
        return std::unexpected("nothing has been chosen in the desktop's dialog");
    if (const auto failure = cast->failure())
        return std::unexpected(*failure);
    if (target.crop)
        cast->crop(*target.crop);
    m_streamed = cast;
    return std::make_unique<CastStream>(std::move(cast), target);
}

std::expected<std::unique_ptr<PointerSource>, std::string>
WaylandCapturePlatform::makePointerSource(const RecordingTarget& target) {
    auto cast = m_streamed.lock();
    if (cast && !cast->tellsPointer())
        cast.reset();
    return std::make_unique<CastPointer>(std::move(cast), m_clicks->open(), target);
}

} // namespace

std::expected<std::unique_ptr<CapturePlatform>, std::string>
connectPortal(RestoreTokens tokens, std::shared_ptr<ClickAccess> clicks) {
    try {
        return std::make_unique<WaylandCapturePlatform>(
            std::move(tokens), clicks ? std::move(clicks) : ClickAccess::ofThisRun());
    } catch (const std::exception& error) {
        return std::unexpected(error.what());
    }
}

} // namespace vantro::capture::wayland
