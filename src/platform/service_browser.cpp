// SPDX-License-Identifier: MIT
#include "platform/service_browser.h"

#if defined(QUILLON_HAVE_AVAHI)

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <set>
#include <utility>

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-common/address.h>
#include <avahi-common/simple-watch.h>

namespace quillon {

namespace {

// A network that announces more computers than this is not one that a person picks a recipient from.
constexpr std::size_t kMostHosts = 4096;

struct PollCloser {
    void operator()(AvahiSimplePoll* poll) const { avahi_simple_poll_free(poll); }
};
struct ClientCloser {
    void operator()(AvahiClient* client) const { avahi_client_free(client); }
};

// A connection to the daemon with a loop of its own. Freeing the client frees all that was asked through it.
class Connection {
public:
    Connection() : poll_(avahi_simple_poll_new()) {
        if (poll_) {
            client_.reset(avahi_client_new(avahi_simple_poll_get(poll_.get()), AvahiClientFlags{},
                                           &Connection::stateChanged, this, nullptr));
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] bool works() const { return client_ != nullptr && !failed_; }
    [[nodiscard]] AvahiClient* client() const { return client_.get(); }

    // Hears the daemon until `done` or the deadline.
    void run(Moment deadline, const std::function<bool()>& done) {
        while (works() && !done()) {
            const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(deadline - momentNow()).count();
            if (remaining <= 0 ||
                avahi_simple_poll_iterate(poll_.get(), static_cast<int>(std::min<long>(remaining, 100))) != 0)
                return;
        }
    }

private:
    static void stateChanged(AvahiClient* /*client*/, AvahiClientState state, void* self) {
        if (state == AVAHI_CLIENT_FAILURE)
            static_cast<Connection*>(self)->failed_ = true;
    }

    std::unique_ptr<AvahiSimplePoll, PollCloser> poll_;
    std::unique_ptr<AvahiClient, ClientCloser> client_;
    bool failed_ = false;
};

// Service types, their services, and of each service the host: three questions deep, all running at once.
class HostBrowse {
public:
    explicit HostBrowse(Connection& connection) : connection_(connection) {
        if (avahi_service_type_browser_new(connection.client(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, nullptr,
                                           AvahiLookupFlags{}, &HostBrowse::typeSeen, this) != nullptr)
            ++open_;
    }

    [[nodiscard]] bool done() const { return open_ == 0; }
    [[nodiscard]] std::vector<std::string> takeHosts() { return std::move(hosts_); }

private:
    static bool isLast(AvahiBrowserEvent event) {
        return event == AVAHI_BROWSER_ALL_FOR_NOW || event == AVAHI_BROWSER_FAILURE;
    }

    static void typeSeen(AvahiServiceTypeBrowser* /*browser*/, AvahiIfIndex /*interface*/, AvahiProtocol /*protocol*/,
                         AvahiBrowserEvent event, const char* type, const char* domain,
                         AvahiLookupResultFlags /*flags*/, void* self) {
        auto& browse = *static_cast<HostBrowse*>(self);
        if (event == AVAHI_BROWSER_NEW)
            browse.askServices(type, domain);
        else if (isLast(event))
            browse.close(browse.allTypesCame_);
    }

    static void serviceSeen(AvahiServiceBrowser* browser, AvahiIfIndex interface, AvahiProtocol protocol,
                            AvahiBrowserEvent event, const char* name, const char* type, const char* domain,
                            AvahiLookupResultFlags /*flags*/, void* self) {
        auto& browse = *static_cast<HostBrowse*>(self);
        if (event == AVAHI_BROWSER_NEW)
            browse.askHost(interface, protocol, name, type, domain);
        else if (isLast(event) && browse.ended_.insert(browser).second)
            --browse.open_;
    }

    static void hostSeen(AvahiServiceResolver* resolver, AvahiIfIndex /*interface*/, AvahiProtocol /*protocol*/,
                         AvahiResolverEvent event, const char* /*name*/, const char* /*type*/, const char* /*domain*/,
                         const char* hostName, const AvahiAddress* /*address*/, uint16_t /*port*/,
                         AvahiStringList* /*text*/, AvahiLookupResultFlags /*flags*/, void* self) {
        auto& browse = *static_cast<HostBrowse*>(self);
        if (event == AVAHI_RESOLVER_FOUND && hostName != nullptr)
            browse.add(hostName);
        avahi_service_resolver_free(resolver);
        --browse.open_;
    }

    // One service type is announced once for each interface and protocol.
    void askServices(const std::string& type, const std::string& domain) {
        if (!types_.insert(type + '\n' + domain).second || types_.size() > kMostHosts)
            return;
        if (avahi_service_browser_new(connection_.client(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, type.c_str(),
                                      domain.c_str(), AvahiLookupFlags{}, &HostBrowse::serviceSeen, this) != nullptr)
            ++open_;
    }

    void askHost(AvahiIfIndex interface, AvahiProtocol protocol, const char* name, const char* type,
                 const char* domain) {
        if (++asked_ > kMostHosts)
            return;
        if (avahi_service_resolver_new(connection_.client(), interface, protocol, name, type, domain,
                                       AVAHI_PROTO_UNSPEC, AVAHI_LOOKUP_NO_TXT, &HostBrowse::hostSeen, this) != nullptr)
            ++open_;
    }

    void add(const std::string& host) {
        if (seen_.insert(host).second)
            hosts_.push_back(host);
    }

    void close(bool& ended) {
        if (!std::exchange(ended, true))
            --open_;
    }

    Connection& connection_;
    std::size_t open_ = 0;   // questions that have not told everything yet
    std::size_t asked_ = 0;  // services whose host was asked for
    bool allTypesCame_ = false;
    std::set<std::string> types_;
    std::set<std::string> seen_;
    std::set<const AvahiServiceBrowser*> ended_;
    std::vector<std::string> hosts_;
};

struct HostAnswer {
    bool came = false;
    std::optional<std::string> address;
};

void addressSeen(AvahiHostNameResolver* /*resolver*/, AvahiIfIndex /*interface*/, AvahiProtocol /*protocol*/,
                 AvahiResolverEvent event, const char* /*name*/, const AvahiAddress* address,
                 AvahiLookupResultFlags /*flags*/, void* self) {
    auto& answer = *static_cast<HostAnswer*>(self);
    answer.came = true;
    std::array<char, AVAHI_ADDRESS_STR_MAX> text{};
    if (event == AVAHI_RESOLVER_FOUND && address != nullptr &&
        avahi_address_snprint(text.data(), text.size(), address) != nullptr)
        answer.address = text.data();
}

}  // namespace

std::vector<std::string> browseAnnouncedHosts(Moment deadline) {
    Connection connection;
    if (!connection.works())
        return {};
    HostBrowse browse(connection);
    connection.run(deadline, [&] { return browse.done(); });
    return browse.takeHosts();
}

std::optional<std::string> resolveAnnouncedHost(const std::string& hostName) {
    constexpr std::chrono::seconds patience{3};
    Connection connection;
    if (!connection.works())
        return std::nullopt;
    for (const AvahiProtocol family : {AVAHI_PROTO_INET, AVAHI_PROTO_INET6}) {
        HostAnswer answer;
        AvahiHostNameResolver* resolver =
            avahi_host_name_resolver_new(connection.client(), AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, hostName.c_str(),
                                         family, AvahiLookupFlags{}, &addressSeen, &answer);
        if (resolver == nullptr)
            return std::nullopt;
        connection.run(momentNow() + patience, [&] { return answer.came; });
        avahi_host_name_resolver_free(resolver);
        if (answer.address)
            return answer.address;
    }
    return std::nullopt;
}

}  // namespace quillon

#else

namespace quillon {

std::vector<std::string> browseAnnouncedHosts(Moment /*deadline*/) {
    return {};
}

std::optional<std::string> resolveAnnouncedHost(const std::string& /*hostName*/) {
    return std::nullopt;
}

}  // namespace quillon

#endif
