// SPDX-License-Identifier: MIT
#pragma once

// What the made disks have in common, each of which hands on a folder of this computer.

#define FUSE_USE_VERSION 312

#include <dirent.h>
#include <fcntl.h>
#include <fuse.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <string>

/// Names the entries of an open folder. 0, or the negative number of the error.
inline int addEntries(int folder, void* names, fuse_fill_dir_t add) {
    const int again = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(again < 0 ? nullptr : ::fdopendir(again), &::closedir);
    if (!stream)
        return -errno;
    while (const dirent* entry = ::readdir(stream.get())) {
        struct stat info {};
        info.st_ino = entry->d_ino;
        info.st_mode = DTTOIF(entry->d_type);
        if (add(names, entry->d_name, &info, 0, fuse_fill_dir_flags()) != 0)
            break;
    }
    return 0;
}

/// Answers by two hundred threads, for disks whose calls wait.
inline int serveByThreads(fuse* filesystem) {
    fuse_loop_config* const loop = fuse_loop_cfg_create();
    fuse_loop_cfg_set_max_threads(loop, 200);
    fuse_loop_cfg_set_idle_threads(loop, 200);
    const int served = fuse_loop_mt(filesystem, loop);
    fuse_loop_cfg_destroy(loop);
    return served;
}

/// Mounts the disk at `point` and answers by `loop(filesystem)` until it is unmounted. The status of the program.
template <typename Mount, typename Loop>
int serveAt(const char* point, char* program, std::string options, const fuse_operations& calls, Mount& mount,
            Loop loop) {
    char* words[] = {program, options.data(), nullptr};
    fuse_args arguments = FUSE_ARGS_INIT(2, words);
    fuse* const filesystem = fuse_new(&arguments, &calls, sizeof calls, &mount);
    if (filesystem == nullptr || fuse_mount(filesystem, point) != 0)
        return 1;
    const int served = loop(filesystem);
    fuse_unmount(filesystem);
    fuse_destroy(filesystem);
    return served == 0 ? 0 : 1;
}
