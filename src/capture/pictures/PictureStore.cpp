#include "capture/pictures/PictureStore.h"

#include <atomic>

namespace vantro::capture::pictures {

struct PictureStore::Slot {
    Slot(int width, int height)
        : buffer(media::PixelBuffer::allocate(media::PixelFormat::i420, width, height))
        , stale(width, height) {
        stale.addAll();
    }

    std::shared_ptr<media::PixelBuffer> buffer;
    TileMap stale; ///< where the buffer differs from the source
    // Set by the store, cleared by whichever thread lets the picture go: its reads come before.
    std::atomic<bool> inUse = false;
};

void PictureStore::sourceChanged(const TileMap& where) {
    for (const auto& slot : m_slots)
        slot->stale.add(where);
}

std::shared_ptr<const media::PixelBuffer> PictureStore::picture(const std::uint8_t* bgra,
                                                                std::ptrdiff_t stride) {
    Slot& slot = freshestFreeSlot();
    slot.stale.forEachRun([&](media::color::PixelRect rect) {
        media::color::convertBgraRectToI420(bgra + rect.y * stride + std::ptrdiff_t{4} * rect.x,
                                            stride, rect, *slot.buffer);
    });
    slot.stale.clear();
    slot.inUse.store(true, std::memory_order_relaxed);
    const auto* pixels = slot.buffer.get();
    const auto found = std::ranges::find(m_slots, &slot, &std::shared_ptr<Slot>::get);
    return {pixels, [kept = *found](const media::PixelBuffer*) {
                kept->inUse.store(false, std::memory_order_release);
            }};
}

PictureStore::Slot& PictureStore::freshestFreeSlot() {
    Slot* best = nullptr;
    int bestCount = 0;
    for (const auto& slot : m_slots) {
        if (slot->inUse.load(std::memory_order_acquire))
            continue;
        const int count = slot->stale.tileCount();
        if (best == nullptr || count < bestCount) {
            best = slot.get();
            bestCount = count;
        }
    }
    if (best == nullptr)
        best = m_slots.emplace_back(std::make_shared<Slot>(m_width, m_height)).get();
    return *best;
}

} // namespace vantro::capture::pictures
