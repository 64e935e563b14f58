#include "app/SingleInstance.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

#include "store/SharedFiles.h"

namespace app {

namespace {

// The end of the app may wait two seconds for the bus; so does whoever has closed it and starts it again.
constexpr std::chrono::seconds patience{3};
constexpr std::chrono::milliseconds betweenAttempts{100};

bool mayWrite(const std::filesystem::path& folder) {
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

struct Address {
    sockaddr_un name{};
    socklen_t length = 0;
};

struct Request {
    QByteArray token;
    Address sender;
};

const sockaddr* generic(const sockaddr_un& name) {
    return reinterpret_cast<const sockaddr*>(&name);
}

// Abstract: there is no file that a killed process would leave. Names the folder as the lock does, by whatever path it
// was reached.
std::optional<Address> addressFor(const store::Descriptor& folder) {
    struct stat status {};
    if (fstat(folder.number(), &status) != 0) return std::nullopt;
    Address address;
    address.name.sun_family = AF_UNIX;
    char* const name = address.name.sun_path + 1;
    const int length =
        std::snprintf(name, sizeof address.name.sun_path - 1, "vexmor-%ju-%ju-%ju", std::uintmax_t(getuid()),
                      std::uintmax_t(status.st_dev), std::uintmax_t(status.st_ino));
    address.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
    return address;
}

// Every user can send to an abstract name. SO_PASSCRED has each datagram come with its sender's user, and gives a
// socket that sends a name to be answered at.
store::Descriptor openSocket() {
    store::Descriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int on = 1;
    setsockopt(socket.number(), SOL_SOCKET, SO_PASSCRED, &on, sizeof on);
    return socket;
}

// Takes the lock, which keeps other users' processes out, and then the name, which keeps out this user's even where the
// file system has no locks. Both are refused only where another process has them; a process that is killed may lose
// them one after the other. May be repeated.
bool take(const store::Descriptor& folder, const store::Descriptor& socket, const Address& address) {
    const bool isLocked = flock(folder.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (isLocked) return false;
    return bind(socket.number(), generic(address.name), address.length) == 0 || errno != EADDRINUSE;
}

// The next datagram; nothing when there is none or another user has sent it.
std::optional<Request> receive(const store::Descriptor& socket) {
    Request request;
    std::array<char, 1024> token{};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(ucred))> control{};
    iovec part{token.data(), token.size()};
    msghdr message{&request.sender.name, sizeof request.sender.name, &part, 1, control.data(), control.size(), 0};
    const ssize_t length = recvmsg(socket.number(), &message, MSG_CMSG_CLOEXEC);
    if (length < 0) return std::nullopt;
    const cmsghdr* const header = CMSG_FIRSTHDR(&message);
    if (!header || header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_CREDENTIALS) return std::nullopt;
    ucred sender{};
    std::memcpy(&sender, CMSG_DATA(header), sizeof sender);
    if (sender.uid != getuid()) return std::nullopt;
    request.sender.length = message.msg_namelen;
    request.token = QByteArray(token.data(), length);
    return request;
}

bool isAnswered(const Address& first) {
    const store::Descriptor socket = openSocket();
    const char* const token = std::getenv("XDG_ACTIVATION_TOKEN");
    sendto(socket.number(), token, token ? std::strlen(token) : 0, 0, generic(first.name), first.length);
    pollfd answer{socket.number(), POLLIN, 0};
    poll(&answer, 1, betweenAttempts.count());
    return receive(socket).has_value();
}

}  // namespace

SingleInstance::SingleInstance(const std::filesystem::path& root) {
    const std::filesystem::path folder = store::preferencesFolder(root);
    if (!mayWrite(folder)) return;
    folder_ = store::Descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::optional<Address> address = addressFor(folder_);
    if (!address) return;
    socket_ = openSocket();
    // The first process may be starting, and answer soon, or ending, and let the lock go: both are tried in turn.
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!take(folder_, socket_, *address)) {
        if (isAnswered(*address)) {
            exitStatus_ = EXIT_SUCCESS;
        } else if (std::chrono::steady_clock::now() > end) {
            std::cerr << program_invocation_short_name
                      << ": Vexmor is open already and does not answer; perhaps another user has opened it"
                      << std::endl;
            exitStatus_ = EXIT_FAILURE;
        }
        if (exitStatus_) return;
    }
}

void SingleInstance::answer(QObject& owner, std::function<void(const QByteArray& activationToken)> show) const {
    if (!socket_.isOpen()) return;
    auto* const notifier = new QSocketNotifier(socket_.number(), QSocketNotifier::Read, &owner);
    QObject::connect(notifier, &QSocketNotifier::activated, &owner, [this, show = std::move(show)] {
        // Whoever had to wait has asked more than once.
        std::optional<Request> last;
        while (std::optional<Request> next = receive(socket_)) {
            sendto(socket_.number(), nullptr, 0, 0, generic(next->sender.name), next->sender.length);
            last = std::move(next);
        }
        if (last) show(last->token);
    });
}

}  // namespace app
