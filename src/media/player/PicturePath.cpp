#include "media/player/PicturePath.h"

#include <algorithm>
#include <cmath>

namespace vantro::media::player {

PicturePath::PicturePath(MediaTime frameDuration, double rate, std::optional<PlannedJump> jump,
                         MediaTime end)
    : m_frameDuration(frameDuration), m_rate(rate), m_jump(jump), m_end(end) {}

Fraction PicturePath::stepOf(double rate) const {
    constexpr int parts = 100; // rates are told apart as finely as that
    const auto share = std::lround(std::max(rate, 1.0) * parts);
    return Fraction(m_frameDuration) * Fraction(share, parts);
}

double PicturePath::step(bool afterJump) const {
    const double rate = afterJump && m_jump ? m_jump->rate : m_rate;
    return m_frameDuration.seconds() * std::max(rate, 1.0);
}

std::optional<PathPoint> PicturePath::after(PathPoint point) const {
    const bool jumped = point.afterJump && m_jump;
    const Fraction step = stepOf(jumped ? m_jump->rate : m_rate);
    const WideInteger index = (Fraction(point.time) / step + Fraction(1, 2)).ceiling();
    const MediaTime next = MediaTime::nearestTo(step * Fraction(index, 1));
    if (m_jump && !jumped && point.time < m_jump->from && next >= m_jump->from)
        return PathPoint{m_jump->to, true};
    if (next >= m_end)
        return {};
    return PathPoint{next, point.afterJump};
}

bool PicturePath::leadsTo(PathPoint point, const PicturePath& other) const {
    if (point.afterJump)
        return m_jump.has_value() && m_jump == other.m_jump;
    return !m_jump || point.time < m_jump->from;
}

} // namespace vantro::media::player
