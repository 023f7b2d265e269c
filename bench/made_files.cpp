// SPDX-License-Identifier: MIT
// Shows a file system of many files that never were: a hundred to a folder, a hundred folders to a branch. Names,
// sizes, times and bytes follow from a file's number alone, so that ten million of them take no room here, and are the
// same for the same number.
//
//   quillon_bench_made_files MOUNT_POINT FILES
//
// Of ten files seven begin as their extension promises, one is empty, and two are noise. It runs in the foreground
// until it is unmounted.

#define FUSE_USE_VERSION 312

#include <fuse_lowlevel.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::int64_t kInFolder = 100;
constexpr std::int64_t kInBranch = kInFolder * 100;
constexpr double kKeptSeconds = 60;

struct Kind {
    std::string_view extension;
    std::string_view head;
};
constexpr std::array<Kind, 6> kKinds = {{{"jpg", "\xFF\xD8\xFF\xE1"},
                                         {"png", "\x89PNG\r\n\x1A\n"},
                                         {"pdf", "%PDF-1.4\n"},
                                         {"zip", "PK\x03\x04"},
                                         {"gif", "GIF89a"},
                                         {"bmp", "BM"}}};

// Node 1 is the root. Every other node is one of these three, and a number.
enum class Level : std::uint64_t { Root, Branch, Folder, File };
struct Node {
    Level level = Level::Root;
    std::int64_t number = 0;
};

std::int64_t files = 0;

fuse_ino_t inodeOf(const Node& node) {
    return node.level == Level::Root
               ? FUSE_ROOT_ID
               : static_cast<std::uint64_t>(node.level) << 56U | static_cast<std::uint64_t>(node.number);
}

Node nodeOf(fuse_ino_t inode) {
    if (inode == FUSE_ROOT_ID)
        return {};
    return {static_cast<Level>(inode >> 56U), static_cast<std::int64_t>(inode & 0xFF'FFFF'FFFF'FFFFU)};
}

// As random as it has to be, and the same everywhere.
std::uint64_t mixed(std::uint64_t number) {
    number += 0x9E3779B97F4A7C15U;
    number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31U);
}

std::uint64_t chanceOf(std::int64_t file) {
    return mixed(static_cast<std::uint64_t>(file));
}

const Kind& kindOf(std::int64_t file) {
    return kKinds[chanceOf(file) / 10 % kKinds.size()];
}

bool isEmpty(std::int64_t file) {
    return chanceOf(file) % 10 == 9;
}

std::int64_t sizeOf(std::int64_t file) {
    return isEmpty(file) ? 0 : static_cast<std::int64_t>(512 + chanceOf(file) / 100 % 4'000'000);
}

// So many nodes of the next level a node has at most, and one of the last level this many files.
std::int64_t filesBelow(Level level) {
    return level == Level::Root ? files : level == Level::Branch ? kInBranch : level == Level::Folder ? kInFolder : 1;
}

// The number of the first and of the last node below, of the next level; the last one is not meant.
std::pair<std::int64_t, std::int64_t> childrenOf(const Node& node) {
    const std::int64_t first = node.number * filesBelow(node.level);
    const std::int64_t end = std::min(first + filesBelow(node.level), files);
    const std::int64_t each = filesBelow(static_cast<Level>(static_cast<std::uint64_t>(node.level) + 1));
    return {first / each, (end + each - 1) / each};
}

Node childOf(const Node& node, std::int64_t number) {
    return {static_cast<Level>(static_cast<std::uint64_t>(node.level) + 1), number};
}

std::string nameOf(const Node& node) {
    std::array<char, 40> text{};
    const char* const form = node.level == Level::Branch   ? "branch %08lld"
                             : node.level == Level::Folder ? "folder %08lld"
                                                           : "file %08lld.";
    std::snprintf(text.data(), text.size(), form, static_cast<long long>(node.number));
    std::string name = text.data();
    if (node.level == Level::File)
        name += kindOf(node.number).extension;
    return name;
}

std::optional<Node> childNamed(const Node& node, std::string_view name) {
    const auto space = name.find(' ');
    std::int64_t number = -1;
    if (node.level == Level::File || space == name.npos)
        return std::nullopt;
    std::from_chars(name.data() + space + 1, name.data() + name.size(), number);
    const auto [first, end] = childrenOf(node);
    const Node child = childOf(node, number);
    return number >= first && number < end && nameOf(child) == name ? std::optional(child) : std::nullopt;
}

struct stat statOf(const Node& node) {
    struct stat info {};
    info.st_ino = inodeOf(node);
    info.st_mode = node.level == Level::File ? S_IFREG | 0444 : S_IFDIR | 0555;
    info.st_nlink = 1;
    info.st_mtim.tv_sec = info.st_ctim.tv_sec = info.st_atim.tv_sec = 1'700'000'000 + node.number;
    if (node.level == Level::File) {
        info.st_size = sizeOf(node.number);
        info.st_blocks = (info.st_size + 511) / 512;
    }
    return info;
}

// The bytes of a file from a place on: a head, and noise.
void fill(std::int64_t file, std::uint64_t from, std::vector<char>& bytes) {
    const std::uint64_t chance = chanceOf(file);
    for (std::size_t at = 0; at < bytes.size(); at += sizeof chance) {
        const std::uint64_t noise = mixed(chance ^ (from + at));
        std::memcpy(&bytes[at], &noise, std::min(sizeof noise, bytes.size() - at));
    }
    const std::string_view head = kindOf(file).head;
    if (from == 0 && chance % 10 < 7)
        std::memcpy(bytes.data(), head.data(), std::min(head.size(), bytes.size()));
}

fuse_entry_param entryOf(const Node& node) {
    fuse_entry_param entry{};
    entry.ino = inodeOf(node);
    entry.attr = statOf(node);
    entry.attr_timeout = entry.entry_timeout = kKeptSeconds;
    return entry;
}

void begin(void* /*data*/, fuse_conn_info* connection) {
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS_AUTO);  // each folder as a whole
}

