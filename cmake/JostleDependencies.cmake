# Libraries that come as packages. docs/dependencies.md says why each is here.

# RapidJSON's own package names no target, so we give it one.
find_path(JOSTLE_RAPIDJSON_INCLUDE_DIR rapidjson/reader.h)
if(NOT JOSTLE_RAPIDJSON_INCLUDE_DIR)
    message(FATAL_ERROR "RapidJSON was not found: run scripts/setup.sh (Debian: rapidjson-dev), "
        "or set JOSTLE_RAPIDJSON_INCLUDE_DIR to the folder that holds rapidjson/")
endif()
add_library(Jostle::RapidJson INTERFACE IMPORTED GLOBAL)
target_include_directories(Jostle::RapidJson SYSTEM INTERFACE "${JOSTLE_RAPIDJSON_INCLUDE_DIR}")

find_package(CLI11 CONFIG QUIET)
if(NOT TARGET CLI11::CLI11)
    message(FATAL_ERROR "CLI11 was not found: run scripts/setup.sh (Debian: libcli11-dev)")
endif()

# The tessellator of GLU. It needs no window and no OpenGL context; the OpenGL library only comes along.
find_path(JOSTLE_GLU_INCLUDE_DIR GL/glu.h)
find_library(JOSTLE_GLU_LIBRARY NAMES GLU glu32)
if(NOT JOSTLE_GLU_INCLUDE_DIR OR NOT JOSTLE_GLU_LIBRARY)
    message(FATAL_ERROR "GLU was not found: run scripts/setup.sh (Debian: libglu1-mesa-dev), "
        "or set JOSTLE_GLU_INCLUDE_DIR to the folder that holds GL/glu.h and JOSTLE_GLU_LIBRARY to the library")
endif()
add_library(Jostle::Glu INTERFACE IMPORTED GLOBAL)
target_include_directories(Jostle::Glu SYSTEM INTERFACE "${JOSTLE_GLU_INCLUDE_DIR}")
target_link_libraries(Jostle::Glu INTERFACE "${JOSTLE_GLU_LIBRARY}")

if(JOSTLE_TESTS)
    find_package(GTest QUIET)
    if(NOT TARGET GTest::gtest_main)
        message(FATAL_ERROR "GoogleTest was not found: run scripts/setup.sh (Debian: libgtest-dev), "
            "or configure with -DJOSTLE_TESTS=OFF")
    endif()
    include(GoogleTest)
endif()

if(JOSTLE_BENCHMARKS)
    find_package(benchmark CONFIG QUIET)
    if(NOT TARGET benchmark::benchmark)
        message(FATAL_ERROR "Google Benchmark was not found: run scripts/setup.sh (Debian: libbenchmark-dev), "
            "or configure with -DJOSTLE_BENCHMARKS=OFF")
    endif()
endif()
