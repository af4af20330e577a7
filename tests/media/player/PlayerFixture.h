#pragma once

#include "media/player/PlayerRig.h"

namespace vantro::media::player {

using test::PlayerRig;
using test::timeOf;

/// Players of one movie of so many pictures.
class PlayerTest : public testing::Test {
  protected:
    static constexpr int count = 240;

    static void SetUpTestSuite() {
        s_folder = std::make_unique<test::TemporaryFolder>();
        test::makePlayedMovie(movie(), count, 30);
    }
    static void TearDownTestSuite() { s_folder.reset(); }
    static std::filesystem::path movie() { return *s_folder / "movie.mov"; }

    inline static std::unique_ptr<test::TemporaryFolder> s_folder;
};

} // namespace vantro::media::player
