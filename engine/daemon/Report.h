#pragma once

#include <chrono>
#include <string>

#include "engine/HostPattern.h"
#include "engine/programs/ProcessMatcher.h"

namespace protocol {
class Connection;
class Event;
}  // namespace protocol

namespace engine {

// A connection that the daemon saw, and what it did.
struct Report {
    std::chrono::system_clock::time_point time;
    Process process;
    Destination destination;
    std::string protocol;  // "tcp", "tcp6", "udp", ...
    std::string rule;      // the name of the daemon's rule that decided; empty when it only asks
    bool isAllowed = false;
};

// What a message of the daemon's says. Of a connection alone neither time nor rule is known. Pure functions, any
// thread.
Report reportOf(const protocol::Connection& connection);
Report reportOf(const protocol::Event& event);

}  // namespace engine
