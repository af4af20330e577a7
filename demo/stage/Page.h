#pragma once

#include "stage/Drawing.h"

#include <optional>
#include <string>
#include <vector>

namespace vantro::stage {

/// A page of text with controls that answer clicks visibly. Instants are seconds on one clock.
///
/// Left: a ripple at the place and whatever the control does. Right: a menu at the place, which the
/// next press closes.
class Page {
  public:
    static constexpr double width = 1040;
    static constexpr double height = 800;

    Page();

    void press(double x, double y, bool isRight, double now);
    /// Whether the picture changes by itself at this instant.
    bool isMoving(double now) const;
    void draw(cairo_t* context, double now) const;

    struct Place {
        std::string name;
        double x;
        double y;
    };
    /// Where the controls are to be clicked, in pixels of the page.
    std::vector<Place> places() const;

  private:
    enum class Kind { button, toggle, checkbox, slider };
    struct Control {
        Kind kind;
        std::string name;
        std::string label;
        Box box;
        unsigned color;
        double value;          // 0 or 1; a slider's anything between
        double previous = 0;   // the value before the last press
        double pressed = -100; // when
    };
    struct Ripple {
        double x;
        double y;
        double start;
    };

    void activate(Control& control, double x, double now);
    void drawSidebar(cairo_t* context) const;
    void drawArticle(cairo_t* context) const;
    void drawControl(cairo_t* context, const Control& control, double now) const;
    void drawMenu(cairo_t* context, double now) const;
    void drawToast(cairo_t* context, double now) const;

    std::vector<Control> m_controls;
    std::optional<Ripple> m_ripple;
    std::optional<Ripple> m_menu; // open since
    double m_menuClosed = -100;
    std::string m_toast;
    double m_toastStart = -100;
};

} // namespace vantro::stage
