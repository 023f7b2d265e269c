// SPDX-License-Identifier: MIT
#pragma once

// Sets an installation up without a person: what a command does when its application folder has no settings yet.

#include <cstddef>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/lost_note.h"
#include "platform/result.h"

namespace quillon {

/// What the default set-up did.
struct DefaultSetup {
    NativePath localPath;  ///< `<application folder>/Data`
    NativePath zipPath;    ///< `<application folder>/Data/Archives`
    std::size_t filesUnpacked = 0;
    std::size_t filesLeft = 0;  ///< of an earlier set-up; they stayed as they were
    LostNote lostNote;          ///< why the history took no note of it
};

/// Creates the folders, unpacks db.zip into the local root, fills the record in memory (header test, skip list and
/// common headers on, no sharing, both recipients "Query", so that nobody is told without being named) and saves it.
///
/// The record is saved last: after a failure the next start is a first run again, and the record in memory is as it
/// was. Files that stand in the data folders already are left alone: nobody was asked. A missing db.zip is a failure,
/// and so is an application folder whose path the settings cannot hold (more than 512 characters, or characters
/// outside the 8-bit page). Call it only without a settings file.
[[nodiscard]] Result<DefaultSetup> setUpDefaultInstallation(Installation& installation);

}  // namespace quillon
