// SPDX-License-Identifier: MIT
#include "support/save_storm.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <fmt/format.h>

#include "platform/whole_file.h"

namespace quillon::test {

namespace {

constexpr std::size_t kLineBytes = 22;  // "1,<16 digits>,H" and the end of the line

constexpr int kSaveTries = 100;
constexpr std::chrono::milliseconds kPause{100};

// A version is one line again and again; the digits say which version, and with it how many lines.
std::size_t linesOf(std::size_t version) {
    return 100 + version % 900;
}

std::string versionText(unsigned process, std::size_t version) {
    const std::string line = fmt::format("1,{:06X}{:010X},H\r\n", process, version);
    std::string text;
    text.reserve(kLineBytes * linesOf(version));
    for (std::size_t i = 0; i < linesOf(version); ++i) text += line;
    return text;
}

bool isWhole(std::string_view text) {
    if (text.size() < kLineBytes)
        return false;
    const unsigned process = static_cast<unsigned>(std::stoul(std::string(text.substr(2, 6)), nullptr, 16));
    const std::size_t version = std::stoul(std::string(text.substr(8, 10)), nullptr, 16);
    return text == versionText(process, version);
}

class Storm {
public:
    Storm(const NativePath& file, const SaveStorm& storm) : file_(file), storm_(storm) {}

    StormCounts run() {
        save(0);
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < storm_.writers; ++i) threads.emplace_back([this] { saveAll(); });
        for (unsigned i = 0; i < storm_.readers; ++i) threads.emplace_back([this] { readAll(); });
        threads.clear();  // waits for all
        return {saved_, refused_, whole_, absent_, empty_, torn_, refusal_};
    }

private:
    // A refused save is tried again, as its user would.
    void save(std::size_t version) {
        const std::string text = versionText(storm_.process, version);
        for (int tries = 0; tries < kSaveTries; ++tries) {
            const auto done = saveWholeFile(file_, text, TemporaryPlace::AboveFolder);
            if (done) {
                ++saved_;
                return;
            }
            tellRefusal(done.error().text);
            std::this_thread::sleep_for(kPause);
        }
    }
    void tellRefusal(const std::string& text) {
        ++refused_;
        const std::lock_guard lock(mutex_);
        refusal_ = text;
    }
    void saveAll() {
        while (true) {
            const std::size_t version = nextSave_++;
            if (version >= storm_.saves)
                return;
            save(version);
        }
    }
    void readAll() {
        while (nextRead_++ < storm_.reads) {
            const auto text = readWholeFile(file_);
            if (!text)
                ++absent_;
            else if (text->empty())
                ++empty_;
            else
                ++(isWhole(*text) ? whole_ : torn_);
        }
    }

    const NativePath& file_;
    const SaveStorm& storm_;
    std::atomic<std::size_t> nextSave_{1}, nextRead_{0}, saved_{0}, refused_{0}, whole_{0}, absent_{0}, empty_{0},
        torn_{0};
    std::mutex mutex_;
    std::string refusal_;
};

}  // namespace

StormCounts runSaveStorm(const NativePath& file, const SaveStorm& storm) {
    return Storm(file, storm).run();
}

}  // namespace quillon::test
