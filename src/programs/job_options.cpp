// SPDX-License-Identifier: MIT
#include "programs/job_options.h"

#include <algorithm>
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

NativePath absolutePath(const std::string& text) {
    std::error_code error;
    const NativePath path = std::filesystem::absolute(text, error).lexically_normal();
    return error ? NativePath(text) : path;
}

// What is wrong with the values, if anything is.
std::string wrongUsage(const JobCommandOptions& options, const std::string& givenSource) {
    if (options.jobId.empty() || cleanJobId(options.jobId) != options.jobId || !isFileName(options.jobId + ".csv")) {
        return fmt::format(
            "--job \"{}\" cannot be used: a job ID is not empty, has no blanks around it and none of : \\ / @ * ? < > "
            "| \"",
            readable(std::string_view(options.jobId)));
    }
    if (givenSource.empty() || !isFolder(options.source)) {
        return fmt::format("--source \"{}\" is not a folder", readable(std::string_view(givenSource)));
    }
    if (options.target && pathExists(*options.target) && !isFolder(*options.target)) {
        return fmt::format("--target \"{}\" is not a folder", readable(options.target->native()));
    }
    if (options.appFolder && !isFolder(*options.appFolder)) {
        return fmt::format("--app \"{}\" is not a folder", readable(options.appFolder->native()));
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
    command.add_flag("!--no-test", options.test, "List only, without testing the headers");
    command.add_flag("!--no-skip-list", options.skipList, "List the files of the skip list too");
    command.add_flag("!--no-common-headers", options.commonHeaders, "Do not look for common headers");
    command.add_option("--alert", options.alertComputer, "Send the completion report to this computer")
        ->type_name("COMPUTER");
    command.add_option("--app", app, "Application folder (default: the folder of this program)")->type_name("DIR");
    command.add_flag("--json", options.json, "Print the result as one JSON object");
    command.add_flag("--yes", options.yes, "Answer Yes to every question");
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
    declareOptions(command, options, source, target, app);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        command.parse(reversed);
    } catch (const CLI::Success& done) {
        return {std::nullopt, command.exit(done, out, err)};
    } catch (const CLI::ParseError& wrong) {
        err << "quillon-job: " << wrong.what() << " (usage: quillon-job --job ID --source DIR; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    options.source = absolutePath(source);
    if (!target.empty())
        options.target = absolutePath(target);
    if (!app.empty())
        options.appFolder = absolutePath(app);
    if (const auto wrong = wrongUsage(options, source); !wrong.empty()) {
        err << "quillon-job: " << wrong << " (usage: quillon-job --job ID --source DIR; see --help)\n";
        return {std::nullopt, kExitUsage};
    }
    return {options, 0};
}

}  // namespace quillon
