#pragma once

#include "capture/PointerSource.h"
#include "capture/x11/X11CapturePlatform.h"
#include "capture/x11/X11Content.h"

#include <string>

namespace vantro::capture::x11 {

/// The pointer of one X server, asked on a connection of its own. Click monitors open theirs.
class X11PointerSource final : public PointerSource {
  public:
    X11PointerSource(X11Connection connection, std::string display, const X11Geometry& geometry,
                     IsOwnProcess isOwnProcess);

    model::Point location() override;
    std::unique_ptr<ClickMonitor> monitorPresses(MouseButton button,
                                                 std::function<void()> handler) override;

  private:
    X11Connection m_connection;
    std::string m_display;
    IsOwnProcess m_isOwnProcess;
    media::color::PixelRect m_mainScreen;
    double m_scale;
    model::Point m_lastLocation;
};

} // namespace vantro::capture::x11
