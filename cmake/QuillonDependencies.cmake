# SPDX-License-Identifier: MIT
# The libraries that the project takes from the distribution.
find_package(Threads REQUIRED)
find_package(fmt REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)

# libzip through pkg-config: the CMake files that Debian 12 ships for it name a program of another package and fail.
find_package(PkgConfig REQUIRED)
pkg_check_modules(LibZip REQUIRED IMPORTED_TARGET libzip)

# The evidence of a job: one SQLite file, the heads in it compressed.
pkg_check_modules(Sqlite REQUIRED IMPORTED_TARGET sqlite3>=3.40)
pkg_check_modules(Zstd REQUIRED IMPORTED_TARGET libzstd)

# Workbooks for spreadsheets.
pkg_check_modules(XlsxWriter REQUIRED IMPORTED_TARGET xlsxwriter)

# Hashes of copies.
pkg_check_modules(Crypto REQUIRED IMPORTED_TARGET libcrypto)

# tl::expected is one header; its package brings no CMake target on every distribution.
find_path(QUILLON_EXPECTED_INCLUDE tl/expected.hpp REQUIRED)

# Names of computers on the network. Without the library the hosts database alone is asked.
pkg_check_modules(AvahiClient IMPORTED_TARGET avahi-client)

if(NOT QUILLON_GUI STREQUAL "OFF")
    # Without SVG check boxes would have no box and icons would be empty pages.
    if(QUILLON_GUI STREQUAL "AUTO")
        find_package(Qt6 COMPONENTS Widgets Svg QUIET)
    else()
        find_package(Qt6 COMPONENTS Widgets Svg REQUIRED)
    endif()
    if(Qt6Widgets_FOUND AND Qt6Svg_FOUND)
        set(QUILLON_GUI ON)
    else()
        message(STATUS "Qt 6 Widgets and Svg not found: the window program is left out")
        set(QUILLON_GUI OFF)
    endif()
endif()
