// What keeps programs, and the user's own doings, from hurting a project that is open.
#include "app/CommandLineFixture.h"
#include "media/Asset.h"
#include "model/Json.h"
#include "model/VantroError.h"
#include "support/FileSizeLimit.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace vantro::app {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class ProjectStore : public test::CommandLine {
  protected:
    /// Why the project cannot be saved there; empty when it could.
    std::string failureOfSaving(const model::Project& edited, const fs::path& target,
                                const std::shared_ptr<const files::ProjectLock>& held = {}) const {
        try {
            files::storeOf(target).save(target, edited, true, held);
        } catch (const model::VantroError& error) {
            EXPECT_EQ(error.kind(), model::VantroError::Kind::projectSaveFailed);
            return error.message();
        }
        return {};
    }
    std::string edit() const { return test::contentOf(package / "project.json"); }

    const fs::path package = folder / "sample.vantro";
    model::Project project = files::readProjectFile(package);
};

TEST_F(ProjectStore, WhatIsOpenElsewhereIsReadAndExportedButNotChangedUntilItIsClosedThere) {
    const auto before = edit();
    auto other = files::ProjectLock::take(package); // as another program holds it
    const auto access = files::storeOf(package).access(package);
    EXPECT_FALSE(access.lock);
    EXPECT_THAT(access.whyReadOnly, HasSubstr("open in another Vantro"));
    EXPECT_EQ(files::readProjectFile(package).name, "sample");
    const auto exported =
        test::vantro("export " + path("sample.vantro") + " --output " + path("film.mp4"));
    EXPECT_EQ(exported.exitCode, 0) << exported.output;

    project.edit.cursorScale = 1;
    EXPECT_THAT(failureOfSaving(project, package), HasSubstr("open in another Vantro"));
    const model::Project another{"another", {folder / "recording.mov", metadata}, {}};
    EXPECT_THAT(failureOfSaving(another, package), HasSubstr("open in another Vantro"));
    EXPECT_EQ(edit(), before);

    other->reset();
    EXPECT_EQ(failureOfSaving(project, package), "");
    EXPECT_EQ(files::readProjectFile(package).edit.cursorScale, 1);
}

/// Runs `task` in a process of somebody whom permissions bind. Whether it returned true.
bool succeedsForOthers(const std::function<bool()>& task) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool isBound = ::geteuid() != 0 || ::seteuid(nobody) == 0;
        ::_exit(isBound && task() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(ProjectStore, InAFolderOfSomebodyElseIsReadOnlyAndOpenElsewhereForEveryAccount) {
    constexpr auto readable = fs::perms::owner_read | fs::perms::owner_exec |
                              fs::perms::group_read | fs::perms::group_exec |
                              fs::perms::others_read | fs::perms::others_exec;
    fs::permissions(folder.path(), readable);
    fs::permissions(package, readable);
    const auto before = edit();
    EXPECT_TRUE(succeedsForOthers([&] {
        const auto access = files::storeOf(package).access(package);
        auto edited = files::readProjectFile(package);
        edited.edit.cursorScale = 1;
        return !access.lock && access.whyReadOnly == "Permission denied" &&
               failureOfSaving(edited, package).contains("Permission denied");
    }));
    const auto ours = files::ProjectLock::take(package);
    EXPECT_TRUE(succeedsForOthers([&] {
        return files::storeOf(package).access(package).whyReadOnly ==
               "it is open in another Vantro";
    }));
    fs::permissions(folder.path(), fs::perms::owner_all);
    fs::permissions(package, fs::perms::owner_all);
    EXPECT_EQ(edit(), before);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"recording.mov", "sample.vantro"}));
}

TEST_F(ProjectStore, KeepsItsLockWhereASaveReplacesTheWholePackage) {
    auto held = files::storeOf(package).access(package).lock;
    const model::Project another{"another", {folder / "recording.mov", metadata}, {}};
    auto saved = files::storeOf(package).save(package, another, true, held);
    held.reset();
    EXPECT_TRUE(saved.lock->isOf(package));
    EXPECT_FALSE(files::storeOf(package).access(package).lock);
    saved.lock.reset();
    EXPECT_TRUE(files::storeOf(package).access(package).lock);
}

