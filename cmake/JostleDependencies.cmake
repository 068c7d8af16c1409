# Libraries that come as packages. docs/dependencies.md says why each is here.

# RapidJSON's own package names no target, so we give it one.
find_path(JOSTLE_RAPIDJSON_INCLUDE_DIR rapidjson/reader.h)
if(NOT JOSTLE_RAPIDJSON_INCLUDE_DIR)
    message(FATAL_ERROR "RapidJSON was not found: run scripts/setup.sh (Debian: rapidjson-dev), "
        "or set JOSTLE_RAPIDJSON_INCLUDE_DIR to the folder that holds rapidjson/")
endif()
add_library(Jostle::RapidJson INTERFACE IMPORTED GLOBAL)
target_include_directories(Jostle::RapidJson SYSTEM INTERFACE "${JOSTLE_RAPIDJSON_INCLUDE_DIR}")

# Fonts: which one is meant, how its glyphs are placed, what they look like. HarfBuzz's package has no module here.
find_package(Freetype QUIET)
find_package(Fontconfig QUIET)
find_path(JOSTLE_HARFBUZZ_INCLUDE_DIR hb.h PATH_SUFFIXES harfbuzz)
find_library(JOSTLE_HARFBUZZ_LIBRARY harfbuzz)
if(NOT TARGET Freetype::Freetype OR NOT TARGET Fontconfig::Fontconfig OR NOT JOSTLE_HARFBUZZ_INCLUDE_DIR
   OR NOT JOSTLE_HARFBUZZ_LIBRARY)
    message(FATAL_ERROR "FreeType, HarfBuzz or fontconfig was not found: run scripts/setup.sh "
        "(Debian: libfreetype-dev libharfbuzz-dev libfontconfig-dev)")
endif()
add_library(Jostle::HarfBuzz UNKNOWN IMPORTED GLOBAL)
set_target_properties(Jostle::HarfBuzz PROPERTIES IMPORTED_LOCATION "${JOSTLE_HARFBUZZ_LIBRARY}")
target_include_directories(Jostle::HarfBuzz SYSTEM INTERFACE "${JOSTLE_HARFBUZZ_INCLUDE_DIR}")

# libzip's own CMake files ask for its command line tools too, which come in packages of their own.
find_package(ZLIB QUIET)
find_path(JOSTLE_LIBZIP_INCLUDE_DIR zip.h)
find_library(JOSTLE_LIBZIP_LIBRARY zip)
if(NOT TARGET ZLIB::ZLIB OR NOT JOSTLE_LIBZIP_INCLUDE_DIR OR NOT JOSTLE_LIBZIP_LIBRARY)
    message(FATAL_ERROR "libzip or zlib was not found: run scripts/setup.sh (Debian: libzip-dev zlib1g-dev)")
endif()
add_library(Jostle::LibZip UNKNOWN IMPORTED GLOBAL)
set_target_properties(Jostle::LibZip PROPERTIES IMPORTED_LOCATION "${JOSTLE_LIBZIP_LIBRARY}")
target_include_directories(Jostle::LibZip SYSTEM INTERFACE "${JOSTLE_LIBZIP_INCLUDE_DIR}")

find_package(CLI11 CONFIG QUIET)
if(NOT TARGET CLI11::CLI11)
    message(FATAL_ERROR "CLI11 was not found: run scripts/setup.sh (Debian: libcli11-dev)")
endif()

# Settings files. Versions before 8 nest as deep as the text does.
find_package(tinyxml2 CONFIG QUIET)
if(NOT TARGET tinyxml2::tinyxml2 OR tinyxml2_VERSION VERSION_LESS 8)
    message(FATAL_ERROR "TinyXML-2 of version 8 or newer was not found: run scripts/setup.sh (Debian: libtinyxml2-dev)")
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

# The preview and the window. Pictures need Qt's Gui module alone, and libgif where they move.
if(JOSTLE_GUI)
    find_package(Qt6 6.4 QUIET COMPONENTS Core Gui Widgets OpenGL OpenGLWidgets Test)
    find_package(GIF QUIET)
    if(NOT TARGET Qt6::Gui OR NOT TARGET Qt6::OpenGLWidgets OR NOT TARGET GIF::GIF)
        message(FATAL_ERROR "Qt 6.4 or libgif was not found: run scripts/setup.sh (Debian: qt6-base-dev libqt6opengl6-dev libgif-dev), "
            "or configure with -DJOSTLE_GUI=OFF for a build without pictures and windows")
    endif()
endif()
