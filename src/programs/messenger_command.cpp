// SPDX-License-Identifier: MIT
#include "programs/messenger_command.h"

#include <optional>
#include <ostream>
#include <utility>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "app/settings.h"
#include "app/version.h"
#include "messaging/alert_log.h"
#include "messaging/answer_queue.h"
#include "messaging/messenger.h"
#include "messaging/patient_output.h"
#include "platform/datagram_socket.h"
#include "platform/dates.h"
#include "platform/host.h"
#include "platform/start_program.h"
#include "programs/given_arguments.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// How soon the command sees that it is interrupted.
constexpr std::chrono::milliseconds kPollPatience{200};
// How long the end of the command waits for answers on their way.
constexpr std::chrono::milliseconds kEndPatience{2000};
// More notifications at once than this are of no use to anybody.
constexpr std::size_t kMostNotifications = 4;
// In characters: what a person reads of a bubble.
constexpr std::size_t kBubbleText = 800;

struct MessengerOptions {
    std::int32_t port = kDefaultAlertListenPort;
    std::string address;
    std::string logFile;
    std::int32_t logSize = kAlertLogSize;
    bool notify = false;
};

struct Parsed {
    std::optional<MessengerOptions> options;
    int exitStatus = kMessengerEnded;
};

Parsed parse(const std::vector<std::string>& arguments, const MessengerProcess& process) {
    MessengerOptions options;
    CLI::App command(
        "Receives alerts of Quillon, prints and stores them and acknowledges. "
        "While it runs, programs on this computer cannot collect acknowledgements on the same port.",
        "quillon-messenger");
    command.add_option("--port", options.port, "UDP port to listen on (default: 12021)")
        ->check(CLI::Range(1, 65535))
        ->type_name("PORT");
    command.add_option("--address", options.address, "Listen on this address of the computer alone")
        ->type_name("ADDRESS");
    command.add_option("--log", options.logFile, "Append a line for each alert to this file")->type_name("FILE");
    command.add_option("--log-size", options.logSize, "Begin a new log at so many MiB (default: 16)")
        ->check(CLI::Range(1, 1024))
        ->type_name("MIB");
    command.add_flag("--notify", options.notify, "Show each alert as a desktop notification too");
    const Version version = programVersion();
    command.set_version_flag("--version",
                             fmt::format("quillon-messenger {}.{}.{}", version.major, version.minor, version.revision));
    try {
        parseArguments(command, arguments);
    } catch (const CLI::Success& done) {
        return {std::nullopt, command.exit(done, process.out, process.err)};
    } catch (const CLI::ParseError& wrong) {
        process.err << "quillon-messenger: " << wrong.what() << " (usage: quillon-messenger [--port PORT] [--log FILE] "
                    << "[--notify]; see --help)\n";
        return {std::nullopt, kMessengerUsage};
    }
    if (!options.address.empty() && !numericAddress(options.address)) {
        process.err << "quillon-messenger: --address \"" << readable(std::string_view(options.address))
                    << "\" is not an address in numbers\n";
        return {std::nullopt, kMessengerUsage};
    }
    return {options, kMessengerEnded};
}

UdpSocket makeSocket(const MessengerOptions& options, const HostResolver& resolver) {
    if (options.address.empty())
        return UdpSocket(resolver);
    return UdpSocket(resolver, *numericAddress(options.address));
}

// The bubble of the desktop. Its text is mark-up, so what could be read as such is written as a character.
class Notifier {
public:
    explicit Notifier(PatientOutput& err) : err_(err) {}

    void show(const ReceivedAlert& alert) {
        if (programs_.running() >= kMostNotifications)
            return;
        std::string text;
        for (const std::string& line : harmlessLines(shortened(alert.body, kBubbleText))) text += line + "\n";
        for (const auto& [plain, escaped] : {std::pair{"&", "&amp;"}, std::pair{"<", "&lt;"}, std::pair{">", "&gt;"}})
            text = replacedAll(std::move(text), plain, escaped);
        const auto started = programs_.start({"notify-send", "--app-name=Quillon",
                                              alert.problem ? "--urgency=critical" : "--urgency=normal", "--",
                                              harmlessLine(alert.sender) + ": " + harmlessLine(alert.subject), text});
        if (!started && !std::exchange(told_, true))
            err_.write("quillon-messenger: no desktop notification: " + started.error().text + "\n");
    }

private:
    PatientOutput& err_;
    BackgroundPrograms programs_;
    bool told_ = false;
};

// One run: the socket, the answers, and the three places where an alert shows.
class MessengerRun {
public:
    MessengerRun(const MessengerOptions& options, const MessengerProcess& process)
        : options_(options),
          process_(process),
          out_(process.out),
          err_(process.err),
          log_(options.logFile, static_cast<std::uint64_t>(options.logSize) * 1024 * 1024),
          socket_(makeSocket(options, process.resolver)),
          answerSocket_(makeSocket(options, process.resolver)),
          notifier_(err_) {}

