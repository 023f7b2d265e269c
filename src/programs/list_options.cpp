// SPDX-License-Identifier: MIT
#include "programs/list_options.h"

#include <ostream>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "app/version.h"
#include "platform/folders.h"
#include "programs/given_arguments.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr const char* kFooter =
    "JOB is the ID of a job, or the path of its list or of its evidence file.\n\n"
    "Exit status:\n  0    all well; compare: nothing differs\n  1    compare, verify: something differs; copy: something is not copied\n  2    trouble";

constexpr const char* kNames =
    "Names of files are written as text: bytes that are not UTF-8 and control characters as \\xHH, a "
    "backslash doubled.";

// What was typed, before it is understood.
struct Given {
    ListCommandOptions options;
    std::string app;
    std::string output;
    std::string paths;
    std::string to;
    std::string target;
    std::string against;
    bool noSync = false;
    std::string map;
    std::vector<std::string> grades;
    std::vector<std::string> extensions;
    std::vector<std::string> reasons;
};

struct QuestionRow {
    ListQuestion question;
    const char* name;
    const char* meaning;
    void (*declare)(CLI::App& command, Given& given);
};

void declareJobs(CLI::App& command, Given& given) {
    command.add_option("JOB", given.options.jobs, "ID, list or evidence file of a job; several are added up");
    command
        .add_option("--case", given.options.caseId, "All jobs of a case: its ID, alone or with the separator behind it")
        ->type_name("ID");
}

void declareJson(CLI::App& command, Given& given) {
    command.add_flag("--json", given.options.json, "For scripts: JSON instead of a table");
}

void declareTable(CLI::App& command, Given& given) {
    declareJobs(command, given);
    declareJson(command, given);
}

void declareFolders(CLI::App& command, Given& given) {
    declareTable(command, given);
    command.add_option("--depth", given.options.depth, "How deep below the source; 1 unless told")->type_name("N");
    command.add_option("--worst", given.options.worst, "Only the folders that lost most")->type_name("N");
}

void declareWish(CLI::App& command, Given& given) {
    declareJobs(command, given);
    command.add_option("--grade", given.grades, "Only these grades: good, corrupt, unknown ...")
        ->delimiter(',')
        ->type_name("GRADE");
    command.add_option("--ext", given.extensions, "Only these extensions")->delimiter(',')->type_name("EXT");
    command.add_option("--reason", given.reasons, "Only these reasons: zero-filled, shifted ...")
        ->delimiter(',')
        ->type_name("REASON");
    command.add_option("--below", given.options.wish.below, "Only below this folder of the source")
        ->type_name("FOLDER");
    command.add_flag("--doubt", given.options.wish.doubt, "Only files whose head or end speaks against them");
    command.add_flag("--unread", given.options.wish.unread, "Only files of which something could not be read");
}

void declareFiles(CLI::App& command, Given& given) {
    declareWish(command, given);
    command.add_flag("-0,--null", given.options.zeros, "Names as they are, a zero byte behind each");
    command.add_flag("--absolute", given.options.absolute, "Whole paths instead of paths below the source");
}

void declareExport(CLI::App& command, Given& given) {
    declareWish(command, given);
    command.add_option("--format", given.options.format, "csv, jsonl or xlsx, which needs -o")
        ->check(CLI::IsMember({"csv", "jsonl", "xlsx"}))
        ->type_name("FORMAT");
    command.add_option("-o,--output", given.output, "Write here instead of standard output")->type_name("FILE");
    command.add_flag("--bom", given.options.bom, "csv: a UTF-8 mark first, as spreadsheets like it");
    command.add_flag("--spreadsheet", given.options.spreadsheet,
                     "csv: an apostrophe ahead of what a spreadsheet would take for a formula");
    command.footer(kNames);
}

void declareReport(CLI::App& command, Given& given) {
    declareJobs(command, given);
    command.add_option("-o,--output", given.output, "The page to be written")->required()->type_name("FILE");
    command.add_flag("--with-files", given.options.withFiles, "Name every file, by folder");
    command.add_option("--laboratory", given.options.laboratory, "Who made it, for the head of the page")
        ->type_name("NAME");
    command.add_option("--depth", given.options.depth, "Folders how deep below the source; 1 unless told")
        ->type_name("N");
}

void declareCompare(CLI::App& command, Given& given) {
    command.add_option("JOBS", given.options.jobs, "The first and the second job")
        ->expected(2)
        ->required()
        ->type_name("A B");
    declareJson(command, given);
    command.add_option("--strip-a", given.options.stripFirst, "Compare what stands below this folder of A")
        ->type_name("FOLDER");
    command.add_option("--strip-b", given.options.stripSecond, "Compare what stands below this folder of B")
        ->type_name("FOLDER");
}

