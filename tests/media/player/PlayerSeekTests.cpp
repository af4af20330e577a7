#include "media/player/PlayerFixture.h"

#include <random>

#include <gmock/gmock.h>

namespace vantro::media::player {
namespace {

TEST_F(PlayerTest, SeeksShowExactlyTheirPictureWhetherItPlaysOrNot) {
    PlayerRig rig(movie());
    std::mt19937 random(3);
    for (int i = 0; i < 20; ++i) {
        const int number = static_cast<int>(random() % count);
        SCOPED_TRACE(number);
        rig.player().setRate(i < 10 ? 0 : 1);
        ASSERT_TRUE(rig.seek(timeOf(number)));
        EXPECT_EQ(rig.newestPicture(), number);
        EXPECT_EQ(rig.player().rate(), i < 10 ? 0 : 1);
    }
    EXPECT_TRUE(rig.seek(timeOf(count * 2)));
    EXPECT_EQ(rig.player().currentTime(), timeOf(count));
    EXPECT_EQ(rig.newestPicture(), count - 1);
}

TEST_F(PlayerTest, OfManySeeksTheNewestWinsAndEachIsAnsweredOnce) {
    PlayerRig rig(movie());
    std::vector<int> answers(30, 0);
    std::vector<bool> finished(30, false);
    for (int i = 0; i < 30; ++i)
        rig.player().seek(timeOf(i * 8), {1, 10}, [&, i](bool done) {
            ++answers[i];
            finished[i] = done;
        });
    EXPECT_EQ(rig.player().currentTime(), timeOf(29 * 8));
    EXPECT_TRUE(rig.waitUntil([&] { return answers[29] == 1; }));
    EXPECT_THAT(answers, testing::Each(1));
    EXPECT_TRUE(finished[29]);
    EXPECT_FALSE(finished[10]);
    const int shown = rig.newestPicture();
    EXPECT_NEAR(shown, 29 * 8, 6) << "within the tolerance";
    EXPECT_EQ(rig.player().currentTime(), timeOf(shown)) << "the time of what is shown";
}

TEST_F(PlayerTest, AMovieThatBreaksOffFailsWithASentenceAndPlaysAgainBeforeThat) {
    const auto cut = *s_folder / "cut.mp4";
    test::makePlayedMovie(cut, count, 15, "-movflags faststart");
    std::filesystem::resize_file(cut, std::filesystem::file_size(cut) * 6 / 10);
    PlayerRig rig(cut);
    auto& player = rig.player();
    rig.nextPicture();
    rig.play();
    int shown = 0;
    while (player.status() != Player::Status::failed && shown >= 0) {
        rig.movePeriods(1);
        rig.waitUntil(
            [&] { return rig.waitingPictures() > 0 || player.status() == Player::Status::failed; });
        shown = rig.waitingPictures() > 0 ? rig.nextPicture() : shown;
    }
    EXPECT_GT(shown, 30);
    const auto told = cut.string() + " breaks off at ";
    ASSERT_THAT(player.problem(), testing::StartsWith(told));
    EXPECT_NEAR(std::stod(player.problem().substr(told.size())), shown / 60.0, 0.2);
    EXPECT_EQ(player.rate(), 0);
    EXPECT_FALSE(rig.seek(timeOf(count - 1)));
    EXPECT_TRUE(rig.seek(timeOf(10)));
    EXPECT_EQ(player.status(), Player::Status::ready);
}

TEST_F(PlayerTest, AMovieThatIsMovedPlaysOnAndOneThatWasMovedBeforeFails) {
    const auto gone = *s_folder / "gone.mov";
    const auto hidden = *s_folder / "hidden.mov";
    std::filesystem::copy_file(movie(), gone);
    {
        PlayerRig rig(gone);
        EXPECT_EQ(rig.nextPicture(), 0);
        std::filesystem::rename(gone, hidden);
        rig.play();
        for (int number = 1; number < 20; ++number)
            ASSERT_EQ(rig.pictureAfter(1), number);
    }
    std::filesystem::rename(hidden, gone);
    PlayerRig rig(gone, nullptr, [&] { std::filesystem::rename(gone, hidden); });
    auto& player = rig.player();
    EXPECT_TRUE(rig.waitUntil([&] { return player.status() == Player::Status::failed; }));
    EXPECT_THAT(player.problem(), testing::HasSubstr(gone.string()));
    EXPECT_FALSE(player.duration());
    EXPECT_FALSE(rig.seek(timeOf(3)));
    std::filesystem::rename(hidden, gone);
    EXPECT_TRUE(rig.seek(timeOf(3)));
    EXPECT_EQ(player.status(), Player::Status::ready);
    EXPECT_EQ(player.problem(), "");
}

} // namespace
} // namespace vantro::media::player
