// SPDX-License-Identifier: MIT
#include "dbcheck/options.h"

#include <ostream>

#include <CLI/CLI.hpp>

#include "dbcheck/command.h"
#include "dbcheck/damage.h"

namespace quillon {

namespace {

std::vector<std::string> damageNames() {
    std::vector<std::string> names;
    for (const auto& kind : kDamages) names.emplace_back(kind.name);
    return names;
}

void declare(CLI::App& command, DbcheckOptions& options, std::string& database, std::string& samples,
             std::string& odd) {
    const auto percent = CLI::Range(0.0, 100.0);
    command.add_option("database", database, "Folder that holds Database and Settings")
        ->required()
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    command.add_option("--samples", samples, "Folder with index.tsv and sample heads: judge the database by them")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    command.add_flag("--table", options.table, "Print the table of extensions and nothing else");
    command.add_flag("--pairs", options.pairs, "Name the extensions whose samples were falsely accepted");
    auto* const damage = command.add_flag("--damage", options.damage, "Damage the good samples and judge them again");
    command
        .add_option("--max-recovered", options.maxRecovered,
                    "Fail when more percent of the samples with this damage count as recovered")
        ->type_name("DAMAGE PERCENT")
        ->check(CLI::IsMember(damageNames()).application_index(0))
        ->needs(damage);
    damage->needs("--samples");
    command.add_flag("--doubts", options.doubts, "Judge the second opinion by the samples, and nothing else");
    command.add_option("--odd", odd, "Table of samples that are truly cut or odd, for --doubts")
        ->check(CLI::ExistingFile)
        ->type_name("FILE");
    command
        .add_option_function<std::string>(
            "--ends", [&options](const std::string& folder) { options.ends = folder; },
            "Judge the second opinion on file ends by the whole files below this folder, and nothing else")
        ->check(CLI::ExistingDirectory)
        ->type_name("FOLDER");
    command.add_option("--max-doubted", options.maxDoubted, "Fail when more percent of whole samples are doubted")
        ->check(percent);
    command.add_flag("--suggest", options.suggest, "Judge suggested terms by the samples, and nothing else");
    command
        .add_option("--min-suggested", options.minSuggested,
                    "Fail when the first term accepts fewer percent of the samples held back")
        ->check(percent);
    command
        .add_option("--min-suggested-three", options.minSuggestedThree, "The same for the first three terms together")
        ->check(percent);
    command
        .add_option("--max-suggested-false", options.maxSuggestedFalse,
                    "Fail when the first three accept more percent of other extensions")
        ->check(percent);
    command.add_option("--min-extensions", options.minExtensions, "Fail below this number of term files");
    command.add_option("--min-good", options.minGood, "Fail when fewer percent of the samples are good")
        ->check(percent);
    command.add_option("--max-false-accepts", options.maxFalseAccepts, "Fail when more percent of the pairs fit")
        ->check(percent);
    command
        .add_option("--min-rejected", options.minRejected, "Fail when fewer percent of the mislabelled are not good")
        ->check(percent);
    command.add_option("--min-named", options.minNamed, "Fail when common headers name fewer percent of those")
        ->check(percent);
}

}  // namespace

ParsedDbcheck parseDbcheck(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
    DbcheckOptions options;
    std::string database;
    std::string samples;
    std::string odd;
    CLI::App command("Lints a header database and judges it by samples.", "dbcheck");
    declare(command, options, database, samples, odd);
    try {
        std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
        command.parse(reversed);
    } catch (const CLI::Success& done) {
        return {std::nullopt, command.exit(done, out, err)};
    } catch (const CLI::ParseError& wrong) {
        err << "dbcheck: " << wrong.what() << " (usage: dbcheck DATABASE [--samples DIR]; see --help)\n";
        return {std::nullopt, kDbcheckUsage};
    }
    if (options.doubts && samples.empty()) {
        err << "dbcheck: --doubts needs --samples\n";
        return {std::nullopt, kDbcheckUsage};
    }
    if (options.suggest && samples.empty()) {
        err << "dbcheck: --suggest needs --samples\n";
        return {std::nullopt, kDbcheckUsage};
    }
    options.database = database;
    if (!samples.empty())
        options.samples = samples;
    if (!odd.empty())
        options.odd = odd;
    return {options, 0};
}

}  // namespace quillon
