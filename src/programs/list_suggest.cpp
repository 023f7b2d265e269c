// SPDX-License-Identifier: MIT
#include "programs/list_suggest.h"

#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "answers/suggestion_source.h"
#include "platform/whole_file.h"
#include "text/json_text.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// One name a line, or a zero byte behind each, as the subcommand "files" writes them.
std::set<std::string> namesOf(const std::string& text) {
    const char end = text.find('\0') == text.npos ? '\n' : '\0';
    std::set<std::string> names;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t stop = std::min(text.find(end, start), text.size());
        if (stop > start)
            names.insert(text.substr(start, stop - start));
        start = stop + 1;
    }
    return names;
}

std::string suggestionsJson(const std::vector<TermSuggestion>& suggestions) {
    nlohmann::ordered_json rows = nlohmann::ordered_json::array();
    for (const auto& one : suggestions)
        rows.push_back({{"position", one.position},
                        {"term", one.term},
                        {"type", std::string(1, one.type)},
                        {"hits", one.hits},
                        {"listed", one.listed},
                        {"false_hits", one.falseHits},
                        {"others", one.others}});
    return jsonText(rows) + "\n";
}

std::string suggestionsText(const std::vector<TermSuggestion>& suggestions) {
    std::string text;
    for (const auto& one : suggestions)
        text += fmt::format("{:>3} {} {:<32} {}\n", one.position, one.type, one.term,
                            readable(std::string_view(one.sentence)));
    return text;
}

}  // namespace

Result<int> suggestFromJobs(const std::vector<JobFiles>& jobs, const ListCommandOptions& options,
                            const ListStreams& streams) {
    SuggestionWish wish{options.wish.extensions.front(), {}};
    if (options.paths) {
        const auto names = readWholeFile(*options.paths);
        if (!names)
            return failure(names.error());
        wish.paths = namesOf(*names);
    }
    SuggestionHeads heads;
    heads.extension = wish.extension;
    for (const auto& job : jobs) {
        if (const auto added = addHeads(job, wish, heads); !added)
            return failure(added.error());
    }
    const auto suggestions = suggestTerms(std::move(heads));
    streams.out << (options.json ? suggestionsJson(suggestions) : suggestionsText(suggestions));
    if (suggestions.empty() && !options.json)
        streams.out << "nothing to suggest\n";
    return kListSame;
}

}  // namespace quillon
