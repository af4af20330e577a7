#include "capture/camera/V4l2Device.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <fmt/format.h>
#include <linux/videodev2.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mman.h>

namespace vantro::capture::camera {
namespace {

using media::RawLayout;

constexpr std::uint32_t bufferCount = 4;

constexpr std::array<std::pair<std::uint32_t, RawLayout>, 16> fourccs{{
    {V4L2_PIX_FMT_YUV420, RawLayout::i420},
    {V4L2_PIX_FMT_NV12, RawLayout::nv12},
    {V4L2_PIX_FMT_YUYV, RawLayout::yuyv},
    {V4L2_PIX_FMT_UYVY, RawLayout::uyvy},
    {V4L2_PIX_FMT_YVYU, RawLayout::yvyu},
    {V4L2_PIX_FMT_YVU420, RawLayout::yv12},
    {V4L2_PIX_FMT_NV21, RawLayout::nv21},
    {V4L2_PIX_FMT_GREY, RawLayout::gray},
    {V4L2_PIX_FMT_XBGR32, RawLayout::bgrx}, // by their bytes
    {V4L2_PIX_FMT_ABGR32, RawLayout::bgrx},
    {V4L2_PIX_FMT_BGR32, RawLayout::bgrx},
    {V4L2_PIX_FMT_XRGB32, RawLayout::xrgb},
    {V4L2_PIX_FMT_RGB24, RawLayout::rgb},
    {V4L2_PIX_FMT_BGR24, RawLayout::bgr},
    {V4L2_PIX_FMT_MJPEG, RawLayout::mjpeg},
    {V4L2_PIX_FMT_JPEG, RawLayout::mjpeg},
}};

std::optional<RawLayout> layoutOf(std::uint32_t fourcc) {
    const auto* found =
        std::ranges::find(fourccs, fourcc, [](const auto& each) { return each.first; });
    return found == fourccs.end() ? std::nullopt : std::optional(found->second);
}

double rateOf(const v4l2_fract& interval) {
    return interval.numerator == 0 ? 0 : double(interval.denominator) / interval.numerator;
}

std::optional<base::HostTime> timeOf(const v4l2_buffer& buffer) {
    if ((buffer.flags & V4L2_BUF_FLAG_TIMESTAMP_MASK) != V4L2_BUF_FLAG_TIMESTAMP_MONOTONIC)
        return {};
    return base::HostTime(std::chrono::seconds(buffer.timestamp.tv_sec) +
                          std::chrono::microseconds(buffer.timestamp.tv_usec));
}

} // namespace

V4l2Device::Mapping::Mapping(int fd, std::size_t length, std::int64_t offset) : size(length) {
    void* memory = ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, offset);
    bytes = memory == MAP_FAILED ? nullptr : static_cast<std::byte*>(memory);
}

V4l2Device::Mapping::Mapping(Mapping&& other) noexcept
    : bytes(std::exchange(other.bytes, nullptr)), size(other.size) {}

V4l2Device::Mapping::~Mapping() {
    if (bytes)
        ::munmap(bytes, size);
}

V4l2Device::V4l2Device(base::FileDescriptor file, std::string description)
    : m_file(std::move(file)), m_description(std::move(description)) {}

V4l2Device::~V4l2Device() {
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (!m_buffers.empty())
        call(VIDIOC_STREAMOFF, &type);
}

int V4l2Device::call(unsigned long request, void* argument) const {
    int result = 0;
    do
        result = ::ioctl(m_file.get(), request, argument);
    while (result < 0 && errno == EINTR);
    return result < 0 ? errno : 0;
}

std::vector<std::string> V4l2Device::paths() {
    std::vector<std::string> found;
    constexpr int most = 64;
    std::error_code none;
    for (int i = 0; i < most; ++i)
        if (auto path = fmt::format("/dev/video{}", i); std::filesystem::exists(path, none))
            found.push_back(std::move(path));
    return found;
}

std::expected<std::unique_ptr<V4l2Device>, int> V4l2Device::open(const std::string& path) {
    base::FileDescriptor file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!file)
        return std::unexpected(errno);
    v4l2_capability has{};
    if (::ioctl(file.get(), VIDIOC_QUERYCAP, &has) < 0)
        return std::unexpected(ENODEV);
    const auto abilities =
        (has.capabilities & V4L2_CAP_DEVICE_CAPS) != 0 ? has.device_caps : has.capabilities;
    constexpr std::uint32_t needed = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    if ((abilities & needed) != needed)
        return std::unexpected(ENODEV);
    const std::span card(reinterpret_cast<const char*>(has.card), sizeof has.card);
    std::unique_ptr<V4l2Device> device(
        new V4l2Device(std::move(file), std::string(card.begin(), std::ranges::find(card, '\0'))));
    if (device->formats().empty())
        return std::unexpected(ENODEV);
    return device;
}

std::vector<CameraFormat> V4l2Device::formats() const {
    std::vector<CameraFormat> formats;
    v4l2_fmtdesc each{};
    each.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    for (; call(VIDIOC_ENUM_FMT, &each) == 0; ++each.index)
        if (const auto layout = layoutOf(each.pixelformat))
            addSizes(each.pixelformat, *layout, formats);
    return formats;
}

void V4l2Device::addSizes(std::uint32_t fourcc, RawLayout layout,
                          std::vector<CameraFormat>& formats) const {
    CameraFormat format{.layout = layout};
    v4l2_frmsizeenum size{};
    size.pixel_format = fourcc;
    for (; call(VIDIOC_ENUM_FRAMESIZES, &size) == 0; ++size.index) {
        const bool isFixed = size.type == V4L2_FRMSIZE_TYPE_DISCRETE;
        const auto& range = size.stepwise;
        format.width = static_cast<int>(isFixed ? size.discrete.width : range.min_width);
        format.height = static_cast<int>(isFixed ? size.discrete.height : range.min_height);
        format.mostWidth = isFixed ? format.width : static_cast<int>(range.max_width);
        format.mostHeight = isFixed ? format.height : static_cast<int>(range.max_height);
        addRates(fourcc, format, formats);
        if (!isFixed)
            return;
    }
}

