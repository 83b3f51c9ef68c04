# Language level, warnings, sanitizers, caching and where the binaries land.
option(TETO_TESTS "Build the tests" ON)
option(TETO_BENCH "Build the benchmarks" OFF)
option(TETO_FUZZ "Build the fuzz targets (needs clang)" OFF)
option(TETO_PCH "Use precompiled headers" ON)
set(TETO_SANITIZE "" CACHE STRING "Sanitizers, e.g. address,undefined or thread")

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

# One set of code generation flags for libraries and programs, so that they share one precompiled header.
add_compile_options(-fPIC -Wall -Wextra -Wno-invalid-pch)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU) # the compiler whose warnings count; clang builds the fuzz targets only
  add_compile_options(-Werror)
endif()
add_link_options(-Wl,--as-needed)
add_compile_definitions(QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_DEPRECATED_WARNINGS)

if(TETO_SANITIZE)
  add_compile_options(-fsanitize=${TETO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TETO_SANITIZE})
endif()

find_program(TETO_CCACHE ccache)
if(TETO_CCACHE)
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
  set(CMAKE_CXX_COMPILER_LAUNCHER env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} ${TETO_CCACHE})
endif()
