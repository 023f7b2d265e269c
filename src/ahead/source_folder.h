// SPDX-License-Identifier: MIT
#pragma once

// A folder of a source that a walk comes to: what is asked of it, by whom ever, and what it answers. Each is asked for
// once and looked at by one thread at a time.

#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ahead/turn_with_care.h"
#include "platform/attributes.h"
#include "platform/directory.h"
#include "platform/source_care.h"

namespace quillon {

/// What a file system says of a file by its name.
struct FileAnswer {
    enum class Kind {
        Described,
        NoFile,  ///< it has gone, or is no regular file, since its folder was listed
        Refused  ///< its folder does not let one ask
    };
    Kind kind = Kind::NoFile;
    EntryInfo info;
    std::optional<std::uint32_t> attributes;  ///< where they were asked for, too
    bool wasSlow = false;                     ///< as SourceTask::wasSlow
};

/// A folder that is held open, and what is in it, by name.
struct OpenFolder {
    Directory handle;
    EntryNames files;
    EntryNames folders;
};

[[nodiscard]] FileAnswer describeFile(const OpenFolder& folder, std::string_view name, SourceCare& care);

/// One piece of work that a source is asked for.
class SourceTask : public AheadTask, public TurnWithCare {
public:
    virtual ~SourceTask() = default;

    /// What a thread works with.
    struct Tools {
        std::shared_ptr<SourceCare> care;
        AttributeReader attributes;
    };
    /// Does the work, by a thread.
    virtual void work(Tools& tools) = 0;

    bool isAsked = false;   ///< a thread has it
    bool isAtHand = false;  ///< what it answers can be looked at
    bool wasSlow = false;   ///< a call of it had to wait for a disk or a server

protected:
    SourceTask() = default;
    SourceTask(const SourceTask&) = delete;
    SourceTask& operator=(const SourceTask&) = delete;
};

/// Descriptions of some files of a folder that follow one another.
class AskedFiles final : public SourceTask {
public:
    AskedFiles(std::shared_ptr<const OpenFolder> folder, std::size_t from, std::size_t howMany)
        : first(from), count(howMany), folder_(std::move(folder)) {}
    void work(Tools& tools) override;

    const std::size_t first;
    const std::size_t count;
    std::vector<FileAnswer> answers;

private:
    std::shared_ptr<const OpenFolder> folder_;
};

/// A folder: opened, tried to enter, listed, and some of its files described.
class AskedFolder final : public SourceTask {
public:
    /// The folder of another one that is called so, or, without one, that of the path `called`. `describes`: its files
    /// are wanted.
    AskedFolder(std::shared_ptr<const OpenFolder> parent, std::string called, bool describes)
        : name(std::move(called)), describes_(describes), parent_(std::move(parent)) {}

    void work(Tools& tools) override;
    /// The two steps of the work. A link is no folder, but for a path.
    void open(SourceCare& care);
    void list(SourceCare& care, const Pause& pause);

    const std::string name;

    std::shared_ptr<OpenFolder> folder;  ///< null for one that cannot be opened
    bool hasGone = false;                ///< it cannot be opened as there is none
    bool canBeEntered = false;
    bool listedToItsEnd = false;

    // The walk's own: what it has asked of the folder ahead.
    std::deque<std::shared_ptr<AskedFolder>> subfolders;  ///< those that the walk comes to next
    std::deque<std::shared_ptr<AskedFiles>> files;        ///< in their order, from the first that was not delivered
    std::size_t filesMet = 0;                             ///< by their names; those that are not wanted are forgotten
    std::size_t filesAsked = 0;

private:
    void tryToEnter(const Result<Directory>& opened);

    bool describes_;
    std::shared_ptr<const OpenFolder> parent_;
};

/// What takes longer did not come from memory.
inline constexpr std::chrono::microseconds kSlowCall{100};

/// How many files one piece of work describes: a thread is woken for each, which is much where calls are quick and
/// nothing where they are slow.
[[nodiscard]] constexpr std::size_t filesAtOnce(bool slow) {
    return slow ? 4 : 32;
}

}  // namespace quillon