/// Of a range of sizes, those of the size that would be taken.
void V4l2Device::addRates(std::uint32_t fourcc, CameraFormat format,
                          std::vector<CameraFormat>& formats) const {
    const auto size = chooseFormat(std::span(&format, 1)).value_or(format);
    v4l2_frmivalenum interval{};
    interval.pixel_format = fourcc;
    interval.width = static_cast<std::uint32_t>(size.width);
    interval.height = static_cast<std::uint32_t>(size.height);
    bool hasRates = false;
    for (; call(VIDIOC_ENUM_FRAMEINTERVALS, &interval) == 0; ++interval.index) {
        const bool isFixed = interval.type == V4L2_FRMIVAL_TYPE_DISCRETE;
        format.rate = rateOf(isFixed ? interval.discrete : interval.stepwise.max);
        format.highestRate = isFixed ? format.rate : rateOf(interval.stepwise.min);
        formats.push_back(format);
        hasRates = true;
        if (!isFixed)
            break;
    }
    if (!hasRates) // it does not say
        formats.push_back(format);
}

std::expected<CameraFormat, int> V4l2Device::start(const CameraFormat& wanted) {
    const auto* fourcc =
        std::ranges::find(fourccs, wanted.layout, [](const auto& each) { return each.second; });
    // Several stand for one layout: the first one that is taken.
    v4l2_format format{};
    int error = EINVAL;
    for (; error != 0 && fourcc != fourccs.end(); ++fourcc) {
        if (fourcc->second != wanted.layout)
            continue;
        format = {};
        format.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        format.fmt.pix.width = static_cast<std::uint32_t>(wanted.width);
        format.fmt.pix.height = static_cast<std::uint32_t>(wanted.height);
        format.fmt.pix.pixelformat = fourcc->first;
        format.fmt.pix.field = V4L2_FIELD_NONE;
        error = call(VIDIOC_S_FMT, &format);
        if (error == 0 && layoutOf(format.fmt.pix.pixelformat) != wanted.layout)
            error = EINVAL; // the device has put another one in its place
    }
    if (error != 0)
        return std::unexpected(error);
    m_format = wanted;
    m_format.width = m_format.mostWidth = static_cast<int>(format.fmt.pix.width);
    m_format.height = m_format.mostHeight = static_cast<int>(format.fmt.pix.height);
    m_stride = static_cast<int>(format.fmt.pix.bytesperline);
    v4l2_streamparm rate{}; // not all devices let it be set
    rate.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    constexpr std::uint32_t thousand = 1000;
    rate.parm.capture.timeperframe = {
        thousand, static_cast<std::uint32_t>(std::lround(wanted.rate * thousand))};
    if (wanted.rate > 0)
        call(VIDIOC_S_PARM, &rate);
    error = mapBuffers();
    int type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    if (error == 0)
        error = call(VIDIOC_STREAMON, &type);
    return error == 0 ? std::expected<CameraFormat, int>(m_format) : std::unexpected(error);
}

int V4l2Device::mapBuffers() {
    v4l2_requestbuffers request{};
    request.count = bufferCount;
    request.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    request.memory = V4L2_MEMORY_MMAP;
    if (const int error = call(VIDIOC_REQBUFS, &request); error != 0)
        return error;
    for (std::uint32_t i = 0; i < request.count; ++i) {
        v4l2_buffer buffer{};
        buffer.index = i;
        buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
        buffer.memory = V4L2_MEMORY_MMAP;
        if (const int error = call(VIDIOC_QUERYBUF, &buffer); error != 0)
            return error;
        m_buffers.emplace_back(m_file.get(), buffer.length, buffer.m.offset);
        if (!m_buffers.back().bytes)
            return ENOMEM;
        if (const int error = call(VIDIOC_QBUF, &buffer); error != 0)
            return error;
    }
    return m_buffers.empty() ? ENOMEM : 0;
}

V4l2Device::Arrival V4l2Device::next(base::HostDuration longestWait,
                                     const std::function<void(const Picture&)>& take) {
    pollfd waiting{m_file.get(), POLLIN, 0};
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(longestWait);
    if (::poll(&waiting, 1, static_cast<int>(wait.count())) <= 0)
        return Arrival::nothing;
    v4l2_buffer buffer{};
    buffer.type = V4L2_BUF_TYPE_VIDEO_CAPTURE;
    buffer.memory = V4L2_MEMORY_MMAP;
    if (const int error = call(VIDIOC_DQBUF, &buffer); error != 0)
        return error == EAGAIN ? Arrival::nothing : Arrival::gone;
    const auto& memory = m_buffers.at(buffer.index);
    const bool isDamaged = (buffer.flags & V4L2_BUF_FLAG_ERROR) != 0 || buffer.bytesused == 0;
    if (!isDamaged) {
        const std::span bytes(memory.bytes, std::min<std::size_t>(buffer.bytesused, memory.size));
        take({.raw = {.layout = m_format.layout,
                      .width = m_format.width,
                      .height = m_format.height,
                      .planes = {{{.bytes = bytes, .stride = m_stride}, {}, {}}}},
              .time = timeOf(buffer)});
    }
    if (call(VIDIOC_QBUF, &buffer) != 0)
        return Arrival::gone;
    return isDamaged ? Arrival::nothing : Arrival::picture;
}

} // namespace vantro::capture::camera
