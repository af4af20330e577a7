// Pictures to encode, and what encoders make of them, for encoder.sh. Pictures are raw i420 of
// 1920x1080 pixels, 60 a second.
//   encoder_bench screen KIND FRAMES PICTURES    a screen as it is recorded
//   encoder_bench film KIND FRAMES PICTURES      the film of a recording of that screen
//   encoder_bench project PROJECT PICTURES       the film of a project
//   encoder_bench encode SETTINGS PICTURES MOVIE prints seconds of processor and of wall, and MB
// SETTINGS are fast, balanced, small or live, as the program has them, or live or film and options
// of libx264: film:preset=superfast:bf=0:threads=3:8x8dct=1
// Live ones have a keyframe every half second, as recordings, unless `gop` says otherwise.

#include "Material.h"
#include "app/files/ProjectStores.h"
#include "media/AssetWriter.h"
#include "media/VideoCompositionReader.h"
#include "media/av/encode/SoftwareEncoder.h"
#include "media/av/movie/MovieMuxer.h"
#include "media/color/ColorConversion.h"
#include "media/values/VideoQuality.h"
#include "render/MovieSession.h"
#include "render/RendererFactory.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>
#include <sys/resource.h>

namespace {

using namespace vantro;

constexpr int width = 1920;
constexpr int height = 1080;
constexpr int frameRate = 60;

bench::Material materialFrom(const std::string& name) {
    const auto found = std::ranges::find(bench::materialNames, name);
    if (found == bench::materialNames.end())
        throw std::runtime_error("no material is called " + name);
    return static_cast<bench::Material>(found - bench::materialNames.begin());
}

template <typename Transfer>
void forEachRow(const media::PixelBuffer& picture, Transfer&& transfer) {
    for (int plane = 0; plane < picture.planeCount(); ++plane)
        for (int y = 0; y < picture.planeHeight(plane); ++y)
            transfer(plane, y, plane == 0 ? width : width / 2);
}

void store(const media::PixelBuffer& i420, std::ofstream& file) {
    forEachRow(i420, [&](int plane, int y, int bytes) {
        file.write(reinterpret_cast<const char*>(i420.row(plane, y)), bytes);
    });
    if (!file)
        throw std::runtime_error("the pictures cannot be written");
}

bool load(std::ifstream& file, media::PixelBuffer& i420) {
    forEachRow(i420, [&](int plane, int y, int bytes) {
        file.read(reinterpret_cast<char*>(i420.mutableRow(plane, y)), bytes);
    });
    return !file.fail();
}

std::shared_ptr<media::PixelBuffer> screenAt(bench::Material material, int frame) {
    auto screen = media::PixelBuffer::allocate(media::PixelFormat::bgra, width, height);
    bench::drawScreen(material, frame, *screen);
    return screen;
}

void writeScreens(bench::Material material, int frames, const char* path) {
    std::ofstream file(path, std::ios::binary);
    const auto i420 = media::PixelBuffer::allocate(media::PixelFormat::i420, width, height);
    for (int frame = 0; frame < frames; ++frame) {
        media::color::convertBgraToI420(*screenAt(material, frame), *i420);
        store(*i420, file);
    }
}

void writeRecording(bench::Material material, int frames, const std::filesystem::path& movie) {
    media::AssetWriter writer(
        movie, media::FileType::quickTimeMovie,
        {.width = width, .height = height, .averageBitRate = 50'000'000, .expectsRealTime = true});
    writer.startWriting();
    writer.startSession({0, frameRate});
    for (int frame = 0; frame < frames; ++frame) {
        while (!writer.isReadyForMoreMediaData())
            std::this_thread::yield();
        writer.append({screenAt(material, frame), {frame, frameRate}, {1, frameRate}});
    }
    writer.finish(media::MediaTime{frames, frameRate});
}

/// Its default edit; what is zoomed into is what somebody clicks on every two seconds.
model::Project projectOf(bench::Material material, int frames, const std::filesystem::path& movie) {
    model::RecordingMetadata metadata;
    metadata.endTime = static_cast<double>(frames) / frameRate;
    metadata.captureRect = {0, 0, width, height};
    for (int frame = 0; frame < frames; ++frame)
        metadata.cursorPositions.push_back({600.0 + frame % 240 * 3, 300.0 + frame % 180 * 2,
                                            static_cast<double>(frame) / frameRate});
    if (material == bench::Material::zooms)
        for (double time = 0.5; time < metadata.endTime; time += 4)
            metadata.clickEvents.push_back(
                {.x = 500 + 200 * time, .y = 300 + 80 * time, .timestamp = time + 1});
    auto edit = model::freshEdit(metadata);
    return {"film", model::Recording(movie, std::move(metadata)), std::move(edit)};
}

void writeFilm(const model::Project& project, const char* path) {
    render::MovieSession session(project.recording, project.edit,
                                 render::makeRenderer(render::RendererChoice::software));
    media::VideoCompositionReader reader(
        session.composition(), session.video({width, height}, frameRate), media::PixelFormat::i420);
    std::ofstream file(path, std::ios::binary);
    while (const auto frame = reader.copyNextFrame())
        store(*frame->pixels, file);
}

/// One of the program's own settings, or others for libx264.
media::av::CodecSession openEncoder(const std::string& text) {
    std::istringstream parts(text);
    std::string name;
    std::getline(parts, name, ':');
    media::VideoSettings settings{.width = width, .height = height};
    settings.expectsRealTime = name == "live";
    settings.averageBitRate = settings.expectsRealTime ? 50'000'000 : 20'000'000;
    if (parts.eof()) {
        settings.quality = media::videoQualityFrom(name).value_or(media::VideoQuality::fast);
        return media::av::openSoftwareEncoder(settings);
    }
    auto codec = media::av::makeEncoder("libx264", settings);
    if (settings.expectsRealTime) {
        media::av::setOption(*codec, "tune", "zerolatency");
        media::av::setOption(*codec, "forced-idr", "1");
    }
    codec->gop_size = 2 * frameRate;
    std::string rest;
    for (std::string part; std::getline(parts, part, ':');) {
        const auto equals = part.find('=');
        const auto key = part.substr(0, equals);
        const auto value = part.substr(equals + 1);
        if (key == "preset")
            media::av::setOption(*codec, "preset", value);
        else if (key == "bf")
            codec->max_b_frames = std::stoi(value);
        else if (key == "threads")
            codec->thread_count = std::stoi(value);
        else if (key == "gop")
            codec->gop_size = std::stoi(value);
        else if (key == "rate")
            codec->bit_rate = std::stoll(value);
        else if (key == "crf")
            media::av::setOption(*codec, "crf", value);
        else if (key == "maxrate")
            codec->rc_max_rate = std::stoll(value);
        else if (key == "bufsize")
            codec->rc_buffer_size = std::stoi(value);
        else
            rest += (rest.empty() ? "" : ":") + part;
    }
    media::av::setOption(*codec, "x264-params", rest);
    media::av::openEncoder(*codec);
    return {"libx264", std::move(codec)};
}

double processorSeconds() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return time.tv_sec + time.tv_usec * 1e-6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// The most that the process ever held, in MB.
double peakMemory() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024 / 1e6;
}

