// SPDX-License-Identifier: MIT
#include "programs/job_options.h"

#include <algorithm>
#include <charconv>
#include <memory>
#include <ostream>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "answers/file_wish.h"
#include "app/version.h"
#include "job/job_end.h"
#include "job/job_id.h"
#include "platform/folders.h"
#include "programs/given_arguments.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kUsage = "quillon-job --job ID --source DIR";
// The settings name it later; one character.
constexpr const char* kSomeSeparator = "-";
constexpr const char* kRegradeUsage = "quillon-job --regrade ID";
constexpr const char* kScanUsage = "quillon-job --job ID --scan-sectors";

constexpr const char* kFooter =
    "Ctrl-C, SIGTERM and SIGHUP stop at the next row, and the list so far stays; a second one ends at once, with 128 and\n"
    "the signal's number. Without --yes a question is asked on the terminal; without one the cautious answer is taken.";

// What was typed, before paths are looked at.
struct Given {
    JobCommandOptions options;
    std::string source;
    std::string target;
    std::string app;
    std::string part;
    std::string copyGrades;
    std::vector<const char*> ofJobs;  // options that work on a finished job does not take
    std::string wrongNumber;          // the option that needs a number and has none
    bool jobGiven = false;
};

// A number from 1 to a million.
void takeNumber(Given& given, const char* option, const std::string& value, int& number) {
    constexpr int kMost = 1'000'000;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || end != value.data() + value.size() || number < 1 || number > kMost)
        given.wrongNumber = option;
}

struct OptionRow : CommandOption {
    void (*take)(Given&, const std::string& value);
    bool ofRegrades = false;  // work on a finished job takes it, too
};

// Help, parser, manual and completion have the options of this table.
constexpr OptionRow kOptions[] = {
    {{"--job", "ID", "Job ID; names the list"},
     [](Given& given, const std::string& value) {
         given.options.jobId = value;
         given.jobGiven = true;
     },
     true},
    {{"--source", "DIR", "Folder with the recovered files; it is never written to"},
     [](Given& given, const std::string& value) { given.source = value; }},
    {{"--regrade", "ID", "Grade the list of this job anew from its evidence, without its source"},
     [](Given& given, const std::string& value) {
         given.options.jobId = value;
         given.options.regrade = true;
     },
     true},
    {{"--resume", "", "Go on with the last run of the job, and read only what that has not"},
     [](Given& given, const std::string&) { given.options.resume = true; }},
    {{"--part", "K/N", "Do part K of N only, for N computers; quillon-list merge makes one job of them"},
     [](Given& given, const std::string& value) { given.part = value; }},
    {{"--scan-sectors", "",
      "Read the files to their ends, too, and look for bad sectors; without --source, those of a finished job"},
     [](Given& given, const std::string&) { given.options.scanSectors = true; },
     true},
    {{"--target", "DIR", "Copy the files below this folder"},
     [](Given& given, const std::string& value) { given.target = value; }},
    {{"--copy-grades", "GRADE,...", "Copy only files of these grades: good, common-header, unknown ..."},
     [](Given& given, const std::string& value) { given.copyGrades = value; }},
    {{"--verify", "", "Read each copy back from the disk, and leave check sums with the copies"},
     [](Given& given, const std::string&) { given.options.copyCare.verify = true; }},
    {{"--salvage", "", "Copy what can be read of a file, with gaps of zeros for the rest"},
     [](Given& given, const std::string&) { given.options.copyCare.salvage = true; }},
    {{"--no-sync", "", "Copy without waiting for the disk: a power cut may leave copies empty"},
     [](Given& given, const std::string&) { given.options.copyCare.sync = false; }},
    {{"--no-test", "", "List only, without testing the headers"},
     [](Given& given, const std::string&) { given.options.test = false; }},
    {{"--no-skip-list", "", "List the files of the skip list too"},
     [](Given& given, const std::string&) { given.options.skipList = false; }},
    {{"--no-common-headers", "", "Do not look for common headers"},
     [](Given& given, const std::string&) { given.options.commonHeaders = false; },
     true},
    {{"--no-evidence", "", "Leave no evidence beside the list"},
     [](Given& given, const std::string&) { given.options.evidence = false; }},
    {{"--no-heads", "", "Leave the first bytes of the files out of the evidence"},
     [](Given& given, const std::string&) { given.options.heads = false; }},
    {{"--ends", "", "Look at the ends of the files, too, for cut ones, and note it in the evidence"},
     [](Given& given, const std::string&) { given.options.ends = true; }},
    {{"--gentle", "", "Ask the source for one thing at a time, as of a dying disk"},
     [](Given& given, const std::string&) { given.options.gentle = true; }},
    {{"--hang-limit", "SECONDS", "Take a head that does not come within this time for an unreadable one"},
     [](Given& given, const std::string& value) { takeNumber(given, "--hang-limit", value, given.options.hangLimit); }},
    {{"--threads", "N", "Read the heads of a quick source by so many threads (default: 1)"},
     [](Given& given, const std::string& value) { takeNumber(given, "--threads", value, given.options.threads); }},
    {{"--alert", "COMPUTER", "Send the completion report to this computer"},
     [](Given& given, const std::string& value) { given.options.alertComputer = value; }},
    {{"--alert-optional", "", "A report that nobody acknowledges is no failure"},
     [](Given& given, const std::string&) { given.options.alertOptional = true; }},
    {{"--app", "DIR", "Application folder (default: the folder of this program)"},
     [](Given& given, const std::string& value) { given.app = value; },
     true},
    {{"--json", "", "Print the result as one JSON object"},
     [](Given& given, const std::string&) { given.options.json = true; },
     true},
    {{"--log-json", "", "Print each log row as a line of JSON when it comes"},
     [](Given& given, const std::string&) { given.options.logJson = true; },
     true},
    {{"--discard-partial", "", "Delete the partial list of a job that is stopped"},
     [](Given& given, const std::string&) { given.options.discardPartial = true; }},
    {{"--yes", "", "Answer Yes, but not to what needs an answer of its own"},
     [](Given& given, const std::string&) { given.options.yes = true; },
     true},
    {{"--quiet", "", "Print no progress, and of the log no more than warnings that concern the whole job"},
     [](Given& given, const std::string&) { given.options.quiet = true; },
     true},
};

