# SPDX-License-Identifier: MIT
# The one place for language standard and warnings: every target of the project links quillon_flags.
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

find_program(QUILLON_CCACHE ccache)
if(QUILLON_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${QUILLON_CCACHE}")
endif()

add_library(quillon_flags INTERFACE)
target_compile_features(quillon_flags INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
target_compile_options(quillon_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 takes std::string::replace for overlapping copies of half the address space (GCC bug 105651).
    target_compile_options(quillon_flags INTERFACE -Wno-restrict)
endif()
if(QUILLON_WERROR)
    # Off by default, so that a newer compiler with new warnings never breaks a user's build.
    target_compile_options(quillon_flags INTERFACE -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # What GCC tells only behind its optimizer or by hardened headers changes with every flag and is often wrong, and
        # precompiled headers that do not fit are read as they are: these stay warnings.
        foreach(guess IN ITEMS array-bounds dangling-pointer format-overflow format-truncation free-nonheap-object invalid-pch
                maybe-uninitialized null-dereference restrict stringop-overflow stringop-overread stringop-truncation
                unused-result use-after-free)
            target_compile_options(quillon_flags INTERFACE -Wno-error=${guess})
        endforeach()
    endif()
endif()

# What users run is hardened: it reads damaged disks and hostile archives and datagrams. The fortified headers ask for the
# optimizer.
if(CMAKE_BUILD_TYPE STREQUAL "Release")
    set(kind "$<TARGET_PROPERTY:TYPE>")
    set(quick "$<BOOL:$<TARGET_PROPERTY:QUILLON_BUILT_QUICKLY>>")
    target_compile_options(quillon_flags INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE
        "$<$<NOT:${quick}>:-D_FORTIFY_SOURCE=2>"
        "$<$<IN_LIST:${kind},EXECUTABLE;STATIC_LIBRARY>:-fPIE>")
    target_link_options(quillon_flags INTERFACE -Wl,-z,relro,-z,now "$<$<STREQUAL:${kind},EXECUTABLE>:-pie>")
endif()

# quillon_build_quickly(<target>): no optimizer in a release. For tests: they are half of all sources, most of their lines run
# once, and building them takes longer than running them.
function(quillon_build_quickly target)
    set_property(TARGET ${target} PROPERTY QUILLON_BUILT_QUICKLY ON)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O0>)
endfunction()
