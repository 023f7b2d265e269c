// SPDX-License-Identifier: MIT
#include "support/scripted_volume.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <linux/fuse.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace quillon::test {

namespace {

constexpr int kThreads = 16;
constexpr std::size_t kRequestBytes = 128UL * 1024;

const fuse_in_header& headerOf(const char* request) {
    return *reinterpret_cast<const fuse_in_header*>(request);
}

template <typename Body>
const Body& bodyOf(const char* request) {
    return *reinterpret_cast<const Body*>(request + sizeof(fuse_in_header));
}

// The kernel names an entry by a number: its place in memory, and one for the root.
std::uint64_t numberOf(const ScriptedEntry& entry) {
    return reinterpret_cast<std::uintptr_t>(&entry);
}

// What is closed, the kernel says when it likes.
bool isCounted(const char* request) {
    const auto code = headerOf(request).opcode;
    return code != FUSE_INIT && code != FUSE_RELEASE && code != FUSE_RELEASEDIR;
}

mode_t modeOf(ScriptedEntry::Kind kind) {
    switch (kind) {
        case ScriptedEntry::Kind::Folder:
            return S_IFDIR | 0755;
        case ScriptedEntry::Kind::Fifo:
            return S_IFIFO | 0644;
        case ScriptedEntry::Kind::Link:
            return S_IFLNK | 0777;
        case ScriptedEntry::Kind::File:
            break;
    }
    return S_IFREG | 0644;
}

fuse_attr attributesOf(const ScriptedEntry& entry) {
    fuse_attr attributes{};
    attributes.ino = numberOf(entry);
    attributes.size = entry.bytes.size();
    attributes.mtime = 1794744000;
    attributes.mode = modeOf(entry.kind);
    attributes.nlink = 1;
    attributes.blksize = 4096;
    return attributes;
}

void addName(std::string& bytes, const ScriptedEntry& entry, std::uint64_t next) {
    fuse_dirent head{};
    head.ino = numberOf(entry);
    head.off = next;
    head.namelen = static_cast<std::uint32_t>(entry.name.size());
    head.type = IFTODT(modeOf(entry.listedAs));
    bytes.append(reinterpret_cast<const char*>(&head), FUSE_NAME_OFFSET);
    bytes.append(entry.name);
    bytes.resize((bytes.size() + 7) / 8 * 8);
}

}  // namespace

ScriptedEntry& ScriptedEntry::add(std::string entryName, Kind entryKind) {
    entries.push_back(std::make_unique<ScriptedEntry>());
    entries.back()->name = std::move(entryName);
    entries.back()->kind = entries.back()->listedAs = entryKind;
    return *entries.back();
}

std::unique_ptr<ScriptedVolume> ScriptedVolume::mount(const std::filesystem::path& folder, const ScriptedEntry& root) {
    const int server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "fd=" + std::to_string(server) + ",rootmode=40000,user_id=0,group_id=0,allow_other";
    if (server >= 0 && ::mount("none", folder.c_str(), "fuse", MS_RDONLY, options.c_str()) == 0)
        return std::unique_ptr<ScriptedVolume>(new ScriptedVolume(folder, root, server));
    std::cout << "Skipped: no file system can be mounted here: " << std::strerror(errno) << '\n';
    if (server >= 0)
        ::close(server);
    return nullptr;
}

ScriptedVolume::ScriptedVolume(std::filesystem::path folder, const ScriptedEntry& root, int server)
    : folder_(std::move(folder)), root_(root), server_(server) {
    for (int i = 0; i < kThreads; ++i) threads_.emplace_back([this] { serve(); });
}

void ScriptedVolume::letGo() {
    const std::lock_guard lock(mutex_);
    hangs_ = false;
    letGo_.notify_all();
}

ScriptedVolume::~ScriptedVolume() {
    letGo();
    ::umount2(folder_.c_str(), MNT_FORCE);
    ::umount2(folder_.c_str(), MNT_DETACH);
    for (auto& thread : threads_) thread.join();
    ::close(server_);
}

// Until the kernel says that the file system is gone.
void ScriptedVolume::serve() {
    std::vector<char> request(kRequestBytes);
    while (true) {
        const auto count = ::read(server_, request.data(), request.size());
        if (count < 0 && errno == ENODEV)
            return;
        if (count > 0)
            answer(request.data());
    }
}

void ScriptedVolume::reply(const char* request, int error, const void* bytes, std::size_t size) {
    underWay_ -= isCounted(request) ? 1 : 0;  // whoever gets the answer may ask on at once
    fuse_out_header header{};
    header.unique = headerOf(request).unique;
    header.error = -error;
    header.len = static_cast<std::uint32_t>(sizeof header + size);
    const std::array<iovec, 2> parts = {{{&header, sizeof header}, {const_cast<void*>(bytes), size}}};
    if (::writev(server_, parts.data(), 2) < 0 && errno != ENOENT)
        std::cout << "no answer could be given: " << std::strerror(errno) << '\n';
}

