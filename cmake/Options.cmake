# Language, warnings and sanitizers, decided once for every target that links quillary_options.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(QUILLARY_CCACHE ccache)
if(QUILLARY_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # As it asks for where headers are precompiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QUILLARY_CCACHE})
endif()

add_library(quillary_options INTERFACE)
target_include_directories(quillary_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(quillary_options INTERFACE -Wall -Wextra -Werror)
# GCC 12 sees overlapping copies in plain concatenations of std::string (its bug 105651).
target_compile_options(quillary_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
target_compile_definitions(quillary_options INTERFACE QUILLARY_VERSION="${PROJECT_VERSION}")
if(QUILLARY_SANITIZER)
  target_compile_options(quillary_options INTERFACE
    -fsanitize=${QUILLARY_SANITIZER} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quillary_options INTERFACE -fsanitize=${QUILLARY_SANITIZER})
endif()

# What the programs load or start lies in lib/quillary, seen from the folder beside that of a program: built as installed.
set(QUILLARY_COMPANIONS ${PROJECT_BINARY_DIR}/lib/quillary)
set(QUILLARY_COMPANIONS_INSTALLED lib/quillary)
