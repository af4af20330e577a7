#include "render/software/TilePainter.h"

#include "media/color/ColorConversion.h"

#include <cstring>

namespace vantro::render::software {
namespace {

void copyTile(const media::PixelBuffer& from, const Tile& tile, media::PixelBuffer& to) {
    const int pixelBytes = from.format() == media::PixelFormat::bgra ? 4 : 1;
    for (int plane = 0; plane < from.planeCount(); ++plane) {
        const int shift = plane == 0 ? 0 : 1;
        const int left = (tile.columns.begin >> shift) * pixelBytes;
        const int right = ((tile.columns.end + shift) >> shift) * pixelBytes;
        const int bottom = (tile.rows.end + shift) >> shift;
        for (int y = tile.rows.begin >> shift; y < bottom; ++y)
            std::memcpy(to.mutableRow(plane, y) + left, from.row(plane, y) + left,
                        static_cast<std::size_t>(right - left));
    }
}

void resizeRow(std::vector<std::uint8_t>& row, int pixels) {
    row.resize((static_cast<std::size_t>(pixels) + columnOverread) * 4);
}

} // namespace

void TilePainter::paint(const FramePlan& plan, const Grounds& grounds, const Tile& tile,
                        media::PixelBuffer& output) {
    Tile live = tile;
    if (grounds.still != nullptr) {
        live = plan.livePart(tile);
        if (live.columns.length() < tile.columns.length() ||
            live.rows.length() < tile.rows.length())
            copyTile(*grounds.still, tile, output);
    }
    if (live.isEmpty())
        return;
    m_backdrop = grounds.backdrop;
    prepare(plan, live);
    if (output.format() == media::PixelFormat::bgra)
        writeBgra(output);
    else
        writeI420(output);
}

void TilePainter::prepare(const FramePlan& plan, const Tile& part) {
    m_plan = &plan;
    m_part = part;
    if (plan.backdropX && plan.backdropY) {
        m_magnified.prepare(*plan.backdropX, *plan.backdropY, part.columns);
        m_magnified.setInput([this](int y) {
            return m_backdrop->row(0, y) + std::ptrdiff_t{m_magnified.texelColumns().begin} * 4;
        });
        resizeRow(m_backdropRow, part.columns.length());
    }
    m_recording.prepare(plan.recording, part);
    if (plan.cursor)
        m_cursor.prepare(*plan.cursor, part);
    if (plan.webcam)
        m_webcam.prepare(*plan.webcam, part);
}

/// What lies under the recording in a row of the part; none where nothing of it is seen.
const std::uint8_t* TilePainter::backdropRow(int row) {
    if (m_backdrop == nullptr || m_recording.covers(row))
        return nullptr;
    if (!m_plan->backdropX)
        return m_backdrop->row(0, row) + std::ptrdiff_t{m_part.columns.begin} * 4;
    m_magnified.write(row, m_backdropRow.data());
    return m_backdropRow.data();
}

void TilePainter::writeOutputRow(int row, std::uint8_t* out) {
    m_recording.write(row, backdropRow(row), out);
    if (m_plan->cursor)
        m_cursor.blend(row, out);
    if (m_plan->webcam)
        m_webcam.blend(row, out);
}

void TilePainter::writeBgra(media::PixelBuffer& output) {
    for (int row = m_part.rows.begin; row < m_part.rows.end; ++row)
        writeOutputRow(row, output.mutableRow(0, row) + std::ptrdiff_t{m_part.columns.begin} * 4);
}

void TilePainter::writeI420(media::PixelBuffer& output) {
    const int left = m_part.columns.begin;
    for (auto& row : m_outputRows)
        resizeRow(row, m_part.columns.length());
    for (int row = m_part.rows.begin; row < m_part.rows.end; row += 2) {
        const int next = row + 1 < m_part.rows.end ? 1 : 0; // a last odd row stands for its pair
        for (int i = 0; i <= next; ++i)
            writeOutputRow(row + i, m_outputRows[static_cast<std::size_t>(i)].data());
        media::color::bgraRowsToI420(
            m_outputRows[0].data(), m_outputRows[static_cast<std::size_t>(next)].data(),
            m_part.columns.length(), output.mutableRow(0, row) + left,
            output.mutableRow(0, row + next) + left, output.mutableRow(1, row / 2) + left / 2,
            output.mutableRow(2, row / 2) + left / 2);
    }
}

} // namespace vantro::render::software
