#pragma once

#include "base/HostClock.h"
#include "capture/SoundMeter.h"

#include <QObject>

#include <QtQml/qqmlregistration.h>

namespace vantro::window::devices {

/// What a level meter shows of one sound, in whole decibels of full scale from −60 to 0, so that it
/// seldom changes. Main thread.
class SourceMeter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool shown READ isShown NOTIFY changed) ///< there is something to meter
    Q_PROPERTY(int level READ level NOTIFY changed)
    Q_PROPERTY(int peak READ peak NOTIFY changed) ///< the highest level of late
    Q_PROPERTY(
        bool silent READ isSilent NOTIFY changed) ///< for so long that something may be wrong

  public:
    static constexpr int lowest = -60;

    bool isShown() const { return m_shown.isShown; }
    int level() const { return m_shown.level; }
    int peak() const { return m_shown.peak; }
    bool isSilent() const { return m_shown.isSilent; }

    /// Nothing where nothing is metered.
    void show(const std::optional<capture::SoundMeter::Reading>& reading, base::HostTime now);

  Q_SIGNALS:
    void changed();

  private:
    struct Shown {
        bool isShown = false;
        int level = lowest;
        int peak = lowest;
        bool isSilent = false;
        bool operator==(const Shown&) const = default;
    };

    Shown m_shown;
    base::HostTime m_peakAt;
};

} // namespace vantro::window::devices
