// SPDX-License-Identifier: MIT
// The limit that a job is measured against: the system calls that cannot be left out, in one bare loop. It lists the
// folders (getdents64), asks for each file's data once (statx), and for every file of 512 bytes or more opens it, reads
// once and closes it, grades it by term files that were loaded once, and writes one row. It checks no rule and copes
// with no surprise.
//
// Usage: quillon_bench_limit SOURCE ROWS [TERM FOLDER]
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::size_t kHeaderBytes = 512;
constexpr std::size_t kEntryBytes = 32768;

struct Term {
    std::size_t position = 0;  // 1 to 512, 0 means anywhere
    std::string bytes;         // decoded and folded
};
using Database = std::unordered_map<std::string, std::vector<Term>>;

std::array<char, 256> foldingTable() {
    std::array<char, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const bool upper = (i >= 'A' && i <= 'Z') || (i >= 0xC0 && i <= 0xDE && i != 0xD7);
        table[i] = static_cast<char>(upper ? i + 0x20 : i);
    }
    return table;
}

void fold(std::span<char> bytes) {
    static const std::array<char, 256> table = foldingTable();
    for (char& byte : bytes) {
        byte = table[static_cast<unsigned char>(byte)];
    }
}

Term parseTerm(const std::string& line) {
    const std::size_t first = line.find(',');
    const std::size_t second = line.find(',', first + 1);
    Term term{std::strtoul(line.c_str(), nullptr, 10), line.substr(first + 1, second - first - 1)};
    if (line.compare(second + 1, std::string::npos, "H") == 0) {
        std::string decoded;
        for (std::size_t at = 0; at < term.bytes.size(); at += 2) {
            decoded += static_cast<char>(std::strtoul(term.bytes.substr(at, 2).c_str(), nullptr, 16));
        }
        term.bytes = decoded;
    }
    fold(term.bytes);
    return term;
}

Database loadDatabase(const char* folder) {
    Database database;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::vector<Term>& terms = database[entry.path().stem().string()];
        std::ifstream stream(entry.path(), std::ios::binary);
        for (std::string line; std::getline(stream, line);) {
            if (!line.empty() && line.back() == '\r') {
                line.pop_back();
            }
            terms.push_back(parseTerm(line));
        }
    }
    return database;
}

bool matches(const Term& term, std::string_view head) {
    if (term.position == 0) {
        return memmem(head.data(), head.size(), term.bytes.data(), term.bytes.size()) != nullptr;
    }
    return term.position <= head.size() && head.substr(term.position - 1, term.bytes.size()) == term.bytes;
}

class Loop {
public:
    Loop(int rows, const Database& database) : rows_(rows), database_(database) {}

    void walk(int folder, std::string& path);
    long files() const { return files_; }
    long reads() const { return reads_; }

private:
    std::string_view grade(int folder, const char* name, std::uint64_t size);
    std::string_view gradeHead(std::string_view head, const char* name);
    void testFile(int folder, const char* name, const std::string& path);
    void addNumber(std::uint64_t number);
    void writeRow();

    int rows_;
    const Database& database_;
    std::string row_;
    std::u16string wide_;
    std::string extension_;
    long files_ = 0;
    long reads_ = 0;
};

std::string_view Loop::gradeHead(std::string_view head, const char* name) {
    const char* dot = std::strrchr(name, '.');
    if (dot == nullptr) {
        return "No Extension";
    }
    extension_.assign(dot + 1);
    fold(extension_);
    const auto terms = database_.find(extension_);
    if (terms == database_.end()) {
        return "Unknown or ambiguous file type";
    }
    for (const Term& term : terms->second) {
        if (matches(term, head)) {
            return "Header OK";
        }
    }
    return "Header Corrupt";
}

std::string_view Loop::grade(int folder, const char* name, std::uint64_t size) {
    if (size < kHeaderBytes) {
        return size == 0 ? "File is zero bytes" : "File too small to test (<512 bytes)";
    }
    const int file = openat(folder, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0) {
        return "Access error";
    }
    std::array<char, kHeaderBytes> head;
    const ssize_t got = read(file, head.data(), head.size());
    close(file);
    ++reads_;
    const std::span<char> bytes(head.data(), got < 0 ? 0 : static_cast<std::size_t>(got));
    fold(bytes);
    return gradeHead({bytes.data(), bytes.size()}, name);
}

void Loop::addNumber(std::uint64_t number) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    row_.append(", ").append(digits.data(), end.ptr);
}

void Loop::writeRow() {
    wide_.resize(row_.size());
    for (std::size_t i = 0; i < row_.size(); ++i) {
        wide_[i] = static_cast<unsigned char>(row_[i]);
    }
    if (write(rows_, wide_.data(), wide_.size() * sizeof(char16_t)) < 0) {
        std::perror("write");
        std::exit(1);
    }
}

void Loop::testFile(int folder, const char* name, const std::string& path) {
    struct statx data;
    if (statx(folder, name, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &data) != 0) {
        return;
    }
    ++files_;
    const std::time_t modified = data.stx_mtime.tv_sec;
    std::tm date;
    localtime_r(&modified, &date);
    std::array<char, 32> text;
    const std::size_t length = std::strftime(text.data(), text.size(), ",%d/%m/%Y", &date);
    row_.assign(path).append(name).append(text.data(), length);
    addNumber(data.stx_size);
    row_.append(", 32;Ab9x,").append(grade(folder, name, data.stx_size)).append("\r\n");
    writeRow();
}

void Loop::walk(int folder, std::string& path) {
    std::vector<std::string> folders;
    std::vector<char> entries(kEntryBytes);
    for (long got = 0; (got = syscall(SYS_getdents64, folder, entries.data(), entries.size())) > 0;) {
        for (long at = 0; at < got;) {
            const auto* entry = reinterpret_cast<const dirent64*>(entries.data() + at);
            at += entry->d_reclen;
            if (entry->d_type == DT_REG) {
                testFile(folder, entry->d_name, path);
            } else if (entry->d_type == DT_DIR && std::strcmp(entry->d_name, ".") != 0 &&
                       std::strcmp(entry->d_name, "..") != 0) {
                folders.emplace_back(entry->d_name);
            }
        }
    }
    for (const std::string& name : folders) {
        const int below = openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
        const std::size_t length = path.size();
        path.append(name).append("/");
        walk(below, path);
        path.resize(length);
        close(below);
    }
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
    if (argumentCount < 3 || argumentCount > 4) {
        std::fprintf(stderr, "Usage: %s SOURCE ROWS [TERM FOLDER]\n", arguments[0]);
        return 2;
    }
    const Database database = argumentCount == 4 ? loadDatabase(arguments[3]) : Database();
    const int source = open(arguments[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int rows = open(arguments[2], O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (source < 0 || rows < 0) {
        std::perror(source < 0 ? arguments[1] : arguments[2]);
        return 1;
    }
    Loop loop(rows, database);
    std::string path = std::string(arguments[1]) + '/';
    loop.walk(source, path);
    std::printf("%ld files, %ld reads\n", loop.files(), loop.reads());
    return 0;
}