void ScriptedVolume::answer(const char* request) {
    const auto& header = headerOf(request);
    if (header.opcode == FUSE_FORGET || header.opcode == FUSE_BATCH_FORGET || header.opcode == FUSE_INTERRUPT)
        return;
    if (header.opcode == FUSE_INIT) {
        fuse_init_out out{};
        out.major = FUSE_KERNEL_VERSION;
        out.minor = std::min<std::uint32_t>(FUSE_KERNEL_MINOR_VERSION, bodyOf<fuse_init_in>(request).minor);
        out.max_readahead = 4096;
        out.max_background = 64;
        out.max_write = 4096;
        reply(request, 0, &out, sizeof out);
        return;
    }
    const auto& entry = header.nodeid == FUSE_ROOT_ID ? root_ : *reinterpret_cast<const ScriptedEntry*>(header.nodeid);
    const int now = underWay_ += isCounted(request) ? 1 : 0;
    for (int most = most_; now > most && !most_.compare_exchange_weak(most, now);) continue;
    answerFor(entry, request);
}

void ScriptedVolume::takeTime(const ScriptedEntry& entry, bool hangs) {
    if (entry.wait.count() > 0)
        std::this_thread::sleep_for(entry.wait);
    std::unique_lock lock(mutex_);
    if (!hangs || !hangs_)
        return;
    ++hanging_;
    letGo_.wait(lock, [this] { return !hangs_; });
    --hanging_;
}

void ScriptedVolume::answerFor(const ScriptedEntry& entry, const char* request) {
    switch (headerOf(request).opcode) {
        case FUSE_LOOKUP:
            return lookUp(entry, request);
        case FUSE_GETATTR: {
            fuse_attr_out out{};
            out.attr = attributesOf(entry);
            out.attr_valid = 60;
            return reply(request, 0, &out, sizeof out);
        }
        case FUSE_OPENDIR:
        case FUSE_OPEN: {
            takeTime(entry, entry.hangs);
            const fuse_open_out out{};
            if (entry.openError != 0)
                return reply(request, entry.openError, nullptr, 0);
            return reply(request, 0, &out, sizeof out);
        }
        case FUSE_READDIR:
            return list(entry, request);
        case FUSE_READ:
            return read(entry, request);
        case FUSE_STATFS: {
            const fuse_statfs_out out{};
            return reply(request, 0, &out, sizeof out);
        }
        case FUSE_RELEASE:
        case FUSE_RELEASEDIR:
        case FUSE_FLUSH:
            return reply(request, 0, nullptr, 0);
        default:
            return reply(request, ENOSYS, nullptr, 0);
    }
}

void ScriptedVolume::lookUp(const ScriptedEntry& folder, const char* request) {
    const std::string_view name = request + sizeof(fuse_in_header);
    const auto found = std::ranges::find_if(folder.entries, [&](const auto& entry) { return entry->name == name; });
    if (found == folder.entries.end())
        return reply(request, ENOENT, nullptr, 0);
    const ScriptedEntry& entry = **found;
    takeTime(entry, entry.hangs);
    if (entry.lookUpError != 0)
        return reply(request, entry.lookUpError, nullptr, 0);
    fuse_entry_out out{};
    out.nodeid = numberOf(entry);
    out.attr = attributesOf(entry);
    out.attr_valid = 60;
    reply(request, 0, &out, sizeof out);
}

void ScriptedVolume::list(const ScriptedEntry& folder, const char* request) {
    const auto& body = bodyOf<fuse_read_in>(request);
    std::string bytes;
    for (std::uint64_t i = body.offset; i < folder.entries.size(); ++i) {
        std::string more = bytes;
        addName(more, *folder.entries[i], i + 1);
        if (more.size() > body.size)
            break;
        bytes = std::move(more);
    }
    if (body.offset == 0)
        takeTime(folder, folder.hangs);
    if (bytes.empty() && folder.listError != 0)
        return reply(request, folder.listError, nullptr, 0);
    reply(request, 0, bytes.data(), bytes.size());
}

void ScriptedVolume::read(const ScriptedEntry& file, const char* request) {
    takeTime(file, file.hangs || file.readHangs);
    if (file.readError != 0)
        return reply(request, file.readError, nullptr, 0);
    const auto& body = bodyOf<fuse_read_in>(request);
    const auto rest = std::string_view(file.bytes).substr(std::min<std::size_t>(body.offset, file.bytes.size()));
    const auto part = rest.substr(0, body.size);
    reply(request, 0, part.data(), part.size());
}

}  // namespace quillon::test
