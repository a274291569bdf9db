# Shorthands, so that a folder's CMakeLists.txt only lists its files and what it stands on.
include(GoogleTest)

# Compiled once and shared: what nearly every file includes. Each file still names what it uses; the
# `tidy` preset reads every source without them. Qt's targets have headers of their own (zemo_qt_*), as the
# compiler takes headers only for the position-independent code they were compiled with.
set(ZEMO_COMMON_HEADERS
  <algorithm> <array> <cmath> <cstdint> <exception> <filesystem> <functional> <map> <memory> <optional>
  <set> <stdexcept> <string> <string_view> <utility> <vector>)

# zemo_headers(NAME OPTIONS ... DEPENDS ... HEADERS ...)
function(zemo_headers name)
  cmake_parse_arguments(ARG "" "" "OPTIONS;DEPENDS;HEADERS" ${ARGN})
  add_library(${name} OBJECT "${PROJECT_SOURCE_DIR}/cmake/Headers.cpp")
  target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# Test code itself is not optimised: compiling it costs more than running it, and what it tests is
# compiled as its preset says.
set(ZEMO_TEST_OPTIONS -O0 -g1)
if(CMAKE_CXX_FLAGS MATCHES "--coverage")
  list(APPEND ZEMO_TEST_OPTIONS -DZEMO_COUNTS_LINES)  # tests/support/Cases.h
endif()

zemo_headers(zemo_headers HEADERS ${ZEMO_COMMON_HEADERS})
zemo_headers(zemo_test_headers OPTIONS ${ZEMO_TEST_OPTIONS} DEPENDS GTest::gtest
  HEADERS <gtest/gtest.h> ${ZEMO_COMMON_HEADERS})
if(ZEMO_REAL)
  zemo_headers(zemo_qt_headers DEPENDS Qt6::Core HEADERS ${ZEMO_COMMON_HEADERS})
  zemo_headers(zemo_qt_test_headers OPTIONS ${ZEMO_TEST_OPTIONS} DEPENDS Qt6::Core GTest::gtest
    HEADERS <gtest/gtest.h> ${ZEMO_COMMON_HEADERS})
endif()

# zemo_share_headers(NAME PLAIN QT target ...): NAME takes the headers QT where one of the targets that it
# stands on is Qt's or has them itself, else PLAIN.
function(zemo_share_headers name plain qt)
  set(headers ${plain})
  foreach(target IN LISTS ARGN)
    set(on_qt OFF)
    if(target MATCHES "^Qt6::")
      set(on_qt ON)
    elseif(TARGET ${target})
      get_target_property(on_qt ${target} ZEMO_ON_QT)
    endif()
    if(on_qt)
      set(headers ${qt})
      set_target_properties(${name} PROPERTIES ZEMO_ON_QT ON)
    endif()
  endforeach()
  target_precompile_headers(${name} REUSE_FROM ${headers})
endfunction()

# zemo_library(NAME SOURCES a.cpp ... DEPENDS other ...): a static library whose headers are included
# from src/ down ("engine/MainTick.h").
function(zemo_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS})
  zemo_share_headers(${name} zemo_headers zemo_qt_headers ${ARG_DEPENDS})
endfunction()

# zemo_tests(NAME [ALONE] [WHOLE] LABEL label SOURCES a.cpp ... DEPENDS other ...): a GoogleTest executable, each of
# its tests known to CTest under the label (logic, sound, app, devices, days). Target zemo_tests_LABEL builds all
# executables of a label. ALONE: tests of lines, devices and threads in real time, which run while no
# other test does. WHOLE: one run of all of them, known to CTest as one test. Whole days begin first, so that the others fill the cores beside them.
function(zemo_tests name)
  cmake_parse_arguments(ARG "ALONE;WHOLE" "LABEL" "SOURCES;DEPENDS" ${ARGN})
  set(alone OFF)
  if(ARG_ALONE)
    set(alone ON)
  endif()
  set(cost 0)
  if(ARG_LABEL STREQUAL "days")
    set(cost 100)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
  target_compile_options(${name} PRIVATE ${ZEMO_TEST_OPTIONS})
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest_main)
  zemo_share_headers(${name} zemo_test_headers zemo_qt_test_headers ${ARG_DEPENDS})
  if(ARG_WHOLE)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 900 RUN_SERIAL ${alone})
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 900
      RUN_SERIAL ${alone} COST ${cost})
  endif()
  if(NOT TARGET zemo_tests_${ARG_LABEL})
    add_custom_target(zemo_tests_${ARG_LABEL})
  endif()
  add_dependencies(zemo_tests_${ARG_LABEL} ${name})
endfunction()
