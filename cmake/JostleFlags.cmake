# Compiler flags. What must hold for every line that runs, the libraries' included, is set for the whole tree; what
# concerns our own code alone is on the interface target jostle_flags, which every room links.

# Keeps compilers from fusing a multiplication and an addition, so that all give the same bits.
add_compile_options(-ffp-contract=off)

if(JOSTLE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "JOSTLE_FUZZ needs clang++: install it and configure with -DCMAKE_CXX_COMPILER=clang++")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link
        "-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/sanitizer_ignorelist.txt")
endif()

if(JOSTLE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

add_library(jostle_flags INTERFACE)
target_compile_options(jostle_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(JOSTLE_WARNINGS_AS_ERRORS)
    target_compile_options(jostle_flags INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 sees an overlapping copy inside std::string's own concatenation (its bug 105651).
    target_compile_options(jostle_flags INTERFACE -Wno-restrict)
endif()
