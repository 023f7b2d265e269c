// SPDX-License-Identifier: MIT
#include "job/job_part.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

#include "evidence/digest.h"

namespace quillon {

namespace {

std::optional<std::int64_t> numberFrom(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

}  // namespace

bool JobPart::has(std::string_view folder) const {
    Digest digest;
    digest.add(folder);
    const auto place = static_cast<std::uint64_t>(digest.value()) % static_cast<std::uint64_t>(of);
    return static_cast<std::int64_t>(place) + 1 == number;
}

std::optional<JobPart> partOf(const std::string& jobId, std::string_view text) {
    const auto slash = text.find('/');
    if (slash == text.npos)
        return std::nullopt;
    const auto number = numberFrom(text.substr(0, slash));
    const auto of = numberFrom(text.substr(slash + 1));
    if (!number || !of || *number < 1 || *number > *of || *of > kMostParts)
        return std::nullopt;
    return JobPart{*number, *of, jobId};
}

std::string partText(const JobPart& part) {
    return fmt::format("{}/{}", part.number, part.of);
}

std::string idOfPart(const JobPart& part, std::string_view separator) {
    return fmt::format("{}{}Part {}", part.jobId, separator, part.number);
}

OwnFolders::OwnFolders(const NativePath& source, const std::optional<JobPart>& part)
    : part_(part), prefix_(source.native().size() + (source.native().ends_with('/') ? 0 : 1)) {
}

bool OwnFolders::hold(std::string_view path) const {
    if (!part_)
        return true;
    path.remove_prefix(std::min(prefix_, path.size()));
    path.remove_suffix(path.ends_with('/') ? 1 : 0);
    return part_->has(path);
}

}  // namespace quillon
