#include <netdb.h>
#include <sys/socket.h>

#include <memory>
#include <stdexcept>

#include "benchmarks/workers/Workers.h"
#include "store/files/Descriptor.h"

namespace bench {

namespace {

// The lookup of the name is a connection that is filtered, too.
void connectTo(const std::string& host, const std::string& port) {
    addrinfo wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), port.c_str(), &wanted, &found) != 0)
        throw std::runtime_error("no address of " + host);
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> address(found, freeaddrinfo);
    const store::Descriptor connection(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (connect(connection.number(), address->ai_addr, address->ai_addrlen) != 0)
        throw std::runtime_error("no connection to " + host);
}

}  // namespace

Figures connectToHosts(const Arguments& arguments) {
    const std::string &domain = arguments.at(0), &port = arguments.at(1);
    const int count = std::stoi(arguments.at(2));
    const double seconds = secondsOf([&] {
        for (int number = 0; number < count; ++number) connectTo("host" + std::to_string(number) + '.' + domain, port);
    });
    return {{"connection", seconds / count}};
}

}  // namespace bench