    int run() {
        if (const auto bound = socket_.bind(options_.port); !bound)
            return fail(bound.error());
        if (!options_.logFile.empty()) {
            if (const auto opened = log_.open(); !opened)
                return fail(opened.error());
        }
        answerSocket_.setRemotePort(options_.port);
        AnswerQueue answers(encodeAcknowledgement(hostName()), {process_.resolver, process_.known},
                            [this](const HostAddress& address, std::string_view bytes) {
                                return answerSocket_.sendTo(address, bytes);
                            });
        Messenger messenger([this](const ReceivedAlert& alert) { store(alert); },
                            [&](const std::string& name) { answers.answer(name, socket_.lastSender()); },
                            [this](const ReceivedAlert& alert) { show(alert); });
        err_.write(fmt::format("quillon-messenger: listening on UDP port {}; Ctrl-C ends\n", options_.port));
        while (process_.interrupts() == 0) {
            if (socket_.poll(kPollPatience).arrived)
                noteKind(messenger.take(socket_.getData()));
        }
        passOver(answers.finish(kEndPatience), "who got no answer until now is told of none");
        const bool shown = out_.finish(kEndPatience);
        summary(messenger.counts(), answers.counts());
        if (!err_.finish(kEndPatience) || !shown)
            process_.endNow(kMessengerEnded);
        return kMessengerEnded;
    }

private:
    int fail(const FileError& error) {
        process_.err << "quillon-messenger: " << error.text;
        if (error.kind == ErrorKind::AddressInUse)
            process_.err << " (another program of this computer has it)";
        process_.err << '\n';
        return kMessengerFailed;
    }

    // The first to see an alert: what one computer sends too much of is neither stored nor shown.
    void store(const ReceivedAlert& alert) {
        withinRate_ = rate_.allows(socket_.lastSender(), momentNow());
        if (!withinRate_) {
            ++beyondRate_;
            return;
        }
        time_ = dates_.general(clock_.now());
        if (options_.logFile.empty())
            return;
        const auto written = log_.add(alertRecord(time_, shortened(alert)));
        if (!written && lostRecords_++ == 0)
            err_.write("quillon-messenger: an alert could not be stored: " + written.error().text + "\n");
    }

    void show(const ReceivedAlert& alert) {
        if (!withinRate_)
            return;
        out_.write(alertText(time_, shortened(alert)));
        if (options_.notify)
            notifier_.show(shortened(alert));
    }

    // Tells once what an acknowledgement on this port means.
    void noteKind(DatagramKind kind) {
        if (kind != DatagramKind::Acknowledgement || acknowledgementShown_)
            return;
        acknowledgementShown_ = true;
        err_.write(
            "quillon-messenger: an acknowledgement for a program on this computer has arrived here: while the "
            "messenger runs, alerts sent from this computer count as not acknowledged\n");
    }

    void summary(const MessengerCounts& counts, const AnswerQueue::Counts& answers) {
        err_.write(fmt::format(
            "\nquillon-messenger: {} alerts ({} problems), {} acknowledged, {} could not be acknowledged, {} bad "
            "datagrams\n",
            counts.alerts, counts.problems, answers.sent, answers.failed + answers.dropped, counts.bad));
        const auto tell = [this](std::uint64_t count, const char* what) {
            if (count > 0)
                err_.write(fmt::format("quillon-messenger: {} {}\n", count, what));
        };
        tell(counts.acknowledgements, "acknowledgements for programs on this computer");
        tell(lostRecords_, "alerts could not be stored");
        tell(out_.lost(), "alerts were not shown, as nobody read them");
        tell(beyondRate_, "alerts were neither stored nor shown, as one computer sent more than 60 a minute");
    }

    const MessengerOptions& options_;
    const MessengerProcess& process_;
    SystemClock clock_;
    DateTexts dates_;
    PatientOutput out_;
    PatientOutput err_;
    AlertLog log_;
    UdpSocket socket_;
    UdpSocket answerSocket_;
    Notifier notifier_;
    AlertRate rate_;
    bool withinRate_ = true;  // of the alert in work, and
    std::string time_;        // when it came
    std::uint64_t beyondRate_ = 0;
    std::uint64_t lostRecords_ = 0;
    bool acknowledgementShown_ = false;
};

}  // namespace

int runMessengerCommand(const std::vector<std::string>& arguments, const MessengerProcess& process) {
    const Parsed parsed = parse(arguments, process);
    if (!parsed.options)
        return parsed.exitStatus;
    return MessengerRun(*parsed.options, process).run();
}

}  // namespace quillon
