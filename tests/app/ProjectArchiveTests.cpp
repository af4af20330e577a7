// Projects in one file: read in place, appended to, and never half of one.
#include "app/CommandLineFixture.h"
#include "archive/ArchivePath.h"
#include "archive/ArchiveWriter.h"
#include "archive/StoredArchive.h"
#include "media/PictureFile.h"
#include "model/VantroError.h"
#include "support/FileSizeLimit.h"

#include <gmock/gmock.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class ProjectArchive : public test::CommandLine {
  protected:
    ProjectArchive() {
        const auto picture = media::PixelBuffer::allocate(media::PixelFormat::bgra, 32, 32);
        for (int y = 0; y < 32; ++y)
            std::fill_n(picture->mutableRow(0, y), 32 * 4, std::uint8_t{200});
        media::writePng(folder / "beach.png", *picture);
        edit.background.type = model::BackgroundImageSource::custom(folder / "beach.png");
        save("sample.vantro");
        EXPECT_EQ(
            test::vantro(fmt::format("pack {} -o {}", path("sample.vantro"), path("one.vantro")))
                .exitCode,
            0);
    }
    fs::path one() const { return folder / "one.vantro"; }
    /// Saves another edit into the file.
    void saveAgain(double cursorScale) const {
        auto project = files::readProjectFile(one());
        project.edit.cursorScale = cursorScale;
        files::saveProject(one(), project, true);
    }
    void expectOthersCanRead() const {
        FILE* unzip = ::popen(("unzip -tq " + path("one.vantro")).c_str(), "r");
        char line[256]{};
        EXPECT_NE(std::fgets(line, sizeof line, unzip), nullptr);
        EXPECT_EQ(::pclose(unzip), 0) << line;
    }
    std::string frameOf(const std::string& name) const {
        const auto result = test::vantro(
            fmt::format("frame {} --time 1 --force -o {}", path(name), path("frame.png")));
        EXPECT_EQ(result.exitCode, 0) << result.output;
        return test::contentOf(folder / "frame.png");
    }
    static std::string failureOfReading(const fs::path& project) {
        try {
            files::readProjectFile(project);
        } catch (const model::VantroError& error) {
            return error.what();
        }
        return "no error";
    }
};

TEST_F(ProjectArchive, ShowsTheSameFilmAsTheFolderThatItWasMadeOfAndThatIsMadeOfIt) {
    const auto bytes = test::contentOf(one());
    EXPECT_EQ(bytes.substr(30, 8 + 28), "mimetypeapplication/x-vantro-project");
    expectOthersCanRead();
    EXPECT_EQ(archive::locate(one() / "recording.mov").offset % 4096, 0u);

    const auto frame = frameOf("sample.vantro");
    fs::remove_all(folder / "sample.vantro");
    fs::remove(folder / "beach.png");
    fs::remove(folder / "recording.mov");
    EXPECT_EQ(frameOf("one.vantro"), frame);
    const auto unpacked =
        test::vantro(fmt::format("unpack {} -o {}", path("one.vantro"), path("again.vantro")));
    EXPECT_EQ(unpacked.exitCode, 0) << unpacked.output;
    EXPECT_EQ(frameOf("again.vantro"), frame);
    EXPECT_THAT(
        test::vantro(fmt::format("pack {} -o {} --force", path("one.vantro"), path("again.vantro")))
            .output,
        HasSubstr("exists and is not a project in one file"));
}

