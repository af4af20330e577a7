# One interface target carries the language level, warnings and sanitizers for everything we write.
add_library(vantro_flags INTERFACE)
target_compile_features(vantro_flags INTERFACE cxx_std_23)
target_compile_options(vantro_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual
  # Comparisons with NaN are relied upon: arithmetic stays strict IEEE.
  -fno-fast-math -ffp-contract=off)
target_include_directories(vantro_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(VANTRO_SANITIZE)
  # With sanitizers GCC 12 takes parts of the standard library for uninitialized.
  target_compile_options(vantro_flags INTERFACE -Wno-maybe-uninitialized
    -fsanitize=${VANTRO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vantro_flags INTERFACE -fsanitize=${VANTRO_SANITIZE})
endif()

# Half of a unit's time goes into the standard library's headers. Those that most units include are
# compiled once, and once more for code beside Qt, which is position-independent. The sources do not
# rely on it: each still includes what it uses.
function(vantro_precompiled name)
  file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
  add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
  target_link_libraries(${name} PRIVATE vantro_flags fmt::fmt ${ARGN})
  target_precompile_headers(${name} PRIVATE
    <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <filesystem> <functional> <memory> <mutex>
    <optional> <span> <string> <thread> <utility> <variant> <vector> <fmt/format.h>)
endfunction()
if(VANTRO_PRECOMPILED_HEADERS)
  target_compile_options(vantro_flags INTERFACE -fpch-preprocess) # else ccache keeps nothing
  vantro_precompiled(vantro_headers)
  vantro_precompiled(vantro_qt_headers Qt6::Core)
endif()

# vantro_module(NAME [QT] [FOLDERS folders] [SOURCES more] [MOC headers] [PUBLIC targets] [PRIVATE targets])
# The static library vantro_NAME of every source file in the folders; without FOLDERS and SOURCES, of
# this one. MOC lists the headers that declare Q_OBJECT: found by AUTOMOC, whose compiler definitions
# lead moc into standard headers that it cannot read, they would be missed. PUBLIC lists the libraries
# whose headers ours include; PRIVATE those that stay behind our headers.
function(vantro_module name)
  cmake_parse_arguments(arg "QT" "" "FOLDERS;SOURCES;MOC;PUBLIC;PRIVATE" ${ARGN})
  if(NOT arg_FOLDERS AND NOT arg_SOURCES)
    set(arg_FOLDERS .)
  endif()
  foreach(folder IN LISTS arg_FOLDERS)
    file(GLOB found CONFIGURE_DEPENDS ${folder}/*.cpp)
    list(APPEND arg_SOURCES ${found})
  endforeach()
  if(arg_MOC)
    # moc follows includes by their full names only, as of the registration of QML types.
    qt6_wrap_cpp(arg_SOURCES ${arg_MOC} OPTIONS -I${QT6_INSTALL_PREFIX}/${QT6_INSTALL_HEADERS})
  endif()
  add_library(vantro_${name} STATIC ${arg_SOURCES})
  target_link_libraries(vantro_${name} PUBLIC vantro_flags ${arg_PUBLIC} PRIVATE fmt::fmt ${arg_PRIVATE})
  if(VANTRO_PRECOMPILED_HEADERS)
    set(headers vantro_headers)
    if(arg_QT)
      set(headers vantro_qt_headers)
    endif()
    target_precompile_headers(vantro_${name} REUSE_FROM ${headers})
  endif()
endfunction()

# vantro_test(NAME SOURCES ... LINK targets ... [LABELS labels] [TIMEOUT seconds] [PROPERTIES ...])
# The test program NAME_tests; each of its cases becomes a CTest test. Labels: "fast" for tests of a
# second and less that need no display, "long" for those of minutes.
function(vantro_test name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINK;LABELS;PROPERTIES" ${ARGN})
  add_executable(${name}_tests ${arg_SOURCES})
  target_link_libraries(${name}_tests PRIVATE vantro_flags ${arg_LINK} GTest::gmock_main)
  target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  if(arg_LABELS) # an empty one would swallow the property after it
    list(APPEND arg_PROPERTIES LABELS "${arg_LABELS}")
  endif()
  if(VANTRO_SANITIZE MATCHES "thread")
    list(APPEND arg_PROPERTIES
      ENVIRONMENT "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/races-of-others.txt")
  elseif(VANTRO_SANITIZE)
    list(APPEND arg_PROPERTIES
      ENVIRONMENT "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/leaks-of-others.txt")
  endif()
  if("fast" IN_LIST arg_LABELS)
    set_property(GLOBAL APPEND PROPERTY VANTRO_FAST_TESTS ${name}_tests)
  endif()
  gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES})
endfunction()