class HelpText final : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* /*command*/, std::string /*name*/) const override {
        return fmt::format("Usage: {} [OPTIONS]\n       {} [OPTIONS]\n       {} [OPTIONS]\n", kUsage, kRegradeUsage,
                           kScanUsage);
    }
};

// Why a path is no folder to work with; empty when it is one.
std::string folderProblem(const NativePath& path) {
    if (isFolder(path))
        return {};
    const auto stamp = fileStamp(path);
    if (stamp)
        return "is not a folder";
    return stamp.error().kind == ErrorKind::NotFound ? "does not exist" : "cannot be reached";
}

// What is wrong with the options of copies together, if anything is.
std::string wrongCopyOptions(const Given& given) {
    const CopyCare& care = given.options.copyCare;
    if (care.verify && !care.sync)
        return "--verify reads what is on the disk, and takes no --no-sync";
    if (!given.copyGrades.empty() && !given.options.test)
        return "--copy-grades goes by what the test finds, and takes no --no-test";
    if (!given.target.empty())
        return {};
    const std::pair<bool, const char*> ofCopies[] = {{!given.copyGrades.empty(), "--copy-grades"},
                                                     {care.verify, "--verify"},
                                                     {care.salvage, "--salvage"},
                                                     {!care.sync, "--no-sync"}};
    for (const auto& [isGiven, name] : ofCopies) {
        if (isGiven)
            return fmt::format("{} needs --target", name);
    }
    return {};
}

// What is done with a finished job; null for a new one.
const char* workOnFinished(const Given& given) {
    if (given.options.scanSectors && given.source.empty())
        return "--scan-sectors without --source";
    return given.options.regrade ? "--regrade" : nullptr;
}

// What is wrong with the options together, if anything is.
std::string wrongOptions(const Given& given) {
    if (!given.wrongNumber.empty())
        return fmt::format("{} needs a number of 1 or more", given.wrongNumber);
    if (given.options.regrade && given.options.scanSectors)
        return "--regrade takes no --scan-sectors";
    if (given.options.regrade && given.jobGiven)
        return "--regrade takes no --job";
    if (given.options.jobId.empty())
        return "--job is required";
    if (const char* work = workOnFinished(given); work != nullptr)
        return given.ofJobs.empty() ? "" : fmt::format("{} takes no {}", work, given.ofJobs.front());
    if (given.source.empty())
        return "--source is required";
    if (given.options.scanSectors && !given.options.evidence)
        return "--scan-sectors takes no --no-evidence: what it finds is kept there";
    if (given.options.resume && !(given.options.test && given.options.evidence))
        return fmt::format("--resume takes no {}", given.options.test ? "--no-evidence" : "--no-test");
    if (given.options.ends && !(given.options.test && given.options.evidence))
        return fmt::format("--ends takes no {}", given.options.test ? "--no-evidence" : "--no-test");
    if (!given.part.empty() && !given.options.evidence)
        return "--part takes no --no-evidence: the parts are put together by it";
    if (!given.part.empty() && !partOf(given.options.jobId, given.part))
        return fmt::format("--part \"{}\" is not K/N with K from 1 to N", readable(std::string_view(given.part)));
    return wrongCopyOptions(given);
}

