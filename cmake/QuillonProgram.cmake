# SPDX-License-Identifier: MIT
# Programs are built straight into the application folder, so that what runs is what a user copies to a workstation.
set(QUILLON_APP_FOLDER "${PROJECT_BINARY_DIR}/Quillon")

# Everything that the application folder of a computer without a screen needs. `quillon` adds itself when it is built.
add_custom_target(app_folder)

# quillon_program(<name> <sources>...): a program without a window. It links the core only.
function(quillon_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE quillon_core)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${QUILLON_APP_FOLDER}")
    add_dependencies(app_folder ${name})
endfunction()

# quillon_window_program(<name> <sources>...): a program with a window.
function(quillon_window_program name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE quillon_ui)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${QUILLON_APP_FOLDER}" AUTOMOC ON)
endfunction()
