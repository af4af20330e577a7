// A player's sound through private sound servers without a card, first with an idle machine, then
// with every processor busy:
//   clock    told times against when the monitor hears the same click: median and worst,
//   milliseconds seek     from the call until the other place is heard: median and worst,
//   milliseconds holes    in ten seconds of a tone
// usage: sound_bench

#include "media/pulse/PulseSound.h"
#include "media/values/AudioBuffer.h"
#include "support/Eventually.h"
#include "support/SoundServer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stop_token>
#include <thread>
#include <vector>

#include <fmt/format.h>

namespace {

using namespace vantro;
using test::MonitorRecorder;
using test::SoundServer;

media::MediaTime at(double seconds) {
    return media::MediaTime::fromSeconds(seconds);
}

/// Ten seconds of clicks, ten of 440 Hz, ten of a louder 440 Hz.
media::Composition movie(const test::TemporaryFolder& folder) {
    const auto path = folder / "sound.mov";
    const auto command = fmt::format(
        "ffmpeg -nostdin -v error -f lavfi -i "
        "\"aevalsrc='0.8*lt(t,10)*lt(mod(t+0.1,0.2),0.002)*sin(2*PI*2000*t)+"
        "gte(t,10)*(0.1+0.6*gte(t,20))*sin(2*PI*440*t)':s=48000:d=30\" -c:a pcm_s16le '{}'",
        path.string());
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe)
        throw std::runtime_error("no movie");
    const auto asset = media::Asset::open(path);
    media::Composition composition(asset);
    composition.addTrack(media::MediaType::audio)
        .insert({{}, asset.duration()}, asset.tracks().front(), {});
    return composition;
}

std::vector<double> beginnings(const MonitorRecorder& monitor, std::size_t from, float level) {
    const auto sound = monitor.sound();
    std::vector<double> times;
    std::size_t quiet = 1000;
    for (std::size_t i = from; i * 2 < sound.size(); ++i) {
        if (std::abs(sound[i * 2]) < level) {
            ++quiet;
            continue;
        }
        if (quiet >= 1000)
            times.push_back(monitor.timeOf(i));
        quiet = 0;
    }
    return times;
}

std::string medianAndWorst(std::vector<double> values) {
    std::ranges::sort(values, {}, [](double value) { return std::abs(value); });
    return values.empty() ? "none"
                          : fmt::format("{:.1f}/{:.1f}", values[values.size() / 2] * 1000,
                                        values.back() * 1000);
}

std::string clockError(media::player::PlayerSound& sound, const MonitorRecorder& monitor) {
    std::vector<media::player::SoundReading> told;
    const auto first = monitor.sound().size() / 2;
    sound.play(at(0), 1, {});
    test::eventually([&] {
        if (const auto reading = sound.reading())
            told.push_back(*reading);
        return !told.empty() && told.back().time > at(8);
    });
    sound.pause();
    const auto heard = beginnings(monitor, first, 0.1F);
    std::vector<double> errors;
    for (double item = 0.3; item < 7.5; item += 0.2) {
        const auto reading = std::ranges::find_if(
            told, [=](const auto& each) { return each.time.seconds() >= item; });
        if (reading == told.end())
            break;
        const double toldAt =
            base::inSeconds(reading->at.time_since_epoch()) - (reading->time.seconds() - item);
        const auto nearest = std::ranges::min_element(
            heard, {}, [=](double time) { return std::abs(time - toldAt); });
        if (nearest != heard.end())
            errors.push_back(toldAt - *nearest);
    }
    return medianAndWorst(errors);
}

std::string seekTime(media::player::PlayerSound& sound, const MonitorRecorder& monitor) {
    std::vector<double> times;
    for (int seek = 0; seek < 12; ++seek) {
        sound.play(at(11), 1, {});
        monitor.hear(0.5);
        const auto first = monitor.sound().size() / 2;
        const double called = base::inSeconds(base::hostNow().time_since_epoch());
        sound.play(at(21), 1, {});
        monitor.hear(0.5);
        const auto heard = beginnings(monitor, first, 0.2F);
        times.push_back(heard.empty() ? 1 : heard.front() - called);
    }
    sound.pause();
    return medianAndWorst(times);
}

int holes(media::player::PlayerSound& sound, const MonitorRecorder& monitor) {
    sound.play(at(20), 1, {});
    monitor.hear(0.5);
    const auto first = monitor.sound().size() / 2;
    monitor.hear(9);
    const auto heard = monitor.sound();
    sound.pause();
    int found = 0;
    int quiet = 0;
    for (auto i = first; i * 2 < heard.size(); ++i) {
        quiet = std::abs(heard[i * 2]) < 0.05F ? quiet + 1 : 0;
        found += quiet == media::mixing::sampleRate / 1000 ? 1 : 0;
    }
    return found;
}

} // namespace

int main() {
    fmt::print("{:12}{:8}{:>14}{:>14}{:>8}\n", "", "", "clock", "seek", "holes");
    for (const auto kind : {SoundServer::Kind::pipewire, SoundServer::Kind::pulseaudio}) {
        if (!SoundServer::isInstalled(kind))
            continue;
        const test::TemporaryFolder folder;
        const auto composition = movie(folder);
        SoundServer server(kind);
        server.start();
        for (const bool isBusy : {false, true}) {
            std::vector<std::jthread> work;
            for (unsigned i = 0; isBusy && i < std::thread::hardware_concurrency(); ++i)
                work.emplace_back([](const std::stop_token& stop) {
                    while (!stop.stop_requested()) {
                    }
                });
            const auto sound = media::pulse::makePulseSound(composition);
            const MonitorRecorder monitor(kind);
            const auto clock = clockError(*sound, monitor);
            const auto seek = seekTime(*sound, monitor);
            fmt::print("{:12}{:8}{:>14}{:>14}{:>8}\n",
                       kind == SoundServer::Kind::pipewire ? "PipeWire" : "PulseAudio",
                       isBusy ? "busy" : "idle", clock, seek, holes(*sound, monitor));
            std::fflush(stdout);
        }
    }
}