TEST_F(ProjectStore, WhateverHappensToAnOpenPackageASaveEitherSucceedsOrSaysWhyAndHarmsNothing) {
    folder.write("beach.png", "picture");
    auto withPicture = project;
    withPicture.edit.background.type = model::BackgroundImageSource::custom(folder / "beach.png");
    struct Mishap {
        const char* what;
        std::function<void()> happens;
        const model::Project& edited;
        const char* told;
    };
    const auto elsewhere = folder / "moved.vantro";
    for (const auto& [what, happens, edited, told] : {
             Mishap{"moved", [&] { fs::rename(package, elsewhere); }, project, "No such file"},
             Mishap{"its folder is gone",
                    [&] {
                        fs::rename(package, elsewhere);
                        fs::create_directory(package);
                    },
                    project, "is not a project"},
             Mishap{"the picture is gone", [&] { fs::remove(folder / "beach.png"); }, withPicture,
                    "beach.png"},
             Mishap{"the disk is full", [] {}, project, "File too large"},
         }) {
        SCOPED_TRACE(what);
        const auto access = files::storeOf(package).access(package);
        const auto before = edit();
        happens();
        {
            const auto limit = std::string_view(what) == "the disk is full"
                                   ? std::optional<test::FileSizeLimit>(std::in_place, 100)
                                   : std::nullopt;
            EXPECT_THAT(failureOfSaving(edited, package, access.lock), HasSubstr(told));
        }
        if (fs::exists(elsewhere)) {
            fs::remove_all(package);
            fs::rename(elsewhere, package);
        }
        EXPECT_EQ(edit(), before);
        EXPECT_EQ(files::readProjectFile(package).recording.metadata(), metadata);
    }
}

TEST_F(ProjectStore, OpensNoPackageWhoseFilesAreNotWhatTheyAreNamed) {
    const auto failure = [&] {
        try {
            files::readProjectFile(package);
        } catch (const model::VantroError& error) {
            EXPECT_EQ(error.kind(), model::VantroError::Kind::projectOpenFailed);
            return error.message();
        }
        return std::string("no error");
    };
    fs::rename(package / "recording.mov", folder / "aside.mov");
    EXPECT_THAT(failure(), HasSubstr("recording.mov: no such file"));
    fs::create_directory(package / "recording.mov");
    EXPECT_THAT(failure(), HasSubstr("recording.mov: no such file"));
    fs::remove(package / "project.json");
    fs::create_directory(package / "project.json");
    EXPECT_THAT(failure(), HasSubstr("project.json"));
    fs::remove_all(package);
    folder.write("sample.vantro", "a file");
    EXPECT_THAT(failure(), HasSubstr("it is not a zip file"));
}

TEST_F(ProjectStore, OpensNoMovieUnderTheMetadataOfAnotherRecording) {
    const double length = media::Asset::open(package / "recording.mov").duration().seconds();
    const auto told = [&](double endTime) {
        auto other = project.recording.metadata();
        other.endTime = endTime;
        folder.write(
            "sample.vantro/project.json",
            model::encodeProject(
                {project.name, {project.recording.movie(), std::move(other)}, project.edit}));
    };
    for (const double near : {length, length + 1.9, std::max(length - 1.9, 0.1)}) {
        told(near);
        EXPECT_NO_THROW(files::readProjectFile(package)) << near;
    }
    for (const double far : {length + 20, 7200.0}) {
        told(far);
        const auto ran = test::vantro("inspect " + path("sample.vantro"));
        EXPECT_EQ(ran.exitCode, 1) << far;
        EXPECT_THAT(ran.output, HasSubstr("do not belong together")) << far;
    }
}

} // namespace
} // namespace vantro::app
