#include "platform_system/NetworkNamespace.h"

#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace testing_support {

namespace {

bool isolate() {
    const auto user = std::to_string(getuid());
    if (unshare(CLONE_NEWNET) == 0) return true;
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) return false;
    std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";  // so that ip keeps the rights over the network
    return getuid() == 0;
}

}  // namespace

NetworkNamespace::NetworkNamespace() : isIsolated_(isolate()) {}

void NetworkNamespace::reset() const {
    if (unshare(CLONE_NEWNET) != 0) std::abort();
    ip("link set lo up");
}

bool NetworkNamespace::ip(const std::string& commands) const {
    std::istringstream lines(commands);
    for (std::string line; std::getline(lines, line);)
        if (std::system(("PATH=$PATH:/sbin:/usr/sbin ip " + line).c_str()) != 0) return false;
    return true;
}

bool NetworkNamespace::addLink(const std::string& name) const {
    const std::string end = "end" + name;
    return ip("link add " + name + " type veth peer name " + end + "\nlink set " + end + " up\nlink set " + name +
              " up");
}

}  // namespace testing_support
