#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/Decision.h"
#include "engine/daemon/Report.h"

namespace engine {

// The side of the daemon's protocol that listens: the daemon (version 1.5.8) connects to it within seconds, reports
// once a second the connections that a rule decided, each once, and asks about one that no rule matches. A gRPC server
// on a Unix socket.
class DaemonInterface {
public:
    using Reports = std::function<void(std::vector<Report>)>;
    // What becomes of a connection that no rule matches. The program waits for the answer, and the daemon too: until
    // then others get its default.
    using Decide = std::function<Verdict(const Report&)>;

    // Where the socket of an address is; empty when it is no address of one.
    static std::string pathOf(const std::string& address);

    // Listens at an address "unix:///run/...", the one in the daemon's configuration. The socket is for this user alone
    // (mode 0600; the process's umask is changed meanwhile). One that nobody listens at any more is replaced. Nothing,
    // and why, when the address is another's or cannot be had.
    //
    // gRPC itself says nothing on standard error, in the whole process.
    //
    // The functions are called by gRPC's threads, several at the same time, until the destructor returns. What is not
    // denied by `decide` is allowed.
    static std::unique_ptr<DaemonInterface> listen(const std::string& address, Reports reports, Decide decide,
                                                   std::string& failure);

    // Hangs up, waits for calls to the functions to return, and removes the socket. Does not wait for the daemon.
    ~DaemonInterface();
    DaemonInterface(const DaemonInterface&) = delete;
    DaemonInterface& operator=(const DaemonInterface&) = delete;

    // Whether the daemon holds the connection. Any thread.
    bool isConnected() const;

private:
    class Server;
    explicit DaemonInterface(std::unique_ptr<Server> server);

    std::unique_ptr<Server> server_;
};

}  // namespace engine
