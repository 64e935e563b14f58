#pragma once

#include <string>

namespace testing_support {

// The process's own network: no links, no routes, nothing that the machine has. Made by the first of these objects,
// which has to be global: an unprivileged process can only leave the machine's network before it has threads.
class NetworkNamespace {
public:
    NetworkNamespace();

    bool isIsolated() const { return isIsolated_; }

    // Starts again with an empty network. The loopback link is up.
    void reset() const;

    // One or more ip commands without their "ip", one a line. False when one fails.
    bool ip(const std::string& commands) const;

    // Makes a link that is up, and its other end.
    bool addLink(const std::string& name) const;

private:
    bool isIsolated_;
};

}  // namespace testing_support
