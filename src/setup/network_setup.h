// SPDX-License-Identifier: MIT
#pragma once

// The work behind "Set up Network": files of this computer are copied to the shared folders. The screen shows
// `NetworkSetupState` and calls the operations. Shared files that are overwritten go under Kept first.

#include <array>
#include <string>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/lost_note.h"
#include "app/screen_host.h"
#include "app/surroundings.h"
#include "platform/result.h"

namespace quillon {

/// One box of `Check1`.
struct NetworkBox {
    const char* caption = "";
    bool ticked = false;
    bool enabled = true;
};

/// Indexes of `Check1`.
enum NetworkBoxIndex : std::size_t {
    kMainDatabaseBox,
    kSkipListBox,
    kCommonHeadersBox,
    kSettingsBox,
    kSystemMessagesBox,
    kNetworkBoxCount
};

/// All that the screen shows.
struct NetworkSetupState {
    std::array<NetworkBox, kNetworkBoxCount> boxes{{{"Main Database"},
                                                    {"Skiplist"},
                                                    {"Common Header database"},
                                                    {"Use settings on this machine as default"},
                                                    {"System messages"}}};
    std::string progress;  ///< Label1
};

class NetworkSetup {
public:
    /// All must outlive this.
    NetworkSetup(const Installation& installation, const Surroundings& surroundings, ScreenHost& host);

    NetworkSetupState state;

    /// Command3: index 1 "Select All", index 0 "Clear All". Kept: "System messages" is left as it stands (test
    /// SelectAllLeavesSystemMessagesAlone).
    void setAll(bool ticked);

    /// Command1 "Copy": repairs the folders when they are not whole, then copies for each ticked box in order. A box
    /// stays ticked only when its copy could not be done. The screen closes afterwards.
    void copy();

private:
    template <typename Work>
    [[nodiscard]] auto beside(Work work);
    void copyDatabase();
    void fillInMarkers();
    void copySkipList();
    void extractSkipList(const NativePath& target);
    void copySingle(NetworkBoxIndex index);
    [[nodiscard]] bool mayReplace(const NativePath& target, const std::string& name);
    [[nodiscard]] Result<void> copyOver(const NativePath& source, const NativePath& target);
    [[nodiscard]] Result<void> took(const Result<LostNote>& noted);
    void tick(NetworkBoxIndex index, bool ticked, bool enabled = true);
    void warn(const std::string& text) { surroundings_.dialogs.warn("Error", text); }
    void warnOf(const char* text, const FileError& error);
    void clearBox(NetworkBoxIndex index, const Result<void>& copied, const char* failedText);

    const Installation& installation_;
    const Surroundings& surroundings_;
    ScreenHost& host_;
    KeptFiles kept_;
    LostNote lost_;  // why something is missing in the history of the share
};

}  // namespace quillon