// Understands names of grades; empty when all is well.
std::string understandGrades(Given& given) {
    if (given.copyGrades.empty())
        return {};
    for (const std::string_view name : splitFields(std::string_view(given.copyGrades), ',')) {
        const auto grade = gradeNamed(name);
        if (!grade)
            return fmt::format("--copy-grades: \"{}\" is none", readable(name));
        given.options.copyGrades.push_back(*grade);
    }
    return {};
}

// What is wrong with the values, if anything is.
std::string wrongUsage(const JobCommandOptions& options, const std::string& givenSource) {
    const std::string listed = options.part ? idOfPart(*options.part, kSomeSeparator) : options.jobId;
    if (options.jobId.empty() || cleanJobId(options.jobId) != options.jobId || !isFileName(listed + ".csv")) {
        return fmt::format(
            "{} \"{}\" cannot be used: a job ID is not empty, has no blanks around it and none of : \\ / @ * ? < > "
            "| \"",
            options.regrade ? "--regrade" : "--job", readable(std::string_view(options.jobId)));
    }
    if (const auto problem = givenSource.empty() ? "" : folderProblem(options.source); !problem.empty())
        return fmt::format("--source \"{}\" {}", readable(std::string_view(givenSource)), problem);
    if (options.target && pathExists(*options.target) && !isFolder(*options.target))
        return fmt::format("--target \"{}\" is not a folder", readable(options.target->native()));
    if (options.target && liesIn(realPath(*options.target), realPath(options.source)))
        return fmt::format("--target \"{}\" lies in the source, which is never written to",
                           readable(options.target->native()));
    if (options.appFolder) {
        if (const auto problem = folderProblem(*options.appFolder); !problem.empty())
            return fmt::format("--app \"{}\" {}", readable(options.appFolder->native()), problem);
    }
    return {};
}

void take(const OptionRow& row, Given& given, const std::string& value) {
    if (!row.ofRegrades)
        given.ofJobs.push_back(row.name);
    row.take(given, value);
}

void declareOptions(CLI::App& command, Given& given) {
    for (const OptionRow& row : kOptions) {
        if (row.value[0] == '\0') {
            command.add_flag_callback(
                row.name, [&row, &given] { take(row, given, {}); }, row.meaning);
            continue;
        }
        const auto taken = [&row, &given](const std::string& value) { take(row, given, value); };
        command.add_option_function<std::string>(row.name, taken, row.meaning)->type_name(row.value);
    }
    const Version version = programVersion();
    command.set_version_flag("--version",
                             fmt::format("quillon-job {}.{}.{}", version.major, version.minor, version.revision));
}

std::string footer() {
    std::string text = "Exit status:\n";
    for (const auto& row : kExitStatuses) text += fmt::format("  {:<4} {}\n", row.status, row.text);
    return text + "\n" + kFooter;
}

}  // namespace

std::vector<CommandOption> jobCommandOptions() {
    return {std::begin(kOptions), std::end(kOptions)};
}

ParsedJobCommand parseJobCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    Given given;
    CLI::App command("Tests every file of a recovered tree and writes the job's file list.", "quillon-job");
    command.formatter(std::make_shared<HelpText>());
    command.footer(footer());
    declareOptions(command, given);
    try {
        parseArguments(command, arguments);
    } catch (const CLI::Success& done) {
        return {std::nullopt, command.exit(done, out, err)};
    } catch (const CLI::ParseError& wrong) {
        err << "quillon-job: " << wrong.what() << " (usage: " << kUsage << "; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    if (const auto wrong = wrongOptions(given); !wrong.empty()) {
        err << "quillon-job: " << wrong << " (usage: " << kUsage << "; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    if (const auto wrong = understandGrades(given); !wrong.empty()) {
        err << "quillon-job: " << wrong << " (usage: " << kUsage << "; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    JobCommandOptions& options = given.options;
    if (!given.source.empty())
        options.source = pathFromRoot(given.source).value_or(given.source);
    if (!given.part.empty())
        options.part = partOf(options.jobId, given.part);
    if (!given.target.empty())
        options.target = pathFromRoot(given.target).value_or(given.target);
    if (!given.app.empty())
        options.appFolder = pathFromRoot(given.app).value_or(given.app);
    if (const auto wrong = wrongUsage(options, given.source); !wrong.empty()) {
        err << "quillon-job: " << wrong << " (usage: " << kUsage << "; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    return {options, 0};
}

}  // namespace quillon
