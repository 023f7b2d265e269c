// SPDX-License-Identifier: MIT
// The version of the program, as the build names it. It is told once, in the project line of the root CMakeLists.txt.
#pragma once

namespace quillon {

struct Version {
    int major;
    int minor;
    int revision;
};

Version programVersion();

}  // namespace quillon
