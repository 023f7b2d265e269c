// SPDX-License-Identifier: MIT
#pragma once

// A mounted file system in memory whose entries behave as a test wants: vanish or change their kind behind their
// listing, refuse, fail, take their time, hang. It is served by threads of the test. Needs the right to mount.

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillon::test {

/// An entry; folders own what is in them.
struct ScriptedEntry {
    enum class Kind { File, Folder, Fifo, Link };
    std::string name;
    Kind kind = Kind::File;
    Kind listedAs = Kind::File;        ///< by its folder; the same as `kind` for an honest one
    std::string bytes;                 ///< of a file
    int lookUpError = 0;               ///< of whoever asks for it by name
    int openError = 0;                 ///< of whoever opens it
    int listError = 0;                 ///< of whoever lists the folder, behind its entries
    int readError = 0;                 ///< of whoever reads the file
    std::chrono::milliseconds wait{};  ///< of every call for it
    bool hangs = false;                ///< every call for it waits until `letGo`
    bool readHangs = false;            ///< every read of the file does
    std::vector<std::unique_ptr<ScriptedEntry>> entries;

    [[nodiscard]] static ScriptedEntry folder() {
        ScriptedEntry entry;
        entry.kind = entry.listedAs = Kind::Folder;
        return entry;
    }
    ScriptedEntry& add(std::string entryName, Kind entryKind);
};

class ScriptedVolume {
public:
    /// Null, with the reason on standard output, where the machine does not allow it. The folder must exist. The tree
    /// stays as it is while it is mounted.
    [[nodiscard]] static std::unique_ptr<ScriptedVolume> mount(const std::filesystem::path& folder,
                                                               const ScriptedEntry& root);
    ~ScriptedVolume();
    ScriptedVolume(const ScriptedVolume&) = delete;
    ScriptedVolume& operator=(const ScriptedVolume&) = delete;

    /// What hangs goes on, and nothing hangs any more.
    void letGo();
    /// How many requests were under way at once at most since this was last asked.
    [[nodiscard]] int mostAtOnce() { return most_.exchange(0); }
    /// How many calls hang.
    [[nodiscard]] int hanging() const { return hanging_; }

private:
    ScriptedVolume(std::filesystem::path folder, const ScriptedEntry& root, int server);
    void serve();
    void answer(const char* request);
    void answerFor(const ScriptedEntry& entry, const char* request);
    void takeTime(const ScriptedEntry& entry, bool hangs);
    void lookUp(const ScriptedEntry& folder, const char* request);
    void list(const ScriptedEntry& folder, const char* request);
    void read(const ScriptedEntry& file, const char* request);
    void reply(const char* request, int error, const void* bytes, std::size_t size);

    std::filesystem::path folder_;
    const ScriptedEntry& root_;
    int server_;
    std::mutex mutex_;
    std::condition_variable letGo_;
    bool hangs_ = true;
    std::atomic<int> hanging_ = 0;
    std::atomic<int> underWay_ = 0;
    std::atomic<int> most_ = 0;
    std::vector<std::thread> threads_;
};

}  // namespace quillon::test
