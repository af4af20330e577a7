#include "model/BackgroundCatalog.h"
#include "support/TemporaryFolder.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantro::model {
namespace {

TEST(BackgroundColor, WritesHexWithComponentsRoundedAndKeptInRange) {
    EXPECT_EQ((BackgroundColor{1, 0.5, 10 / 255.0}).hexString(), "#FF800A");
    constexpr auto nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ((BackgroundColor{-1, 1e300, nan}).hexString(), "#00FF00");
}

TEST(BackgroundImageSource, NamesPicturesForReading) {
    EXPECT_EQ(backgroundDisplayName("My-mirelune_Big-mirelune-Lake"), "My Big Lake");
    const auto own = BackgroundImageSource::custom("/pictures/blue_sky-2.final.png");
    EXPECT_EQ(own.name, "blue sky 2.final");
    EXPECT_FALSE(own.isBuiltIn || own.thumbnail);
}

TEST(BackgroundCatalog, HoldsTheWholeEntriesInOrderAndFindsThemByName) {
    test::TemporaryFolder folder;
    for (const auto* name : {"builtin-26-mirelune", "builtin-02", "builtin-11-mirelune",
                             "builtin-12" /* no name of the catalog */}) {
        folder.write(std::string("Backgrounds/") + name + ".jpeg", "picture");
        folder.write(std::string("Backgrounds/Thumbnails/") + name + ".jpeg", "preview");
    }
    folder.write("Backgrounds/builtin-03.jpeg", "picture without preview");
    folder.write("Backgrounds/Thumbnails/builtin-04.jpeg", "preview without picture");
    const BackgroundCatalog catalog(folder.path());
    std::vector<std::string> names;
    for (const auto& background : catalog.builtInBackgrounds()) {
        names.push_back(background.name);
        EXPECT_TRUE(background.isBuiltIn);
        EXPECT_EQ(test::contentOf(background.path), "picture");
        EXPECT_EQ(test::contentOf(background.thumbnail.value()), "preview");
    }
    EXPECT_THAT(names, testing::ElementsAre("builtin 02", "builtin 11", "builtin 26"));

    EXPECT_EQ(catalog.builtIn("builtin-11-mirelune"), catalog.builtInBackgrounds()[1]);
    EXPECT_EQ(catalog.builtIn("builtin-11"), catalog.builtInBackgrounds()[1]);
    for (const auto* name : {"", "builtin", "builtin-02-mirelune", "builtin-03", "../builtin-02"})
        EXPECT_FALSE(catalog.builtIn(name)) << name;
    EXPECT_TRUE(BackgroundCatalog("/nonexistent").builtInBackgrounds().empty());
}

} // namespace
} // namespace vantro::model
