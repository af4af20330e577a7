# One interface target carries the language level, warnings and sanitizers for everything we write.
add_library(vantro_flags INTERFACE)
target_compile_features(vantro_flags INTERFACE cxx_std_23)
target_compile_options(vantro_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  -Woverloaded-virtual -Werror
  # Comparisons with NaN are relied upon: arithmetic stays strict IEEE.
  -fno-fast-math -ffp-contract=off)
target_include_directories(vantro_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(VANTRO_SANITIZE)
  target_compile_options(vantro_flags INTERFACE
    -fsanitize=${VANTRO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(vantro_flags INTERFACE -fsanitize=${VANTRO_SANITIZE})
endif()

# vantro_module(NAME [FOLDERS folders] [SOURCES more] [MOC headers] [PUBLIC targets] [PRIVATE targets])
# The static library vantro_NAME of every source file in the folders; without FOLDERS and SOURCES, of
# this one. MOC lists the headers that declare Q_OBJECT: found by AUTOMOC, whose compiler definitions
# lead moc into standard headers that it cannot read, they would be missed. PUBLIC lists the libraries
# whose headers ours include; PRIVATE those that stay behind our headers.
function(vantro_module name)
  cmake_parse_arguments(arg "" "" "FOLDERS;SOURCES;MOC;PUBLIC;PRIVATE" ${ARGN})
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
  target_link_libraries(vantro_${name} PUBLIC vantro_flags ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
endfunction()

# vantro_test(NAME SOURCES ... LINK targets ... [LABELS labels] [TIMEOUT seconds] [PROPERTIES ...])
# The test program NAME_tests; each of its cases becomes a CTest test.
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
  gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${arg_TIMEOUT} ${arg_PROPERTIES})
endfunction()
