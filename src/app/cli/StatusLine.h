#pragma once

#include <string>
#include <string_view>

namespace vantro::app::cli {

/// Writes a text to standard error. A terminal that has been closed is not told, which is no
/// failure.
void tell(std::string_view text);

/// One line on standard error that is written over again and again. Does nothing where standard
/// error is no terminal. One thread.
class StatusLine {
  public:
    StatusLine();
    /// Removes the line, so that what follows starts on a clean one.
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    bool isVisible() const { return m_visible; }
    void show(std::string_view text);
    void clear();

  private:
    bool m_visible;
    bool m_written = false;
};

/// "[#######-----]", `width` characters between the brackets.
std::string progressBar(double fraction, int width);
/// "0:07", "12:30", "1:02:30".
std::string clockText(double seconds);
/// "812 bytes", "3.4 MB".
std::string sizeText(double bytes);

} // namespace vantro::app::cli
