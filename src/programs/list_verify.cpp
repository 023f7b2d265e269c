// SPDX-License-Identifier: MIT
#include "programs/list_verify.h"

#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "evidence/name_text.h"
#include "job/copy_queue.h"
#include "job/copy_record.h"
#include "platform/folders.h"
#include "platform/medium_reader.h"
#include "programs/list_loop.h"
#include "text/json_text.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

class Comparison {
public:
    Comparison(const NativePath& folder, const ListCommandOptions& options, const ListStreams& streams)
        : folder_(withOneSlash(folder.native())),
          options_(options),
          streams_(streams),
          loop_(streams, [this] { return line(); }) {}

    // False: stopped.
    [[nodiscard]] bool compare(const CheckSum& sum) {
        const auto path = copyTarget(folder_, sum.name);
        if (!path) {
            tell("unreadable", sum.name, "it leads out of the folder");
            return !loop_.stopAsked();
        }
        auto reader = MediumReader::open(NativePath(*path));
        if (!reader) {
            tell(reader.error().kind == ErrorKind::NotFound ? "missing" : "unreadable", sum.name, reader.error().cause);
            return !loop_.stopAsked();
        }
        const auto hash = hashOfMedium(*std::move(reader), [this](std::uint64_t bytes) {
            bytes_ += static_cast<std::int64_t>(bytes);
            loop_.turn();
            return !loop_.stopAsked();
        });
        if (!hash && hash.error().side == CopySide::Cancelled)
            return false;
        if (!hash)
            tell("unreadable", sum.name, hash.error().error.cause);
        else if (hexText(*hash) != sum.digest)
            tell("differs", sum.name, {});
        else
            ++equal_;
        return !loop_.stopAsked();
    }

    [[nodiscard]] int finish(bool stopped, std::int64_t unread) {
        loop_.clearLine();
        if (options_.json) {
            const Json json = {{"equal", equal_},        {"bad", bad_},    {"bytes", bytes_}, {"stopped", stopped},
                               {"unread_lines", unread}, {"files", files_}};
            streams_.out << jsonText(json) << '\n';
        } else {
            streams_.out << fmt::format("{} files are as they were, {} are not{}{}\n", grouped(equal_), grouped(bad_),
                                        unread > 0 ? fmt::format("; {} lines are no check sums", grouped(unread)) : "",
                                        stopped ? "; stopped" : "");
        }
        return bad_ > 0 || unread > 0 || stopped ? kListDiffers : kListSame;
    }

private:
    [[nodiscard]] std::string line() const {
        return fmt::format("{} files, {} bytes, {} not as they were", grouped(equal_ + bad_), grouped(bytes_),
                           grouped(bad_));
    }

    void tell(const char* what, const std::string& name, const std::string& why) {
        ++bad_;
        if (options_.json) {
            files_.push_back({{"what", what}, {"path", nameText(name)}, {"error", why}});
            return;
        }
        loop_.clearLine();
        streams_.out << fmt::format("{:<10} {}{}\n", what, readable(std::string_view(name)),
                                    why.empty() ? "" : " (" + why + ")");
    }

    const std::string folder_;  // ends in "/"
    const ListCommandOptions& options_;
    const ListStreams& streams_;
    ListLoop loop_;
    std::int64_t equal_ = 0;
    std::int64_t bad_ = 0;
    std::int64_t bytes_ = 0;
    Json files_ = Json::array();
};

NativePath manifestOf(const JobFiles& job, const NativePath& folder) {
    const NativePath there = manifestIn(folder, job.id);
    return pathExists(there) || job.list.empty() ? there : manifestIn(job.list.parent_path(), job.id);
}

}  // namespace

Result<int> verifyCopies(const JobFiles& job, const NativePath& folder, const ListCommandOptions& options,
                         const ListStreams& streams) {
    auto sums = CheckSumReader::open(manifestOf(job, folder));
    if (!sums)
        return failure(sums.error());
    Comparison comparison(folder, options, streams);
    bool goesOn = true;
    while (goesOn) {
        const auto sum = sums->next();
        if (!sum)
            return failure(sum.error());
        if (!*sum)
            break;
        goesOn = comparison.compare(**sum);
    }
    return comparison.finish(!goesOn, sums->unread());
}

}  // namespace quillon
