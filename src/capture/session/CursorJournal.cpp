#include "capture/session/CursorJournal.h"

#include "base/Log.h"
#include "base/SerialQueue.h"
#include "model/Json.h"

#include <charconv>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

namespace vantro::capture {
namespace {

// Places that are written at once: an eighth of a second. More would be lost with the program; with
// fewer the thread that writes them wakes so much more often.
constexpr int placesAtOnce = 8;
// Batches that wait for the disk. More would only be lost later.
constexpr std::size_t longestQueue = 1024;

/// The next of a line's numbers, which single blanks separate; nothing where there is none.
std::optional<double> nextNumber(std::string_view& line) {
    if (!line.starts_with(' '))
        return {};
    line.remove_prefix(1);
    double number = 0;
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (error != std::errc())
        return {};
    line.remove_prefix(static_cast<std::size_t>(end - line.data()));
    return number;
}

constexpr std::string_view systemSoundLine = "sound system";
constexpr std::string_view microphoneLine = "sound microphone";

/// Adds what a line tells; false when it makes no sense.
bool take(std::string_view line, model::RecordingMetadata& metadata) {
    if (line == systemSoundLine || line == microphoneLine) {
        (line == systemSoundLine ? metadata.hasSystemAudio : metadata.hasMicrophoneAudio) = true;
        return true;
    }
    const auto space = line.find(' ');
    const auto kind = line.substr(0, space);
    line.remove_prefix(std::min(space, line.size()));
    const auto x = nextNumber(line);
    const auto y = nextNumber(line);
    const auto timestamp = nextNumber(line);
    if (!x || !y || !timestamp || !line.empty())
        return false;
    if (kind == "at") {
        metadata.cursorPositions.push_back({.x = *x, .y = *y, .timestamp = *timestamp});
        return true;
    }
    if (kind != "left" && kind != "right")
        return false;
    model::ClickEvent click;
    click.x = *x;
    click.y = *y;
    click.timestamp = *timestamp;
    click.isRightClick = kind == "right";
    metadata.clickEvents.push_back(click);
    return true;
}

} // namespace

CursorJournal::CursorJournal(const std::filesystem::path& movie,
                             const model::RecordingMetadata& description)
    : m_journal(cursorJournalPath(movie)), m_batches(longestQueue) {
    m_journal.append(model::encodeMetadata(description)); // the thread tells of a failure
    m_thread = std::jthread([this] { run(); });
}

CursorJournal::~CursorJournal() {
    flush();
    m_batches.close();
}

void CursorJournal::add(const model::CursorPosition& position) {
    add(fmt::format("at {} {} {}", position.x, position.y, position.timestamp), false);
}

void CursorJournal::add(const model::ClickEvent& click) {
    add(fmt::format("{} {} {} {}", click.isRightClick ? "right" : "left", click.x, click.y,
                    click.timestamp),
        true);
}

void CursorJournal::add(std::string line, bool isUrgent) {
    auto due = m_batch.with([&](Batch& batch) {
        batch.lines += batch.count++ > 0 ? '\n' + line : line;
        return isUrgent || batch.count >= placesAtOnce ? std::exchange(batch, {}) : Batch();
    });
    if (due.count > 0)
        m_batches.tryPush(std::move(due.lines));
}

void CursorJournal::flush() {
    auto rest = m_batch.with([](Batch& batch) { return std::exchange(batch, {}); });
    if (rest.count > 0)
        m_batches.tryPush(std::move(rest.lines));
}

void CursorJournal::add(SoundKind sound) {
    add(std::string(sound == SoundKind::system ? systemSoundLine : microphoneLine), true);
}

void CursorJournal::run() {
    base::setThreadName("cursor.journal");
    while (const auto lines = m_batches.pop()) {
        if (m_journal.append(*lines))
            continue;
        base::logWarning(
            "The pointer's journal cannot be written; clicks would not survive the program");
        m_batches.abandon();
    }
}

std::filesystem::path cursorJournalPath(const std::filesystem::path& movie) {
    return std::filesystem::path(movie) += ".cursor";
}

model::RecordingMetadata readCursorJournal(const std::filesystem::path& movie) {
    const auto lines = base::readJournal(cursorJournalPath(movie));
    if (lines.empty())
        throw std::runtime_error(cursorJournalPath(movie).string() + ": empty");
    auto metadata = model::decodeMetadata(lines.front());
    for (const auto& line : std::span(lines).subspan(1))
        if (!take(line, metadata))
            break;
    if (!metadata.cursorPositions.empty())
        metadata.endTime = metadata.cursorPositions.back().timestamp;
    return metadata;
}

} // namespace vantro::capture
