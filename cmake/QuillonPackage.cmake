# SPDX-License-Identifier: MIT
# Packages, made by `cpack` in a build folder of the release preset:
#   .tar.gz  the application folder, to be copied to a workstation and run
#   .deb     the same as /opt/quillon, with desktop entry, icon, manual pages, completion and the commands on the path
# Each is one component, since the same files stand at different places. data/package/cpack.cmake chooses between them.
# Without the window the package is another one: what it is called is what it holds.
set(package_folder "${PROJECT_BINARY_DIR}/package")
if(QUILLON_GUI)
    set(package_name quillon)
    set(other_package quillon-commands)
    set(package_summary "grader for the files of a recovered disk")
    set(package_holds "The package holds the workstation program, the commands quillon-job, which runs
jobs for scripts and on servers, and quillon-list, which answers questions about
finished ones, and quillon-messenger, which receives the alerts of finished jobs.")
else()
    set(package_name quillon-commands)
    set(other_package quillon)
    set(package_summary "grader for the files of a recovered disk, without a window")
    set(package_holds "The package holds the commands quillon-job, which runs jobs for scripts and on
servers, and quillon-list, which answers questions about finished ones, and
quillon-messenger, which receives the alerts of finished jobs. The workstation
program with its window is in the package quillon, which holds these as well.")
endif()
file(MAKE_DIRECTORY "${package_folder}")

# quillon_install_application(<component> <folder>): what an application folder holds before its first run.
function(quillon_install_application component folder)
    set(programs quillon-job quillon-list quillon-messenger)
    if(TARGET quillon)
        list(APPEND programs quillon)
    endif()
    install(TARGETS ${programs} RUNTIME DESTINATION "${folder}" COMPONENT ${component})
    install(FILES "${QUILLON_APP_FOLDER}/db.zip" DESTINATION "${folder}" COMPONENT ${component})
    install(FILES "${QUILLON_APP_FOLDER}/Quillon.chm" DESTINATION "${folder}" COMPONENT ${component} OPTIONAL)
endfunction()

# zipped(<variable> <file> <name>): adds a command that compresses a document, always to the same bytes.
function(zipped variable file name)
    add_custom_command(OUTPUT "${package_folder}/${name}.gz"
        COMMAND gzip -9nc "${file}" > "${package_folder}/${name}.gz" DEPENDS "${file}" VERBATIM)
    set(${variable} ${${variable}} "${package_folder}/${name}.gz" PARENT_SCOPE)
endfunction()

# The day of the release stands in CHANGELOG.md; the package tells it too, so that a build is the same on every day.
file(STRINGS CHANGELOG.md release_heading REGEX "^## ${PROJECT_VERSION} - [0-9-]+$")
string(REGEX MATCH "[0-9-]+$" release_day "${release_heading}")
execute_process(COMMAND date --utc --rfc-email "--date=${release_day} 12:00" OUTPUT_VARIABLE release_date
    OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT release_day OR NOT release_date)
    message(FATAL_ERROR "CHANGELOG.md has no line \"## ${PROJECT_VERSION} - YYYY-MM-DD\"")
endif()

set(manual_pages docs/man/quillon-job.1 docs/man/quillon-list.1 docs/man/quillon-messenger.1)
if(QUILLON_GUI)
    list(APPEND manual_pages docs/man/quillon.1)
endif()
set(cluster_scripts data/cluster/quillon-merge data/cluster/quillon-parallel data/cluster/quillon-part data/cluster/quillon-slurm)
set(many_jobs_scripts data/many-jobs/quillon-collect)
set(completions data/completion/quillon-job data/completion/quillon-list data/completion/quillon-messenger)
set(zsh_completions data/completion/_quillon-job data/completion/_quillon-list data/completion/_quillon-messenger)
set(fish_completions data/completion/quillon-job.fish data/completion/quillon-list.fish data/completion/quillon-messenger.fish)

quillon_install_application(archive .)
install(FILES README.md CHANGELOG.md LICENSE DESTINATION . COMPONENT archive)
install(FILES ${manual_pages} DESTINATION man/man1 COMPONENT archive)
install(FILES ${completions} ${zsh_completions} ${fish_completions} DESTINATION completion COMPONENT archive)
install(FILES data/avahi/quillon-messenger.service DESTINATION avahi COMPONENT archive)
install(PROGRAMS ${cluster_scripts} DESTINATION cluster COMPONENT archive)
install(PROGRAMS ${many_jobs_scripts} DESTINATION many-jobs COMPONENT archive)
install(FILES data/systemd/quillon-messenger.service DESTINATION systemd COMPONENT archive)

quillon_install_application(debian opt/quillon)
configure_file(data/package/changelog.in "${package_folder}/changelog" @ONLY)
foreach(page IN LISTS manual_pages)
    cmake_path(GET page FILENAME name)
    zipped(zipped_pages "${PROJECT_SOURCE_DIR}/${page}" "${name}")
endforeach()
zipped(zipped_changelog "${package_folder}/changelog" changelog)
zipped(zipped_changes "${PROJECT_SOURCE_DIR}/CHANGELOG.md" CHANGELOG.md)
add_custom_target(package_documents ALL DEPENDS ${zipped_pages} ${zipped_changelog} ${zipped_changes})
install(FILES ${zipped_pages} DESTINATION usr/share/man/man1 COMPONENT debian)
install(FILES ${zipped_changelog} ${zipped_changes} data/package/copyright DESTINATION usr/share/doc/${package_name} COMPONENT debian)
install(FILES data/avahi/quillon-messenger.service DESTINATION usr/share/doc/${package_name}/examples/avahi COMPONENT debian)
install(PROGRAMS ${cluster_scripts} DESTINATION usr/share/doc/${package_name}/examples/cluster COMPONENT debian)
install(PROGRAMS ${many_jobs_scripts} DESTINATION usr/share/doc/${package_name}/examples/many-jobs COMPONENT debian)
install(FILES data/systemd/quillon-messenger.service DESTINATION usr/lib/systemd/user COMPONENT debian)
install(FILES ${completions} DESTINATION usr/share/bash-completion/completions COMPONENT debian)
install(FILES ${zsh_completions} DESTINATION usr/share/zsh/vendor-completions COMPONENT debian)
install(FILES ${fish_completions} DESTINATION usr/share/fish/vendor_completions.d COMPONENT debian)
configure_file(data/package/lintian-overrides.in "${package_folder}/lintian-overrides" @ONLY)
install(FILES "${package_folder}/lintian-overrides" DESTINATION usr/share/lintian/overrides RENAME ${package_name}
    COMPONENT debian)
set(commands quillon-job quillon-list quillon-messenger)
if(TARGET quillon)
    list(APPEND commands quillon)
    install(FILES data/package/quillon.desktop DESTINATION usr/share/applications COMPONENT debian)
    install(FILES src/widgets/icons/quillon.svg DESTINATION usr/share/icons/hicolor/scalable/apps COMPONENT debian)
endif()
foreach(command IN LISTS commands)
    file(CREATE_LINK "/opt/quillon/${command}" "${package_folder}/${command}" SYMBOLIC)
    install(FILES "${package_folder}/${command}" DESTINATION usr/bin COMPONENT debian)
endforeach()

set(CPACK_PACKAGE_NAME ${package_name})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${package_summary}")
set(CPACK_PACKAGE_VENDOR "The Quillon developers")
set(CPACK_PACKAGE_CONTACT "The Quillon developers <developers@quillon.example>")
set(CPACK_PACKAGE_FILE_NAME "${package_name}-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_GENERATOR TGZ DEB)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
    WORLD_EXECUTE)
set(CPACK_PROJECT_CONFIG_FILE "${PROJECT_SOURCE_DIR}/data/package/cpack.cmake")
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_ARCHIVE_ARCHIVE_FILE_NAME "${CPACK_PACKAGE_FILE_NAME}")
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_DEBIAN_PACKAGE_NAME ${package_name})
# Both hold the commands.
set(CPACK_DEBIAN_PACKAGE_CONFLICTS ${other_package})
set(CPACK_DEBIAN_PACKAGE_REPLACES ${other_package})
set(CPACK_DEBIAN_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.quillon.example")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "avahi-daemon, libnotify-bin")
if(QUILLON_GUI)
    string(APPEND CPACK_DEBIAN_PACKAGE_SUGGESTS ", qt6-gtk-platformtheme")
endif()
set(CPACK_COMPONENT_DEBIAN_DESCRIPTION "Quillon tests every file below a folder against a database of header terms,
grades it (good, corrupt, unknown, too small and more), writes a file list and
tells the quality of the recovery.

${package_holds}")
include(CPack)
