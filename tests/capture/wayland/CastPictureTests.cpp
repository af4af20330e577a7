#include "capture/wayland/cast/CastReceiver.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

namespace vantro::capture::wayland {
namespace {

using namespace std::chrono_literals;
using pipewire::Layout;

/// A buffer in which each pixel knows its place: blue is x, green is y.
struct Buffer {
    Buffer(int width, int height) : bytes(std::size_t{4} * width * height) {
        format.layout = Layout::bgrx;
        format.size = {width, height};
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                auto* pixel = bytes.data() + std::ptrdiff_t{4} * (std::ptrdiff_t{y} * width + x);
                pixel[0] = std::byte(x);
                pixel[1] = std::byte(y);
            }
        plane = {bytes, 4 * width};
    }
    pipewire::VideoBuffer view() const {
        return {.format = format,
                .arrival = base::HostTime(10s),
                .planes = {&plane, 1},
                .time = time,
                .cursor = {},
                .crop = crop,
                .damage = {},
                .transform = transform};
    }

    std::vector<std::byte> bytes;
    pipewire::VideoFormat format;
    pipewire::Plane plane;
    std::optional<base::HostTime> time;
    std::optional<pipewire::Area> crop;
    std::uint32_t transform = 0;
};

/// What stands upright at the corners is told by where a screen that was turned so has them.
TEST(CastPicture, StandsUprightHoweverItsScreenIsTurned) {
    // The buffer's x and y of the upright picture's corners: top left, top right, bottom left.
    using Corners = std::array<std::pair<int, int>, 3>;
    const Corners expected[] = {
        {{{0, 0}, {2, 0}, {0, 1}}}, {{{0, 1}, {0, 0}, {2, 1}}}, {{{2, 1}, {0, 1}, {2, 0}}},
        {{{2, 0}, {2, 1}, {0, 0}}}, {{{2, 0}, {0, 0}, {2, 1}}}, {{{0, 0}, {0, 1}, {2, 0}}},
        {{{0, 1}, {2, 1}, {0, 0}}}, {{{2, 1}, {2, 0}, {0, 1}}},
    };
    for (std::uint32_t transform = 0; transform < 8; ++transform) {
        SCOPED_TRACE(transform);
        Buffer buffer(5, 4);
        buffer.crop = pipewire::Area{1, 2, 3, 2};
        buffer.transform = transform;
        CastPicture picture;
        ASSERT_TRUE(picture.take(buffer.view()));
        const auto view = picture.view();
        const int width = transform % 2 ? 2 : 3;
        const int height = transform % 2 ? 3 : 2;
        ASSERT_EQ(view.width, width);
        ASSERT_EQ(view.height, height);
        const std::pair<int, int> corners[] = {{0, 0}, {width - 1, 0}, {0, height - 1}};
        for (int i = 0; i < 3; ++i) {
            const auto [x, y] = corners[i];
            const auto [inX, inY] = expected[transform][i];
            const auto* pixel = view.pixels + y * view.stride + std::ptrdiff_t{4} * x;
            EXPECT_EQ(pixel[0], inX + 1) << "corner " << i;
            EXPECT_EQ(pixel[1], inY + 2) << "corner " << i;
            EXPECT_EQ(picture.placeOf(picture.uprightPlaceOf({inX + 1.0, inY + 2.0})),
                      (model::Point{1.0 * x, 1.0 * y}));
        }
    }
}

TEST(CastPicture, KeepsThePlaceOfItsCropInPicturesOfEverySize) {
    Buffer buffer(40, 20);
    CastPicture picture;
    picture.take(buffer.view());
    picture.crop({.part = {10, 4, 8, 6}, .width = 40, .height = 20});
    const auto expectCrop = [&](int width, int height, int x, int y) {
        ASSERT_EQ(picture.view().width, width);
        ASSERT_EQ(picture.view().height, height);
        const auto* last = picture.view().pixels + (height - 1) * picture.view().stride +
                           std::ptrdiff_t{4} * (width - 1);
        EXPECT_EQ(picture.view().pixels[0], x);
        EXPECT_EQ(picture.view().pixels[1], y);
        EXPECT_EQ(last[0], x + width - 1);
        EXPECT_EQ(last[1], y + height - 1);
        EXPECT_EQ(picture.placeOf(picture.uprightPlaceOf({x + 2.0, y + 1.0})),
                  (model::Point{2, 1}));
    };
    expectCrop(8, 6, 10, 4); // of the picture that was there
    picture.take(buffer.view());
    expectCrop(8, 6, 10, 4);
    picture.take(Buffer(80, 40).view());
    expectCrop(16, 12, 20, 8);
}

TEST(CastPicture, HasTheSendersTimeOnlyWhereThatCanBeThePictures) {
    const base::HostTime arrival(10s);
    CastPicture picture;
    Buffer buffer(4, 4);
    const auto timeOf = [&](std::optional<base::HostTime> told) {
        buffer.time = told;
        picture.take(buffer.view());
        return picture.time();
    };
    EXPECT_EQ(timeOf(arrival - 101ms), arrival) << "too old";
    EXPECT_EQ(timeOf(arrival - 20ms), arrival - 20ms);
    EXPECT_EQ(timeOf(arrival - 20ms), arrival) << "told before";
    EXPECT_EQ(timeOf(std::nullopt), arrival);
    EXPECT_EQ(timeOf(arrival + 1ms), arrival) << "of the future";
}

TEST(CastPicture, TellsOnlyWhereItChanges) {
    Buffer buffer(200, 40);
    CastPicture picture;
    picture.take(buffer.view());
    picture.changed().clear();
    picture.take(buffer.view());
    EXPECT_TRUE(picture.changed().isEmpty());
    buffer.bytes[std::size_t{4} * (20 * 200 + 130)] = std::byte{99};
    picture.take(buffer.view());
    EXPECT_EQ(picture.changed().tileCount(), 1);
}

TEST(CastPicture, IsNotTakenFromMemoryThatDoesNotHoldIt) {
    for (const int stride : {-16, 1, 15, 17, 1 << 30}) {
        Buffer buffer(4, 4);
        buffer.plane.stride = stride;
        CastPicture picture;
        EXPECT_FALSE(picture.take(buffer.view())) << stride;
    }
    Buffer tight(3, 2); // rows without gaps: the last one may end before its stride does
    tight.plane = {std::span(tight.bytes).first(16 + 12), 16};
    tight.bytes.resize(32);
    tight.plane.bytes = std::span(tight.bytes).first(28);
    EXPECT_TRUE(CastPicture().take(tight.view()));
    tight.crop = pipewire::Area{3, 0, 2, 2};
    EXPECT_FALSE(CastPicture().take(tight.view())) << "nothing of it is left";
    tight.crop = pipewire::Area{-1, -1, 1 << 30, 1 << 30};
    CastPicture all;
    ASSERT_TRUE(all.take(tight.view()));
    EXPECT_EQ(all.view().width, 3);
}

struct PointerLog : PointerOutput {
    void pointerAt(const PointerSample& sample) override { samples.push_back(sample); }
    void pressed(const PointerPress&) override {}
    void pointerUnknown(const std::string&) override { ++unknown; }
    void pointerStopped(const std::string&) override {}

