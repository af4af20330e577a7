find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(fmt REQUIRED)
find_package(ZLIB REQUIRED)
find_package(spdlog REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(CLI11 REQUIRED)
pkg_check_modules(SYSTEMD REQUIRED IMPORTED_TARGET libsystemd)
pkg_check_modules(SDBUS REQUIRED IMPORTED_TARGET sdbus-c++)
pkg_check_modules(LIBINPUT REQUIRED IMPORTED_TARGET libinput)
pkg_check_modules(UDEV REQUIRED IMPORTED_TARGET libudev)

pkg_check_modules(HWY REQUIRED IMPORTED_TARGET libhwy)
pkg_check_modules(PULSE REQUIRED IMPORTED_TARGET libpulse)
# Its -D_REENTRANT says nothing new, and would keep the precompiled headers from use.
set_property(TARGET PkgConfig::PULSE PROPERTY INTERFACE_COMPILE_OPTIONS "")
pkg_check_modules(PIPEWIRE REQUIRED IMPORTED_TARGET libpipewire-0.3)
# Likewise.
set_property(TARGET PkgConfig::PIPEWIRE PROPERTY INTERFACE_COMPILE_OPTIONS "")
pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
pkg_check_modules(WAYLAND_PROTOCOLS REQUIRED wayland-protocols)
pkg_check_modules(LIBAV REQUIRED IMPORTED_TARGET
  libavformat libavcodec libavfilter libavutil libswscale libswresample)
pkg_check_modules(X264 REQUIRED IMPORTED_TARGET x264)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET
  xcb xcb-shm xcb-damage xcb-composite xcb-xfixes xcb-randr xcb-xinput xcb-xtest xcb-res
  xcb-shape)
pkg_check_modules(XCURSOR REQUIRED IMPORTED_TARGET xcursor)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui OpenGL Qml Quick Svg Widgets)
# All that is needed of Qt's tools for translations; its CMake package asks for much more.
find_program(VANTRO_LRELEASE lrelease REQUIRED
  HINTS ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS} ${QT6_INSTALL_PREFIX}/lib/qt6/bin)

if(VANTRO_TESTS)
  find_package(GTest REQUIRED)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
  pkg_check_modules(UMOCKDEV REQUIRED IMPORTED_TARGET umockdev-1.0)
  pkg_check_modules(WAYLAND_SERVER REQUIRED IMPORTED_TARGET wayland-server)
  pkg_check_modules(PULSE_SIMPLE REQUIRED IMPORTED_TARGET libpulse-simple)
  set_property(TARGET PkgConfig::PULSE_SIMPLE PROPERTY INTERFACE_COMPILE_OPTIONS "")
endif()
if(VANTRO_BENCH OR VANTRO_DEMO)
  pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo cairo-xcb)
endif()
if(VANTRO_BENCH)
  find_package(benchmark REQUIRED)
  pkg_check_modules(RUBBERBAND REQUIRED IMPORTED_TARGET rubberband)
endif()