void lookup(fuse_req_t request, fuse_ino_t parent, const char* name) {
    const auto node = childNamed(nodeOf(parent), name);
    if (!node) {
        fuse_reply_err(request, ENOENT);
        return;
    }
    const fuse_entry_param entry = entryOf(*node);
    fuse_reply_entry(request, &entry);
}

void getattr(fuse_req_t request, fuse_ino_t inode, fuse_file_info* /*file*/) {
    const struct stat info = statOf(nodeOf(inode));
    fuse_reply_attr(request, &info, kKeptSeconds);
}

void readFolder(fuse_req_t request, fuse_ino_t inode, std::size_t size, off_t from, fuse_file_info* /*file*/) {
    const Node node = nodeOf(inode);
    const auto [first, end] = childrenOf(node);
    std::vector<char> entries(size);
    std::size_t used = 0;
    for (std::int64_t number = first + from; number < end; ++number) {
        const Node child = childOf(node, number);
        const fuse_entry_param entry = entryOf(child);
        const std::size_t need = fuse_add_direntry_plus(request, &entries[used], size - used, nameOf(child).c_str(),
                                                        &entry, number - first + 1);
        if (need > size - used)
            break;
        used += need;
    }
    fuse_reply_buf(request, entries.data(), used);
}

void readFile(fuse_req_t request, fuse_ino_t inode, std::size_t size, off_t from, fuse_file_info* /*file*/) {
    const std::int64_t file = nodeOf(inode).number;
    const std::int64_t left = std::max<std::int64_t>(sizeOf(file) - from, 0);
    std::vector<char> bytes(std::min(size, static_cast<std::size_t>(left)));
    fill(file, static_cast<std::uint64_t>(from), bytes);
    fuse_reply_buf(request, bytes.data(), bytes.size());
}

int serve(char* program, const char* point) {
    fuse_lowlevel_ops calls{};  // without open and opendir the system asks for neither
    calls.init = begin;
    calls.lookup = lookup;
    calls.getattr = getattr;
    calls.readdirplus = readFolder;
    calls.read = readFile;
    std::string options = "-oro,fsname=made";
    char* words[] = {program, options.data(), nullptr};
    fuse_args arguments = FUSE_ARGS_INIT(2, words);
    fuse_session* const session = fuse_session_new(&arguments, &calls, sizeof calls, nullptr);
    if (session == nullptr || fuse_set_signal_handlers(session) != 0 || fuse_session_mount(session, point) != 0)
        return 1;
    fuse_loop_config* const loop = fuse_loop_cfg_create();
    const int served = fuse_session_loop_mt(session, loop);
    fuse_loop_cfg_destroy(loop);
    fuse_session_unmount(session);
    fuse_session_destroy(session);
    return served == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 3 || (files = std::atoll(argv[2])) <= 0) {
        std::fputs("usage: quillon_bench_made_files MOUNT_POINT FILES\n", stderr);
        return 2;
    }
    return serve(argv[0], argv[1]);
}
