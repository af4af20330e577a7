#include "capture/x11/server/X11Image.h"

#include "base/FileDescriptor.h"
#include "base/Log.h"

#include <algorithm>
#include <cstring>

#include <fmt/format.h>
#include <sys/mman.h>
#include <xcb/shm.h>

namespace vantro::capture::x11 {
namespace {

constexpr std::uint32_t allPlanes = ~0U;

const xcb_visualtype_t* rootVisual(const xcb_screen_t& screen) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        auto visuals = xcb_depth_visuals_iterator(depths.data);
        for (; visuals.rem > 0; xcb_visualtype_next(&visuals))
            if (visuals.data->visual_id == screen.root_visual)
                return visuals.data;
    }
    return nullptr;
}

int bitsPerPixel(const xcb_setup_t* setup, int depth) {
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0;
         xcb_format_next(&formats))
        if (formats.data->depth == depth)
            return formats.data->bits_per_pixel;
    return 0;
}

} // namespace

std::optional<std::string> unsupportedPixels(const X11Connection& connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection.get());
    const auto& screen = connection.screen();
    const auto* visual = rootVisual(screen);
    const int bits = bitsPerPixel(setup, screen.root_depth);
    const bool isLittleEndian = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    if (visual == nullptr)
        return "the screen has no visual";
    const bool isBgrx = bits == 32 && isLittleEndian && visual->red_mask == 0xff0000 &&
                        visual->green_mask == 0x00ff00 && visual->blue_mask == 0x0000ff;
    if (isBgrx)
        return {};
    return fmt::format("the screen's pixels cannot be read: visual {:#x} of depth {} with {} bits "
                       "a pixel, {} byte order, red mask {:#x}; 32 bits of blue, green and red are "
                       "needed",
                       visual->visual_id, screen.root_depth, bits,
                       isLittleEndian ? "little-endian" : "big-endian", visual->red_mask);
}

X11Image::X11Image(const X11Connection& connection, int width, int height)
    : m_connection(connection), m_width(width), m_height(height) {
    if (attachSharedMemory())
        return;
    base::logWarning(
        "The display lacks the extension MIT-SHM: recording takes more processor time");
    m_ownMemory.resize(static_cast<std::size_t>(stride()) * m_height);
    m_memory = m_ownMemory;
}

X11Image::~X11Image() {
    if (m_segment == 0)
        return;
    xcb_shm_detach(m_connection.get(), m_segment);
    munmap(m_memory.data(), m_memory.size());
}

/// The server makes the memory and passes a file descriptor, which works in containers too, where
/// System V segments are separate.
bool X11Image::attachSharedMemory() {
    if (!m_connection.hasExtension(xcb_shm_id))
        return false;
    const auto size = static_cast<std::size_t>(stride()) * m_height;
    const std::uint32_t segment = xcb_generate_id(m_connection.get());
    const auto reply = m_connection.await(
        xcb_shm_create_segment_reply,
        xcb_shm_create_segment(m_connection.get(), segment, static_cast<std::uint32_t>(size), 0));
    if (!reply || reply->nfd != 1)
        return false;
    const base::FileDescriptor file(
        xcb_shm_create_segment_reply_fds(m_connection.get(), reply.get())[0]);
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        xcb_shm_detach(m_connection.get(), segment);
        return false;
    }
    m_memory = {static_cast<std::uint8_t*>(memory), size};
    m_segment = segment;
    return true;
}

bool X11Image::fetch(xcb_drawable_t drawable, int x, int y, const pictures::TileMap& where) {
    return m_segment != 0 ? fetchShared(drawable, x, y, where)
                          : fetchThroughConnection(drawable, x, y, where);
}

bool X11Image::fetchShared(xcb_drawable_t drawable, int x, int y, const pictures::TileMap& where) {
    std::vector<xcb_shm_get_image_cookie_t> cookies; // all sent first: one wait for all bands
    where.forEachBand([&](media::color::PixelRect band) {
        cookies.push_back(xcb_shm_get_image(
            m_connection.get(), drawable, static_cast<std::int16_t>(x),
            static_cast<std::int16_t>(y + band.y), static_cast<std::uint16_t>(band.width),
            static_cast<std::uint16_t>(band.height), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
            m_segment, static_cast<std::uint32_t>(band.y * stride())));
    });
    bool isFetched = true;
    for (const auto cookie : cookies)
        isFetched &= m_connection.await(xcb_shm_get_image_reply, cookie) != nullptr;
    return isFetched;
}

bool X11Image::fetchThroughConnection(xcb_drawable_t drawable, int x, int y,
                                      const pictures::TileMap& where) {
    bool isFetched = true;
    where.forEachBand([&](media::color::PixelRect band) {
        const auto reply = m_connection.await(
            xcb_get_image_reply,
            xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                          static_cast<std::int16_t>(x), static_cast<std::int16_t>(y + band.y),
                          static_cast<std::uint16_t>(band.width),
                          static_cast<std::uint16_t>(band.height), allPlanes));
        const auto size = static_cast<std::size_t>(band.height * stride());
        isFetched &= reply != nullptr &&
                     static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) >= size;
        if (isFetched)
            std::memcpy(m_memory.data() + band.y * stride(), xcb_get_image_data(reply.get()), size);
    });
    return isFetched;
}

} // namespace vantro::capture::x11
