# Two shorthands, so that a folder's CMakeLists.txt only lists its files and what it stands on.
include(GoogleTest)

# zemo_library(NAME SOURCES a.cpp ... DEPENDS other ...): a static library whose headers are included
# from src/ down ("engine/MainTick.h").
function(zemo_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS})
endfunction()

# zemo_tests(NAME [ALONE] LABEL label SOURCES a.cpp ... DEPENDS other ...): a GoogleTest executable, each of
# its tests known to CTest under the label (logic, sound, app, devices, days). Target zemo_tests_LABEL builds all
# executables of a label. Test code itself is not optimised: compiling it costs more than running it,
# and what it tests is compiled as its preset says. ALONE: tests of lines, devices and threads in real
# time, which run while no other test does.
function(zemo_tests name)
  cmake_parse_arguments(ARG "ALONE" "LABEL" "SOURCES;DEPENDS" ${ARGN})
  set(alone OFF)
  if(ARG_ALONE)
    set(alone ON)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/tests")
  target_compile_options(${name} PRIVATE -O0 -g1)
  target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} GTest::gtest_main)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 900
    RUN_SERIAL ${alone})
  if(NOT TARGET zemo_tests_${ARG_LABEL})
    add_custom_target(zemo_tests_${ARG_LABEL})
  endif()
  add_dependencies(zemo_tests_${ARG_LABEL} ${name})
endfunction()
