#include "window/devices/CameraFeed.h"

#include "media/color/AveragedRows.h"
#include "media/color/ColorConversion.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vantro::window::devices {
namespace {

using Pixels = std::shared_ptr<const media::PixelBuffer>;

// About 15 a second: enough for a face that is put into the middle.
constexpr auto shortestInterval = std::chrono::milliseconds(60);

Pixels fitted(const media::PixelBuffer& picture, QSize area) {
    auto whole =
        media::PixelBuffer::allocate(media::PixelFormat::bgra, picture.width(), picture.height());
    media::color::convertI420ToBgra(picture, *whole);
    const auto size = QSize(picture.width(), picture.height())
                          .scaled(area, Qt::KeepAspectRatio)
                          .expandedTo({1, 1});
    if (size.width() >= picture.width())
        return whole;
    auto small =
        media::PixelBuffer::allocate(media::PixelFormat::bgra, size.width(), size.height());
    media::color::scalePicture(whole->plane(0), whole->stride(0), whole->width(), whole->height(),
                               small->mutableRow(0, 0), small->stride(0), size.width(),
                               size.height());
    return small;
}

} // namespace

CameraFeed::CameraFeed(ui::PictureStream& stream, QSize area,
                       std::function<void(const std::string&)> problem)
    : m_target({.stream = &stream, .problem = std::move(problem), .area = area}) {}

CameraFeed::~CameraFeed() = default;

void CameraFeed::open(const std::function<Camera()>& openCamera) {
    auto camera = openCamera();
    if (!camera)
        return tell(camera.error().reason);
    m_camera = std::move(*camera);
    try {
        m_camera->start(*this);
    } catch (const std::exception& failure) {
        m_camera.reset();
        tell(failure.what());
    }
}

void CameraFeed::close() {
    m_camera.reset();
}

void CameraFeed::setArea(QSize area) {
    m_target.with([&](Target& target) { target.area = area; });
}

void CameraFeed::detach() {
    m_target.with([](Target& target) {
        target.stream = nullptr;
        target.problem = {};
    });
}

void CameraFeed::picture(const capture::CameraPicture& picture) {
    const auto area = m_target.with([](const Target& target) { return target.area; });
    if (area.isEmpty() || picture.time - m_shownAt < shortestInterval)
        return;
    m_shownAt = picture.time;
    const auto pixels = fitted(*picture.pixels, area);
    // Delivering only keeps the picture and posts an event, so that it may happen under the lock.
    m_target.with([&](Target& target) {
        if (target.stream != nullptr)
            target.stream->deliver({.pixels = pixels, .time = {}, .due = picture.time});
    });
}

void CameraFeed::cameraMissing(const std::string& reason) {
    tell(reason);
}

void CameraFeed::cameraReturned() {
    tell({});
}

void CameraFeed::tell(const std::string& problem) {
    const auto listener = m_target.with([](const Target& target) { return target.problem; });
    if (listener)
        listener(problem);
}

} // namespace vantro::window::devices
