// SPDX-License-Identifier: MIT
#include "support/hanging_share.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string>

#include <fcntl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillon::test {

std::unique_ptr<HangingShare> HangingShare::mount(const std::filesystem::path& folder) {
    const int server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "fd=" + std::to_string(server) + ",rootmode=40000,user_id=0,group_id=0";
    if (server >= 0 && ::mount("none", folder.c_str(), "fuse", 0, options.c_str()) == 0)
        return std::unique_ptr<HangingShare>(new HangingShare(folder, server));
    std::cout << "Skipped: no file system can be mounted here: " << std::strerror(errno) << '\n';
    if (server >= 0)
        ::close(server);
    return nullptr;
}

void HangingShare::goAway() {
    if (server_ >= 0)
        ::close(server_);
    server_ = -1;
}

HangingShare::~HangingShare() {
    goAway();
    ::umount2(folder_.c_str(), MNT_DETACH);
}

}  // namespace quillon::test
