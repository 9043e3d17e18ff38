# One static library for each folder of src/, and one test program for each folder of tests/.

# vellumry_library(<folder name> SOURCES ... DEPENDS ...)
# Makes the target vellumry_<name>. DEPENDS are the only rooms and libraries it may use.
function(vellumry_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(vellumry_${name} STATIC ${ARG_SOURCES})
  target_include_directories(vellumry_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(vellumry_${name} PUBLIC ${ARG_DEPENDS})
endfunction()

# vellumry_prefer_small_code(<target>)
# For what runs once for a key or a click: its size, which stays in memory, counts more than its
# speed.
function(vellumry_prefer_small_code target)
  target_compile_options(${target} PRIVATE "$<$<CONFIG:Release>:-Os>")
endfunction()

# vellumry_test(<name> LABEL unit|views SOURCES ... DEPENDS ...)
# One GoogleTest program, one ctest entry for each test in it.
function(vellumry_test name)
  cmake_parse_arguments(ARG "" "LABEL" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name}_test ${ARG_SOURCES})
  target_include_directories(${name}_test PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name}_test PRIVATE ${ARG_DEPENDS} vellumry_test_support)
  add_test(NAME ${ARG_LABEL}/${name} COMMAND ${name}_test)
  if(ARG_LABEL STREQUAL "unit")
    add_dependencies(unit_tests ${name}_test)
  endif()
  set_tests_properties(${ARG_LABEL}/${name} PROPERTIES
    LABELS ${ARG_LABEL}
    TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=UTC")
endfunction()
