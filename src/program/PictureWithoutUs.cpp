#include "program/PictureWithoutUs.h"

#include "app/Desktop.h"
#include "base/Log.h"
#include "media/color/ColorConversion.h"

#include <future>
#include <utility>

namespace vantro::program {
namespace {

/// Takes the first picture of a stream.
class FirstPicture : public capture::ScreenStreamOutput {
  public:
    /// Null when none comes soon. Once.
    std::shared_ptr<const media::PixelBuffer> wait() {
        auto picture = m_picture.get_future();
        return picture.wait_for(std::chrono::milliseconds(500)) == std::future_status::ready
                   ? picture.get()
                   : nullptr;
    }

  private:
    capture::SampleDisposition screenSample(const capture::ScreenSample& sample) override {
        if (sample.pixels != nullptr)
            set(sample.pixels);
        return capture::SampleDisposition::taken;
    }
    void streamStopped(const std::string&) override { set(nullptr); }

    void set(std::shared_ptr<const media::PixelBuffer> picture) {
        if (!std::exchange(m_isSet, true))
            m_picture.set_value(std::move(picture));
    }

    bool m_isSet = false; ///< on the stream's thread
    std::promise<std::shared_ptr<const media::PixelBuffer>> m_picture;
};

QImage imageOf(const media::PixelBuffer& pixels) {
    QImage image(pixels.width(), pixels.height(), QImage::Format_RGB32);
    media::color::i420RegionToBgra(pixels, {0, 0, pixels.width(), pixels.height()}, image.bits(),
                                   image.bytesPerLine());
    return image;
}

} // namespace

QImage pictureWithoutUs(std::uint32_t displayID) {
    try {
        FirstPicture first;
        const auto platform = app::connectDesktop();
        capture::RecordingRequest request;
        request.mode = model::CaptureMode::screen;
        request.displayID = displayID;
        const auto stream = platform->makeScreenStream(awaitTarget(*platform, request).value());
        if (!stream)
            throw std::runtime_error(stream.error());
        (*stream)->startCapture(first);
        const auto pixels = first.wait();
        (*stream)->stopCapture();
        return pixels != nullptr ? imageOf(*pixels) : QImage();
    } catch (const std::exception& error) {
        base::logInfo("an area is selected with our own window in sight: {}", error.what());
        return {};
    }
}

} // namespace vantro::program
