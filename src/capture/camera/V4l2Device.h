#pragma once

#include "base/FileDescriptor.h"
#include "base/HostClock.h"
#include "capture/camera/CameraFormat.h"

#include <cstddef>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vantro::capture::camera {

/// One of the system's video devices, opened by its file. One thread at a time.
class V4l2Device {
  public:
    /// What has arrived; the bytes are the device's, for the time of the call.
    struct Picture {
        media::RawPicture raw;
        std::optional<base::HostTime> time; ///< by the device
    };
    enum class Arrival { picture, nothing, gone };

    /// Nothing where it is no camera that we can read. The error is the system's.
    static std::expected<std::unique_ptr<V4l2Device>, int> open(const std::string& path);
    /// The files that may be cameras, in order.
    static std::vector<std::string> paths();
    ~V4l2Device();
    V4l2Device(const V4l2Device&) = delete;
    V4l2Device& operator=(const V4l2Device&) = delete;

    const std::string& description() const { return m_description; }
    std::vector<CameraFormat> formats() const;
    /// Begins to stream in that format, or what the device makes of it. The error is the system's.
    std::expected<CameraFormat, int> start(const CameraFormat& format);
    /// Waits at most so long for a picture and hands it to `take`, unless it is damaged.
    Arrival next(base::HostDuration longestWait, const std::function<void(const Picture&)>& take);

  private:
    /// The device's memory, mapped.
    struct Mapping {
        std::byte* bytes = nullptr;
        std::size_t size = 0;
        Mapping(int fd, std::size_t length, std::int64_t offset);
        Mapping(Mapping&& other) noexcept;
        Mapping& operator=(Mapping&&) = delete;
        ~Mapping();
    };

    V4l2Device(base::FileDescriptor file, std::string description);
    int call(unsigned long request, void* argument) const;
    void addSizes(std::uint32_t fourcc, media::RawLayout layout,
                  std::vector<CameraFormat>& formats) const;
    void addRates(std::uint32_t fourcc, CameraFormat format,
                  std::vector<CameraFormat>& formats) const;
    int mapBuffers();

    const base::FileDescriptor m_file;
    const std::string m_description;
    CameraFormat m_format;
    int m_stride = 0;
    std::vector<Mapping> m_buffers;
};

} // namespace vantro::capture::camera
