// What editing a recording of two hours costs: steps, undo, opening and saving, with the bytes that
// each allocates. Beside them a peer: a flat copy of the records, as an undo by value would make,
// and nlohmann::json over the same text.

#include "app/files/ProjectStores.h"
#include "app/state/EditDocument.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <new>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace {

std::size_t allocatedBytes = 0;

} // namespace

void* operator new(std::size_t size) {
    allocatedBytes += size;
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

using namespace vantro;
namespace fs = std::filesystem;

constexpr double length = 7200; // seconds
constexpr int sampleCount = 450'000;
constexpr int clickCount = 2'000;
constexpr int segmentCount = 200;

model::Project twoHours(const fs::path& movie) {
    model::RecordingMetadata metadata;
    metadata.endTime = length;
    metadata.captureRect = {0, 0, 1920, 1080};
    for (int i = 0; i < sampleCount; ++i)
        metadata.cursorPositions.push_back({.x = 960 + 900 * std::sin(i * 1e-3),
                                            .y = 540 + 500 * std::cos(i * 1e-3),
                                            .timestamp = i * length / sampleCount});
    for (int i = 0; i < clickCount; ++i)
        metadata.clickEvents.push_back(
            {.x = i % 1900 + 0.5, .y = i % 1000 + 0.25, .timestamp = i * length / clickCount});
    auto edit = model::freshEdit(metadata);
    std::vector<model::TimelineSegment> segments;
    for (int i = 0; i < segmentCount; ++i)
        segments.push_back({.startFraction = i / double{segmentCount},
                            .endFraction = (i + 0.9) / segmentCount,
                            .speed = 1 + i % 3 * 0.5});
    edit.segments = std::move(segments);
    return {
        .name = "two hours", .recording = {movie, std::move(metadata)}, .edit = std::move(edit)};
}

/// The project on disk, with an empty file for a movie; removed at the end.
class Package {
  public:
    Package() {
        auto pattern = (fs::temp_directory_path() / "vantro-bench-XXXXXX").string();
        m_folder = ::mkdtemp(pattern.data());
        std::ofstream(m_folder / "recording.mov") << "movie";
        project = app::files::saveProject(path(), twoHours(m_folder / "recording.mov"), true);
    }
    ~Package() { fs::remove_all(m_folder); }
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    fs::path path() const { return m_folder / "film.vantro"; }
    std::string text() const {
        std::ifstream file(path() / "project.json", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    fs::path m_folder;

  public:
    model::Project project = twoHours({});
};

const Package& package() {
    static const Package made;
    return made;
}

/// Times `action` and reports the bytes that one run of it allocates.
template <typename Action>
void measure(benchmark::State& state, const Action& action) {
    const auto before = allocatedBytes;
    for (auto _ : state)
        action();
    state.counters["bytes"] = benchmark::Counter(static_cast<double>(allocatedBytes - before),
                                                 benchmark::Counter::kAvgIterations);
}

void sliderStep(benchmark::State& state) {
    app::EditDocument document("");
    document.open(package().project);
    double scale = 1;
    measure(state, [&] {
        auto edit = document.edit();
        edit.cursorScale = scale += 1e-6;
        document.apply(std::move(edit), {.name = "Resize Pointer", .mergeKey = "cursor scale"});
    });
}
BENCHMARK(sliderStep);

void clickMoved(benchmark::State& state) {
    app::EditDocument document("");
    document.open(package().project);
    measure(state, [&] {
        auto edit = document.edit();
        auto clicks = edit.clickEvents.list();
        clicks[clickCount / 2].timestamp += 1e-6;
        edit.clickEvents = std::move(clicks);
        document.apply(std::move(edit), {"Change"});
    });
}
BENCHMARK(clickMoved);

void segmentChanged(benchmark::State& state) {
    app::EditDocument document("");
    document.open(package().project);
    measure(state, [&] {
        auto edit = document.edit();
        auto segments = edit.segments.list();
        segments[segmentCount / 2].speed += 1e-6;
        edit.segments = std::move(segments);
        document.apply(std::move(edit), {"Change"});
    });
}
BENCHMARK(segmentChanged);

void undoAndRedo(benchmark::State& state) {
    app::EditDocument document("");
    document.open(package().project);
    auto edit = document.edit();
    edit.webcamHidden = true;
    document.apply(std::move(edit), {"Change"});
    measure(state, [&] {
        document.undo();
        document.redo();
    });
}
BENCHMARK(undoAndRedo);

void peerFlatCopy(benchmark::State& state) {
    const auto& project = package().project;
    measure(state, [&] {
        auto metadata = project.recording.metadata();
        auto clicks = project.edit.clickEvents.list();
        auto segments = project.edit.segments.list();
        benchmark::DoNotOptimize(metadata);
        benchmark::DoNotOptimize(clicks);
        benchmark::DoNotOptimize(segments);
    });
}
BENCHMARK(peerFlatCopy);

void openProject(benchmark::State& state) {
    measure(state, [&] {
        auto project = app::files::readProjectFile(package().path());
        benchmark::DoNotOptimize(project);
    });
}
BENCHMARK(openProject)->Unit(benchmark::kMillisecond);

void peerParse(benchmark::State& state) {
    measure(state, [&] {
        auto document = nlohmann::json::parse(package().text());
        benchmark::DoNotOptimize(document);
    });
}
BENCHMARK(peerParse)->Unit(benchmark::kMillisecond);

void saveInPlace(benchmark::State& state) {
    measure(state, [&] { app::files::saveProject(package().path(), package().project, true); });
}
BENCHMARK(saveInPlace)->Unit(benchmark::kMillisecond);

void peerWrite(benchmark::State& state) {
    const auto document = nlohmann::json::parse(package().text());
    const auto file = package().path().parent_path() / "peer.json";
    measure(state, [&] { std::ofstream(file) << document.dump(2); });
}
BENCHMARK(peerWrite)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
