// What there is to record, and what becomes of a recording where there is nothing.
#include "capture/sound/SoundRecordingFixture.h"
#include "capture/sound/SoundWatch.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vantro::capture::sound {
namespace {

class SoundPresence : public SoundRecording {};

INSTANTIATE_TEST_SUITE_P(, SoundPresence, testing::Values(Kind::pipewire, Kind::pulseaudio),
                         serverName);

TEST_P(SoundPresence, GoesOnWithoutWhatIsNotThere) {
    const auto recorded = [](const SourceSwitches& sources) {
        Recording recording(sources);
        EXPECT_TRUE(recording.goesOnFor(200ms));
        recording.stop();
        EXPECT_TRUE(media::Asset::open(recording.movie).tracks(media::MediaType::audio).empty());
        EXPECT_GT(recording.metadata.endTime, 0.1);
        return recording.session->statistics().lostSources;
    };
    server->removeMicrophone("mic"); // what is left of inputs are monitors
    EXPECT_THAT(recorded(microphoneOnly),
                testing::ElementsAre("Microphone: there is no microphone"));
    auto named = microphoneOnly;
    named.microphoneDevice = "box.monitor";
    EXPECT_THAT(recorded(named), testing::ElementsAre("Microphone: there is no box.monitor"));
    server->crash();
    EXPECT_THAT(recorded(systemOnly),
                testing::ElementsAre("System audio: there is no sound server"));
}

TEST_P(SoundPresence, ListsDevicesAsTheyComeAndGo) {
    const auto names = [](const SoundWatch& watch) {
        std::vector<std::string> found;
        if (const auto devices = watch.devices(); devices && *devices)
            for (const auto& device : **devices)
                found.push_back(device.name + (device.isDefault ? " default" : ""));
        return found;
    };
    std::atomic<int> changes = 0;
    const SoundWatch watch([&] { ++changes; });
    ASSERT_TRUE(eventually([&] {
        const auto found = names(watch);
        return std::ranges::count(found, "box.monitor default") == 1 &&
               std::ranges::count(found, "mic default") == 1;
    }));
    EXPECT_EQ(abilitiesOf(*watch.devices()), SoundAbilities{});
    server->removeMicrophone("mic");
    EXPECT_TRUE(
        eventually([&] { return !abilitiesOf(*watch.devices()).microphone.isAvailable(); }));
    server->crash();
    EXPECT_TRUE(eventually([&] { return !watch.devices()->has_value(); }));
    EXPECT_GE(changes, 3);
    EXPECT_FALSE(makePulseSoundDevices()->list());
}

TEST_P(SoundPresence, MetersWhatARecordingWouldTake) {
    const auto devices = makePulseSoundDevices();
    const auto system = devices->meter(SoundKind::system, {});
    const auto microphone = devices->meter(SoundKind::microphone, {});
    const auto reads = [](const SoundMeter& meter, double least, double most) {
        return eventually([&] {
            const auto reading = meter.reading();
            return reading && reading->level >= least && reading->level <= most;
        });
    };
    {
        const TonePlayer speakers("box", 440); // of amplitude 0.5
        EXPECT_TRUE(reads(*system, 0.4, 0.6));
        EXPECT_TRUE(reads(*microphone, 0, 0.01)) << "never the speakers in its place";
        const TonePlayer voice("mic_feed", 1000);
        EXPECT_TRUE(reads(*microphone, 0.4, 0.6));
    }
    EXPECT_TRUE(reads(*system, 0, 0.01)) << "it falls again";
    server->removeMicrophone("mic");
    EXPECT_TRUE(eventually([&] { return !microphone->reading(); }));
    server->addMicrophone("mic");
    EXPECT_TRUE(eventually([&] { return microphone->reading().has_value(); }));
}

TEST(SoundServerAbsence, AServerThatNeverAnswersIsGivenUp) {
    const TemporaryFolder folder;
    const auto place = (folder / "deaf").string();
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    place.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 4), 0);
    ::setenv("PULSE_SERVER", ("unix:" + place).c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    const auto source = makePulseSoundDevices()->open(SoundKind::system, {});
    ::unsetenv("PULSE_SERVER"); // NOLINT(concurrency-mt-unsafe)
    ::close(listener);
    ASSERT_FALSE(source);
    EXPECT_EQ(source.error().reason, "the sound server does not answer");
}

} // namespace
} // namespace vantro::capture::sound