void declareMerge(CLI::App& command, Given& given) {
    command.add_option("NEW", given.options.newJob, "ID of the job that is made")->required();
    command.add_option("--to", given.to, "Folder for its list and evidence (default: that of the application folder)")
        ->type_name("DIR");
    declareJobs(command, given);
}

void declareForget(CLI::App& command, Given& given) {
    command.add_option("JOB", given.options.jobs, "ID or evidence file of the job")->required();
}

void declareSuggest(CLI::App& command, Given& given) {
    declareTable(command, given);
    command.add_option("--ext", given.extensions, "The extension that terms are wanted for")
        ->expected(1)
        ->required()
        ->type_name("EXT");
    command
        .add_option("--paths", given.paths,
                    "The files to learn from, one name a line as the subcommand files writes them; its corrupt and "
                    "unknown files unless told")
        ->type_name("FILE");
}

void declareCopy(CLI::App& command, Given& given) {
    declareWish(command, given);
    CopyOrder& order = given.options.copy;
    command.add_option("--to", given.target, "The folder to copy below; it is made when it is missing")
        ->required()
        ->type_name("DIR");
    command.add_flag("--by-grade", order.byGrade, "Each grade's tree below a folder of its name");
    command.add_flag("--verify", order.care.verify, "Read each copy back from the disk and compare it");
    command.add_flag("--no-sync", given.noSync, "Do not wait for the disk: a power cut may leave copies empty");
    command.add_flag("--salvage", order.care.salvage,
                     "Copy what can be read of a file, with gaps of zeros for the rest");
    command.add_flag("--right-names", order.rightNames,
                     "Put the extension that a file's first bytes prove behind its name");
    command.add_flag("--failed", order.failedOnly, "Only what is not copied yet");
    command.add_flag("--yes", given.options.yes, "Go on whatever the look at the target finds");
    declareJson(command, given);
}

void declareVerify(CLI::App& command, Given& given) {
    command.add_option("JOB", given.options.jobs, "ID, list or evidence file of the job")->expected(1)->required();
    command.add_option("--against", given.against, "The folder that its files were copied below")
        ->required()
        ->type_name("DIR");
    declareJson(command, given);
}

void declareSectors(CLI::App& command, Given& given) {
    declareWish(command, given);
    declareJson(command, given);
    command.add_option("--map", given.map, "The map that ddrescue keeps of the disk")->required()->type_name("FILE");
    command
        .add_option("--device-offset", given.options.deviceOffset,
                    "Where the file system begins on the disk; found where the system knows it")
        ->type_name("BYTES");
    command
        .add_option("--domain-out", given.output,
                    "Write a map of what these files still miss, for ddrescue --domain-mapfile")
        ->type_name("FILE");
    command
        .add_option("--sector-bytes", given.options.sectorBytes,
                    "Physical sector of the disk, to which that map is rounded; as the system tells it unless given")
        ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 20U))
        ->type_name("BYTES");
}

void declareHistory(CLI::App& command, Given& given) {
    HistoryWish& wish = given.options.history;
    declareJson(command, given);
    command.add_flag("--local", wish.local, "The database of this computer, though it is shared with others");
    command.add_option("--last", wish.last, "How many of the newest; 1000 unless told")->type_name("N");
    CLI::Option* effect = command.add_flag("--effect", wish.effect,
                                           "How many of the heads that jobs have kept were good before and after");
    CLI::Option* undo = command.add_option("--undo", wish.undo, "Take this change back, as a new change");
    undo->type_name("ID")->excludes(effect);
    CLI::Option* about = command.add_option("--about", wish.about, "The change that a remark is for");
    about->type_name("ID")->excludes(undo)->excludes(effect);
    CLI::Option* remark = command.add_option("--remark", wish.remark, "Why it was made, in a few words");
    remark->type_name("TEXT")->needs(about);
    about->needs(remark);
}