struct Cost {
    double processor = 0;
    std::chrono::duration<double> wall{};
};

template <typename Work>
void charge(Cost& cost, Work&& work) {
    const auto processor = processorSeconds();
    const auto start = std::chrono::steady_clock::now();
    work();
    cost.processor += processorSeconds() - processor;
    cost.wall += std::chrono::steady_clock::now() - start;
}

/// After how many pictures a keyframe is asked for; 0 where the encoder decides.
int forcedInterval(const std::string& settings) {
    const bool isForced = settings.starts_with("live") && !settings.contains(":gop=");
    return isForced ? frameRate / 2 : 0;
}

void encode(const std::string& settings, const char* input, const char* output) {
    auto encoder = openEncoder(settings);
    const int interval = forcedInterval(settings);
    media::av::MovieMuxer muxer(output, output, media::FileType::mpeg4);
    const int track = muxer.addTrack(encoder.context());
    muxer.begin();
    const auto ticks = encoder.context().time_base.den / frameRate;
    const auto write = [&](media::av::EncodedPacket& packet) {
        packet.setDuration(ticks);
        muxer.write(track, packet);
    };
    std::ifstream file(input, std::ios::binary);
    media::PixelBufferPool pool(media::PixelFormat::i420, width, height);
    Cost cost;
    std::int64_t count = 0;
    for (auto picture = pool.take(); load(file, *picture); picture = pool.take(), ++count)
        charge(cost, [&] {
            const auto frame = media::av::encoderFrame(std::move(picture), count * ticks);
            if (interval > 0 && count % interval == 0)
                frame->pict_type = AV_PICTURE_TYPE_I;
            if (!encoder.encode(frame.get(), write))
                throw std::runtime_error("the encoder failed");
        });
    charge(cost, [&] { encoder.encode(nullptr, write).value(); });
    muxer.finish();
    fmt::print("{:.2f} {:.2f} {:.0f}\n", cost.processor, cost.wall.count(), peakMemory());
}

int run(const std::vector<std::string>& words) {
    const auto is = [&](const char* name, std::size_t count) {
        return words.size() == count && words[0] == name;
    };
    if (is("screen", 4)) {
        writeScreens(materialFrom(words[1]), std::stoi(words[2]), words[3].c_str());
    } else if (is("film", 4)) {
        const auto movie = words[3] + ".mov";
        const int frames = std::stoi(words[2]);
        writeRecording(materialFrom(words[1]), frames, movie);
        writeFilm(projectOf(materialFrom(words[1]), frames, movie), words[3].c_str());
        std::filesystem::remove(movie);
    } else if (is("project", 3)) {
        writeFilm(app::files::readProjectFile(words[1]), words[2].c_str());
    } else if (is("encode", 4)) {
        encode(words[1], words[2].c_str(), words[3].c_str());
    } else {
        std::fputs("usage: see the head of encoder_bench.cpp\n", stderr);
        return 2;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "encoder_bench: %s\n", error.what());
        return 1;
    }
}
