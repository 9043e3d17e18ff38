# Language level, warnings, sanitizers, and the optional speed-ups (ccache, mold).

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Werror)
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
                        QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  add_compile_options(-O1)
endif()

if(CMAKE_BUILD_TYPE STREQUAL "Release")
  # What nobody calls is left out: the program's own code is a tenth of what it keeps in memory.
  add_compile_options(-ffunction-sections -fdata-sections)
  add_link_options(-Wl,--gc-sections)
endif()

if(VELLUMRY_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # One checkout finds what another has compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 "${CCACHE}")
endif()

find_program(MOLD mold)
if(MOLD AND NOT VELLUMRY_FUZZ)
  add_link_options(-fuse-ld=mold)
endif()
