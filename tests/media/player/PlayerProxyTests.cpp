#include "media/player/PlayerRig.h"
#include "media/proxy/ProxyRig.h"

namespace vantro::media::player {
namespace {

using test::PlayerRig;
using test::timeOf;

constexpr int count = 660;
constexpr int far = 640; ///< long to search for: all pictures hang together

struct Shown {
    int number;
    bool isPreliminary;
    bool operator==(const Shown&) const = default;
};

class PlayerProxyTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        s_folder = std::make_unique<test::TemporaryFolder>();
        test::makePlayedMovie(movie(), count, 1000,
                              "-vf scale=1280:720:flags=neighbor -preset ultrafast");
        s_proxy = test::ProxyRig(movie(), *s_folder / "cache").whole();
    }
    static void TearDownTestSuite() {
        s_proxy.reset();
        s_folder.reset();
    }
    static std::filesystem::path movie() { return *s_folder / "movie.mov"; }

    void SetUp() override {
        ASSERT_NE(s_proxy, nullptr);
        ASSERT_EQ(rig.nextPicture(), 0);
        rig.player().setProxy(s_proxy);
    }
    /// Starts a seek whose end is told in `finished`.
    void begin(int number, MediaTime tolerance = {}) {
        finished.reset();
        rig.player().seek(timeOf(number), tolerance, [this](bool done) { finished = done; });
    }
    /// The next picture, while time goes by.
    Shown next() {
        rig.waitUntil([this] {
            rig.time().advance(std::chrono::milliseconds(10));
            return rig.waitingPictures() > 0;
        });
        const int number = rig.nextPicture();
        return {number, rig.lastPicture().isPreliminary};
    }

    PlayerRig rig{movie()};
    std::optional<bool> finished;

    static std::unique_ptr<test::TemporaryFolder> s_folder;
    static std::shared_ptr<proxy::ProxyMovie> s_proxy;
};

std::unique_ptr<test::TemporaryFolder> PlayerProxyTest::s_folder;
std::shared_ptr<proxy::ProxyMovie> PlayerProxyTest::s_proxy;

TEST_F(PlayerProxyTest, AnExactSeekShowsTheProxysPictureUntilTheMoviesIsFound) {
    begin(far);
    EXPECT_EQ(next(), (Shown{far, true}));
    EXPECT_EQ(rig.lastPicture().time, timeOf(far));
    EXPECT_EQ(rig.lastPicture().pixels->width(), 1280);
    EXPECT_FALSE(finished);
    rig.player().refresh();
    EXPECT_EQ(next(), (Shown{far, true})) << "an edit is seen at once";
    EXPECT_EQ(next(), (Shown{far, false}));
    EXPECT_TRUE(rig.waitUntil([this] { return finished.has_value(); }) && *finished);
    EXPECT_EQ(rig.player().currentTime(), timeOf(far));
}

TEST_F(PlayerProxyTest, ScrubbingIsAnsweredByTheProxyAndTheMoviesPictureFollowsARest) {
    for (const int number : {far, 37, 400, 401, 400, far}) {
        begin(number, {1, 10});
        ASSERT_TRUE(rig.waitUntil([this] { return finished.has_value(); }) && *finished);
        ASSERT_EQ(rig.nextPicture(), number) << "exactly, for all the tolerance";
        ASSERT_TRUE(rig.lastPicture().isPreliminary);
        ASSERT_EQ(rig.player().currentTime(), timeOf(number));
    }
    EXPECT_EQ(next(), (Shown{far, false}));
    EXPECT_EQ(rig.player().currentTime(), timeOf(far));
}

TEST_F(PlayerProxyTest, ANewerSeekGivesUpTheSearchOfBoth) {
    begin(far);
    EXPECT_EQ(next(), (Shown{far, true}));
    ASSERT_TRUE(rig.seek(timeOf(3)));
    EXPECT_EQ(finished, false);
    while (rig.waitingPictures() > 0) {
        rig.nextPicture();
        EXPECT_TRUE(rig.lastPicture().time == timeOf(3) || rig.lastPicture().isPreliminary);
    }
    EXPECT_EQ(test::numberIn(*rig.lastPicture().pixels), 3);
}

TEST_F(PlayerProxyTest, AProxyThatIsMissingOrDamagedChangesNothing) {
    const auto broken = std::make_shared<proxy::ProxyMovie>(
        timeOf(count), [](int) { return *s_folder / "broken.mov"; });
    test::runFfmpeg("-f lavfi -i color -t 1 -c:v libx264", *s_folder / "broken.mov");
    std::filesystem::resize_file(*s_folder / "broken.mov", 1000);
    rig.player().setProxy(broken);
    for (const bool isThere : {false, true}) {
        if (isThere)
            broken->add(0);
        for (const MediaTime tolerance : {MediaTime{1, 10}, MediaTime{}}) {
            begin(far - 100, tolerance);
            EXPECT_EQ(next(), (Shown{far - 100, false}));
            EXPECT_TRUE(rig.waitUntil([this] { return finished.has_value(); }) && *finished);
            EXPECT_TRUE(rig.seek({}));
            EXPECT_EQ(next(), (Shown{0, false}));
        }
    }
    EXPECT_EQ(rig.player().status(), Player::Status::ready);
    rig.player().setProxy(nullptr);
    EXPECT_TRUE(rig.seek(timeOf(5)));
}

} // namespace
} // namespace vantro::media::player