TEST_F(ProjectArchive, TakesAnEditAtItsEndAndLeavesTheRestUntouched) {
    const auto before = test::contentOf(one());
    saveAgain(3);
    const auto after = test::contentOf(one());
    EXPECT_EQ(after.substr(0, before.size()), before);
    EXPECT_LT(after.size(), before.size() + 10'000) << "the picture is not written again";
    EXPECT_EQ(files::readProjectFile(one()).edit.cursorScale, 3);
    expectOthersCanRead();
}

TEST_F(ProjectArchive, BrokenOffAnywhereASaveLeavesTheEarlierEdit) {
    saveAgain(3);
    const auto first = archive::StoredArchive::open(one());
    saveAgain(4);
    const auto whole = test::contentOf(one());
    const auto torn = folder / "torn.vantro";
    for (auto size = first.end(); size <= whole.size();
         size += whole.size() - size > 1000 ? 13 : 1) {
        std::ofstream(torn, std::ios::binary) << whole.substr(0, size);
        const auto found = archive::StoredArchive::open(torn);
        ASSERT_EQ(found.end(), size < whole.size() ? first.end() : whole.size()) << size;
    }
    fs::resize_file(one(), whole.size() - 1);
    EXPECT_EQ(files::readProjectFile(one()).edit.cursorScale, 3);
    saveAgain(5); // over what is left of the broken one
    EXPECT_EQ(files::readProjectFile(one()).edit.cursorScale, 5);
    expectOthersCanRead();
}

TEST_F(ProjectArchive, OnAFullDiskKeepsItsEditAndItsLength) {
    const auto size = fs::file_size(one());
    {
        const test::FileSizeLimit limit(size + 100);
        EXPECT_THROW(saveAgain(3), model::VantroError);
    }
    EXPECT_EQ(fs::file_size(one()), size);
    EXPECT_EQ(files::readProjectFile(one()).edit.cursorScale, edit.cursorScale);
}

TEST_F(ProjectArchive, IsWrittenAnewWhenEarlierEditsOutweighIt) {
    const auto before = fs::file_size(one());
    { // as thousands of edits would leave it
        const auto archive = archive::StoredArchive::open(one());
        archive::ArchiveWriter writer(one(), archive.entries(), archive.end() + (80u << 20));
        writer.finish();
    }
    saveAgain(3);
    EXPECT_LT(fs::file_size(one()), before + 10'000);
    EXPECT_EQ(files::readProjectFile(one()).edit.cursorScale, 3);
}

TEST_F(ProjectArchive, ThatIsNotWhatItShouldBeIsRefusedWithTheReason) {
    const auto good = test::contentOf(one());
    const auto directory = good.find(std::string_view("PK\1\2", 4));
    const auto withByte = [&](std::size_t place, char value) {
        auto bytes = good;
        bytes[place] = value;
        return bytes;
    };
    const auto made = [&](const std::vector<std::string>& names) {
        const auto file = folder.write("made", "");
        archive::ArchiveWriter writer(file);
        for (const auto& name : names)
            writer.add(name, std::string_view("{}"));
        writer.finish();
        return test::contentOf(file);
    };
    for (const auto& [bytes, reason] : std::vector<std::pair<std::string, std::string>>{
             {good.substr(0, good.size() / 2), "it is not complete: its end is missing"},
             {"a text", "it is not a zip file"},
             {withByte(directory + 10, 8), "mimetype in it is compressed"},
             {withByte(directory + 8, 1), "mimetype in it is encrypted"},
             {withByte(directory + 42, 9), "mimetype is not where its directory says"},
             {withByte(directory + 46, '/'), "it names a file outside of itself, /imetype"},
             {withByte(good.find("\"cursorScale\""), '!'), "project.json in it is damaged"},
             {made({"mimetype", "recording.mov"}), "it holds no project.json"},
             {made({"project.json", "mimetype"}), "it holds no recording.mov"},
             {made({"project.json", "../recording.mov"}), "outside of itself, ../recording.mov"}}) {
        folder.write("bad.vantro", bytes);
        EXPECT_THAT(failureOfReading(folder / "bad.vantro"), HasSubstr(reason));
        EXPECT_EQ(test::contentOf(folder / "bad.vantro"), bytes);
    }
}

TEST(ZipRecords, HoldPlacesAndSizesBeyondFourGigabytes) {
    const std::vector<archive::Entry> entries{
        {.name = "a", .header = 0, .size = 5'000'000'000, .checksum = 1},
        {.name = "größe", .header = 5'000'000'100, .size = 4'294'967'295, .checksum = 2},
        {.name = "c", .header = 9'400'000'000, .size = 3, .checksum = 3}};
    const std::uint64_t place = 9'500'000'000;
    const auto bytes = archive::directoryBytes(entries, place);
    const auto found = archive::directoryPlace(bytes.ending, bytes.records);
    if (!found)
        FAIL() << "no directory";
    EXPECT_EQ(found->begin, place);
    EXPECT_EQ(archive::directoryEntries(std::string_view(bytes.records).substr(0, found->size),
                                        found->count),
              entries);
}

} // namespace
} // namespace vantro::app
