// SPDX-License-Identifier: MIT
// The numbers come from the build, so that no second place has to be edited for a release.
#include "app/version.h"

namespace quillon {

Version programVersion() {
    return {QUILLON_MAJOR, QUILLON_MINOR, QUILLON_REVISION};
}

}  // namespace quillon
