#include "platform/system/IconPainter.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>

#include "platform/modules/Modules.h"
#include "platform/system/IconRequest.h"

namespace platform {

namespace {

bool sendAll(int connection, const void* bytes, std::size_t length) {
    for (const char* from = static_cast<const char*>(bytes); length > 0;) {
        const ssize_t count = send(connection, from, length, MSG_NOSIGNAL);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        from += count;
        length -= count;
    }
    return true;
}

bool receiveAll(int connection, void* bytes, std::size_t length) {
    for (char* to = static_cast<char*>(bytes); length > 0;) {
        const ssize_t count = recv(connection, to, length, 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        to += count;
        length -= count;
    }
    return true;
}

// Starts the process with its standard error discarded. Returns -1 on failure.
pid_t run(const QByteArray& file, int connection) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, connection, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, connection, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    QByteArray name = file;
    char* const arguments[] = {name.data(), nullptr};
    pid_t program = -1;
    if (posix_spawn(&program, name.data(), &actions, nullptr, arguments, environ) != 0) program = -1;
    posix_spawn_file_actions_destroy(&actions);
    return program;
}

}  // namespace

QImage IconPainter::paint(const QByteArray& svg, int side) {
    if (connection_ < 0) start();
    if (connection_ < 0) return {};
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    const IconRequest request{static_cast<std::uint32_t>(side), static_cast<std::uint32_t>(svg.size())};
    const bool isPainted = sendAll(connection_, &request, sizeof request) &&
                           sendAll(connection_, svg.data(), svg.size()) &&
                           receiveAll(connection_, picture.bits(), picture.sizeInBytes());
    if (isPainted) return picture;
    end();
    return {};
}

void IconPainter::start() {
    const QString module = findModule(QStringLiteral("vexmor-icons"));
    int ends[2];
    if (module.isEmpty() || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return;
    program_ = run(QFile::encodeName(module), ends[1]);
    close(ends[1]);
    connection_ = ends[0];
    if (program_ < 0) end();
}

// Closing the connection makes the process exit, if it has not already.
void IconPainter::end() {
    if (connection_ >= 0) close(connection_);
    while (program_ > 0 && waitpid(program_, nullptr, 0) < 0 && errno == EINTR) {
    }
    connection_ = -1;
    program_ = -1;
}

}  // namespace platform
