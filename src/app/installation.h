// SPDX-License-Identifier: MIT
#pragma once

// One installation: the application folder, the settings record in memory and the paths that follow from it. Made in
// main and handed to everything that needs a path.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "app/settings.h"
#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

inline constexpr const char* kSettingsFileName = "settings.dat";
inline constexpr const char* kRawListName = "tFile.csv";
inline constexpr const char* kErrorsFileName = "Errors.dat";
inline constexpr const char* kSkipListFileName = "SkipList.dat";
inline constexpr const char* kCommonHeadersFileName = "CommonHeaders.dat";
inline constexpr const char* kDefaultDatabaseName = "db.zip";

/// The path variables. Empty where the settings name no root: an empty path neither exists nor can be created.
struct Paths {
    NativePath settingsFile;
    NativePath localPath;  ///< also the folder of the final lists
    NativePath sharedPath;
    NativePath zipPath;
    NativePath localSettings;
    NativePath sharedSettings;
    NativePath localDatabase;
    NativePath sharedDatabase;
    bool useSharedDb = false;
    std::string fileListSeparator = "-";  ///< one character, UTF-8

    friend bool operator==(const Paths&, const Paths&) = default;
};

/// The folders of the settings.
enum class SettingsFolder { Local, Archive, Shared };
inline constexpr std::size_t kSettingsFolders = 3;

class Installation {
public:
    /// `settings` start empty; `load` or `refreshPathVariables` derives the paths.
    explicit Installation(NativePath appFolder);

    [[nodiscard]] const NativePath& appFolder() const { return appFolder_; }
    [[nodiscard]] const Paths& paths() const { return paths_; }
    [[nodiscard]] NativePath rawListPath() const { return appFolder_ / kRawListName; }
    [[nodiscard]] NativePath defaultDatabasePath() const { return appFolder_ / kDefaultDatabaseName; }

    /// The record in memory. Whoever changes it calls `refreshPathVariables` afterwards.
    AppSettings settings;

    /// A folder of the settings as it was chosen. What its field cannot hold (other characters than those of the 8-bit
    /// page, more than 512, a blank at the end) is remembered beside the record; it counts as long as the field holds
    /// what became of it, so a record from elsewhere means what it says.
    [[nodiscard]] NativePath folder(SettingsFolder which) const;
    /// Into the record and beside it, in memory. `refreshPathVariables` derives the paths.
    /// An archive folder that is chosen anew is no longer left out.
    void setFolder(SettingsFolder which, const NativePath& path);

    /// Reads the record whole and derives the paths; a stored port of 0 becomes its default, in memory only. On failure
    /// the record in memory stays as it was. Preferences that cannot be read remember no folder.
    [[nodiscard]] Result<void> loadSettingsRecord();

    /// Writes the record whole, behind the preferences where a folder has to be remembered there or forgotten. On
    /// failure the old record is whole and the one in memory stays.
    [[nodiscard]] Result<void> saveSettingsRecord() const;

    /// The load steps without reading the file.
    void refreshPathVariables();

    /// No path leads to the share until `takeShareBack`, however often the path variables are derived: the program goes
    /// on as one without sharing. The record stays as it is.
    void leaveShareOut();
    void takeShareBack();

    /// `Archives` below the local path stands in for the archive folder of this moment, however often the path
    /// variables are derived, until one is stored. The record stays as it is.
    void leaveArchiveFolderOut();

    /// Another archive folder until the path variables are derived anew. The settings field stays as it is.
    void useZipPath(NativePath folder) { paths_.zipPath = std::move(folder); }

private:
    [[nodiscard]] Result<void> rememberFolders() const;

    NativePath appFolder_;
    Paths paths_;
    std::array<NativePath, kSettingsFolders> chosen_;  // that the record cannot hold; empty: it can
    bool remembered_ = false;                          // the preferences had such a folder
    bool shareLeftOut_ = false;
    NativePath leftOutArchive_;  // empty: none is
};

/// `folder`/`name`; empty when the settings name no such folder, so that no file of the current folder is meant.
[[nodiscard]] NativePath fileIn(const NativePath& folder, std::string_view name);

/// A path from a settings field: the field's characters as UTF-8.
[[nodiscard]] NativePath pathFromPage(const PageText& text);

/// A path as it goes into a settings field. A character outside the page becomes "?".
[[nodiscard]] PageText pageFromPath(const NativePath& path);

/// Why the settings would give another path back than this one, for a person: "it ends in a blank". Empty when they
/// hold it.
[[nodiscard]] std::string whyNotInSettings(const NativePath& path);

/// True for a path of the settings that may have been another one when it was stored: it has the sign for a character
/// that was lost, or fills its field.
[[nodiscard]] bool mayBeCutInSettings(const NativePath& path);

}  // namespace quillon
