# Compiler settings shared by every target, carried by the interface target om_options.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Programs, libraries and test programs in one place each: the stand-in vendor libraries are found
# through one library search path, and scripts need no knowledge of the folders.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(OM_STANDIN_DIRECTORY ${CMAKE_BINARY_DIR}/standins)

set(OM_SANITIZE "" CACHE STRING "Sanitizers for every target, as for -fsanitize=")

find_program(OM_CCACHE ccache)
if(OM_CCACHE)
  # The sloppiness is what makes precompiled headers cacheable.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
      ${OM_CCACHE})
endif()

add_library(om_options INTERFACE)
target_include_directories(om_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(om_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond> $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op> -Werror)
if(OM_SANITIZE)
  target_compile_options(om_options INTERFACE -fsanitize=${OM_SANITIZE} -fno-omit-frame-pointer
                         -fno-sanitize-recover=all)
  target_link_options(om_options INTERFACE -fsanitize=${OM_SANITIZE})
endif()