// Help, parser and manual have the subcommands of this table.
constexpr QuestionRow kQuestions[] = {
    {ListQuestion::Summary, "summary", "Files, bytes, quality, grades and reasons of a job", declareTable},
    {ListQuestion::Extensions, "extensions", "The same for each extension", declareTable},
    {ListQuestion::Folders, "folders", "The same for each folder with all below it", declareFolders},
    {ListQuestion::Reasons, "reasons", "Why files are not good", declareTable},
    {ListQuestion::Files, "files", "The files, below the source, as rsync --files-from takes them", declareFiles},
    {ListQuestion::Export, "export", "The files with all that is known of them", declareExport},
    {ListQuestion::Report, "report", "A page for the customer: one HTML file, to be read anywhere and printed",
     declareReport},
    {ListQuestion::Compare, "compare", "What a second attempt gained and lost", declareCompare},
    {ListQuestion::Merge, "merge", "Makes one list and one evidence file of several jobs, or of all parts of one",
     declareMerge},
    {ListQuestion::Forget, "forget", "Deletes the evidence of a job, in Kept too; its list stays", declareForget},
    {ListQuestion::Copy, "copy", "Copies files of a finished job, with their check sums", declareCopy},
    {ListQuestion::Verify, "verify", "Compares copies with their check sums", declareVerify},
    {ListQuestion::Suggest, "suggest", "Terms that the files of an extension share and others lack", declareSuggest},
    {ListQuestion::Sectors, "sectors", "Files that lie where the map of a rescue says that the disk was not read",
     declareSectors},
    {ListQuestion::History, "history", "Who changed the database and what became of it; takes a change back",
     declareHistory},
};

// A folder as rows have it: without "/" around it.
void trimSlashes(std::string& folder) {
    while (folder.ends_with('/')) folder.pop_back();
    while (folder.starts_with("./")) folder.erase(0, 2);
    if (folder == ".")
        folder.clear();
}

void understandCopies(Given& given) {
    CopyOrder& order = given.options.copy;
    order.care.sync = !given.noSync;
    order.care.hash = true;
    order.care.whole = true;
    order.wish = given.options.wish;
    if (!given.target.empty())
        order.target = pathFromRoot(given.target).value_or(given.target);
    if (!given.against.empty())
        given.options.against = given.against;
}

// Understands names; empty when all is well.
std::string understand(Given& given) {
    FileWish& wish = given.options.wish;
    for (const auto& name : given.grades) {
        const auto grade = gradeNamed(name);
        if (!grade)
            return "--grade: \"" + readable(std::string_view(name)) + "\" is none";
        wish.grades.push_back(*grade);
    }
    for (const auto& name : given.reasons) {
        const auto reason = reasonNamed(name);
        if (!reason)
            return "--reason: \"" + readable(std::string_view(name)) + "\" is none";
        wish.reasons.push_back(*reason);
    }
    for (const auto& extension : given.extensions)
        wish.extensions.push_back(
            utf16ToUtf8(lowered(utf8ToUtf16(extension.starts_with('.') ? extension.substr(1) : extension))));
    for (std::string* folder : {&wish.below, &given.options.stripFirst, &given.options.stripSecond})
        trimSlashes(*folder);
    if (!given.app.empty())
        given.options.appFolder = given.app;
    if (!given.output.empty())
        given.options.output = given.output;
    if (!given.to.empty())
        given.options.to = given.to;
    if (!given.paths.empty())
        given.options.paths = given.paths;
    understandCopies(given);
    given.options.map = given.map;
    const bool needsJob = given.options.question != ListQuestion::History;
    if (needsJob && given.options.jobs.empty() && given.options.caseId.empty())
        return "a job is needed";
    if (given.options.copy.care.verify && given.noSync)
        return "--verify reads what is on the disk, and takes no --no-sync";
    if (given.options.format == "xlsx" && !given.options.output)
        return "xlsx needs the file to be written: -o FILE";
    return {};
}

}  // namespace

ParsedListCommand parseListCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    Given given;
    CLI::App command("Answers questions about jobs from their lists and evidence.", "quillon-list");
    command.require_subcommand(1);
    command.footer(kFooter);
    const Version version = programVersion();
    command.set_version_flag("--version",
                             fmt::format("quillon-list {}.{}.{}", version.major, version.minor, version.revision));
    const auto takeFolder = [&given](CLI::App& of) {
        of.add_option("--app", given.app, "Application folder (default: the folder of this program)")->type_name("DIR");
    };
    takeFolder(command);
    for (const QuestionRow& row : kQuestions) {
        CLI::App* question = command.add_subcommand(row.name, row.meaning);
        row.declare(*question, given);
        takeFolder(*question);
        question->callback([&row, &given] { given.options.question = row.question; });
    }
    try {
        parseArguments(command, arguments);
    } catch (const CLI::Success& done) {
        return {std::nullopt, command.exit(done, out, err)};
    } catch (const CLI::ParseError& wrong) {
        err << "quillon-list: " << wrong.what() << " (see quillon-list --help)\n";
        return {std::nullopt, kListTrouble};
    }
    if (const auto problem = understand(given); !problem.empty()) {
        err << "quillon-list: " << problem << " (see quillon-list --help)\n";
        return {std::nullopt, kListTrouble};
    }
    return {given.options, 0};
}

}  // namespace quillon
