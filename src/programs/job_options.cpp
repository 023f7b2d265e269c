// SPDX-License-Identifier: MIT
#include "programs/job_options.h"

#include <algorithm>
#include <memory>
#include <ostream>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "app/version.h"
#include "job/job_id.h"
#include "platform/folders.h"
#include "programs/job_command.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr const char* kUsage = "quillon-job --job ID --source DIR";

constexpr const char* kStatuses = R"(Exit status:
  0    the list is complete
  1    the job ended without a list
  2    wrong usage
  3    the list is there, but rows or copies failed or folders could not be read
  130  stopped

Ctrl-C is Stop. Without --yes a question is asked on the terminal; without one the cautious answer is taken.)";

class HelpText final : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* /*command*/, std::string /*name*/) const override {
        return std::string("Usage: ") + kUsage + " [OPTIONS]\n";
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

// What is wrong with the values, if anything is.
std::string wrongUsage(const JobCommandOptions& options, const std::string& givenSource) {
    if (options.jobId.empty() || cleanJobId(options.jobId) != options.jobId || !isFileName(options.jobId + ".csv")) {
        return fmt::format(
            "--job \"{}\" cannot be used: a job ID is not empty, has no blanks around it and none of : \\ / @ * ? < > "
            "| \"",
            readable(std::string_view(options.jobId)));
    }
    if (givenSource.empty())
        return "--source names no folder";
    if (const auto problem = folderProblem(options.source); !problem.empty())
        return fmt::format("--source \"{}\" {}", readable(std::string_view(givenSource)), problem);
    if (options.target && pathExists(*options.target) && !isFolder(*options.target))
        return fmt::format("--target \"{}\" is not a folder", readable(options.target->native()));
    if (options.appFolder) {
        if (const auto problem = folderProblem(*options.appFolder); !problem.empty())
            return fmt::format("--app \"{}\" {}", readable(options.appFolder->native()), problem);
    }
    return {};
}

void declareOptions(CLI::App& command, JobCommandOptions& options, std::string& source, std::string& target,
                    std::string& app) {
    command.add_option("--job", options.jobId, "Job ID; names the list")->required()->type_name("ID");
    command.add_option("--source", source, "Folder with the recovered files; it is never written to")
        ->required()
        ->type_name("DIR");
    command.add_option("--target", target, "Copy the files below this folder")->type_name("DIR");
    const auto switchesOff = [&command](const char* name, bool& value, const char* meaning) {
        command.add_flag_callback(
            name, [&value] { value = false; }, meaning);
    };
    switchesOff("--no-test", options.test, "List only, without testing the headers");
    switchesOff("--no-skip-list", options.skipList, "List the files of the skip list too");
    switchesOff("--no-common-headers", options.commonHeaders, "Do not look for common headers");
    command.add_option("--alert", options.alertComputer, "Send the completion report to this computer")
        ->type_name("COMPUTER");
    command.add_option("--app", app, "Application folder (default: the folder of this program)")->type_name("DIR");
    command.add_flag("--json", options.json, "Print the result as one JSON object");
    command.add_flag("--yes", options.yes, "Answer Yes, but not to what needs an answer of its own");
    command.add_flag("--quiet", options.quiet, "Print no log rows and no progress");
    const Version version = programVersion();
    command.set_version_flag("--version",
                             fmt::format("quillon-job {}.{}.{}", version.major, version.minor, version.revision));
}

}  // namespace

ParsedJobCommand parseJobCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    JobCommandOptions options;
    std::string source;
    std::string target;
    std::string app;
    CLI::App command("Tests every file of a recovered tree and writes the job's file list.", "quillon-job");
    command.formatter(std::make_shared<HelpText>());
    command.footer(kStatuses);
    declareOptions(command, options, source, target, app);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        command.parse(reversed);
    } catch (const CLI::Success& done) {
        return {std::nullopt, command.exit(done, out, err)};
    } catch (const CLI::ParseError& wrong) {
        err << "quillon-job: " << wrong.what() << " (usage: " << kUsage << "; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    options.source = absolutePath(source).value_or(source);
    if (!target.empty())
        options.target = absolutePath(target).value_or(target);
    if (!app.empty())
        options.appFolder = absolutePath(app).value_or(app);
    if (const auto wrong = wrongUsage(options, source); !wrong.empty()) {
        err << "quillon-job: " << wrong << " (usage: " << kUsage << "; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    return {options, 0};
}

}  // namespace quillon