    std::vector<PointerSample> samples;
    int unknown = 0;
};

/// On a still screen KWin repeats the time of its last picture with each move.
TEST(CastReceiver, TellsOfThePointerByTheTimeOfArrivalInPointsOfTheRecording) {
    CastReceiver receiver;
    pipewire::VideoStreamListener& stream = receiver;
    Buffer buffer(40, 20);
    stream.arrived(buffer.view());
    PointerLog log;
    receiver.setPointerOutput(&log, {.width = 40, .height = 20, .pixelsPerPoint = 2});
    buffer.time = base::HostTime(1s);
    auto moved = buffer.view();
    moved.planes = {};
    moved.cursor = {.id = 1, .x = 30, .y = 10, .bitmap = {}};
    stream.arrived(moved);
    ASSERT_EQ(log.samples.size(), 1);
    EXPECT_EQ(log.samples[0].time, moved.arrival);
    EXPECT_EQ(log.samples[0].place, (model::Point{15, 5}));
    Buffer smaller(20, 20); // shown as it is, in the middle
    auto both = smaller.view();
    both.cursor = moved.cursor;
    both.cursor->x = 7;
    stream.arrived(both);
    EXPECT_EQ(log.samples.back().place, (model::Point{(10 + 7) / 2.0, 5}));
    receiver.setPointerOutput(nullptr);
    stream.arrived(both);
    EXPECT_EQ(log.samples.size(), 2);
}

} // namespace
} // namespace vantro::capture::wayland
