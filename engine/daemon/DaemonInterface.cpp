#include "engine/daemon/DaemonInterface.h"

#include <grpc/support/log.h>
#include <grpcpp/grpcpp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "daemon.grpc.pb.h"
#include "store/files/Descriptor.h"

namespace engine {

namespace {

// A second's events, each with the environment of its program, or all rules at once. The default is 4 MB.
constexpr int largestMessage = 256 << 20;

// The daemon's answers to these are ready at once; only Notifications lasts.
class Service final : public protocol::UI::Service {
public:
    Service(DaemonInterface::Reports reports, DaemonInterface::Decide decide)
        : reports_(std::move(reports)), decide_(std::move(decide)) {}

    bool isConnected() const { return streams_ > 0; }

    grpc::Status Ping(grpc::ServerContext*, const protocol::PingRequest* request, protocol::PingReply* reply) override {
        reply->set_id(request->id());
        std::vector<Report> reports;
        for (const protocol::Event& event : request->stats().events()) reports.push_back(reportOf(event));
        if (!reports.empty()) reports_(std::move(reports));
        return grpc::Status::OK;
    }

    grpc::Status AskRule(grpc::ServerContext*, const protocol::Connection* connection, protocol::Rule* rule) override {
        Report report = reportOf(*connection);
        report.time = std::chrono::system_clock::now();
        const Verdict verdict = decide_(report);
        rule->set_name("answer");
        rule->set_enabled(true);
        rule->set_action(verdict == Verdict::deny ? "deny" : "allow");
        rule->set_duration("once");
        rule->mutable_operator_()->set_type("simple");
        rule->mutable_operator_()->set_operand("process.path");
        rule->mutable_operator_()->set_data(connection->process_path());
        return grpc::Status::OK;
    }

    // The daemon wants its configuration back, and takes the default action from it. Not its rules, which may be more
    // than it accepts in one message.
    grpc::Status Subscribe(grpc::ServerContext*, const protocol::ClientConfig* request,
                           protocol::ClientConfig* reply) override {
        reply->set_config(request->config());
        return grpc::Status::OK;
    }

    using Stream = grpc::ServerReaderWriter<protocol::Notification, protocol::NotificationReply>;
    grpc::Status Notifications(grpc::ServerContext*, Stream* stream) override {
        ++streams_;
        protocol::NotificationReply reply;
        while (stream->Read(&reply)) continue;  // nothing is asked of it, so it has nothing to say until it hangs up
        --streams_;
        return grpc::Status::OK;
    }

private:
    DaemonInterface::Reports reports_;
    DaemonInterface::Decide decide_;
    std::atomic<int> streams_ = 0;
};

// Why a socket cannot be made there. Empty when nothing is there but a socket that nobody listens at.
std::string occupantOf(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) return errno == ENOENT ? "" : std::strerror(errno);
    if (!S_ISSOCK(status.st_mode)) return "there is something that is no socket";
    const store::Descriptor client(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const bool isRefused = connect(client.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 &&
                           errno == ECONNREFUSED;
    return isRefused ? "" : "somebody else listens there";
}

}  // namespace

class DaemonInterface::Server {
public:
    Server(std::string path, Reports reports, Decide decide)
        : path_(std::move(path)), service_(std::move(reports), std::move(decide)) {}

    ~Server() {
        if (!server_) return;
        server_->Shutdown(std::chrono::system_clock::now());
        server_->Wait();
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    bool start() {
        grpc::ServerBuilder builder;
        builder.AddListeningPort("unix:" + path_, grpc::InsecureServerCredentials());
        builder.RegisterService(&service_);
        builder.SetMaxReceiveMessageSize(largestMessage);
        builder.SetSyncServerOption(grpc::ServerBuilder::NUM_CQS, 1);
        builder.SetSyncServerOption(grpc::ServerBuilder::MAX_POLLERS, 2);
        const mode_t previous = umask(0177);
        server_ = builder.BuildAndStart();
        umask(previous);
        return server_ != nullptr;
    }

    bool isConnected() const { return service_.isConnected(); }

private:
    std::string path_;
    Service service_;
    std::unique_ptr<grpc::Server> server_;
};

DaemonInterface::DaemonInterface(std::unique_ptr<Server> server) : server_(std::move(server)) {}

DaemonInterface::~DaemonInterface() = default;

std::string DaemonInterface::pathOf(const std::string& address) {
    constexpr std::string_view scheme = "unix://";
    const std::string path = address.starts_with(scheme) ? address.substr(scheme.size()) : "";
    return path.starts_with('/') && path.size() < sizeof(sockaddr_un::sun_path) ? path : "";
}

std::unique_ptr<DaemonInterface> DaemonInterface::listen(const std::string& address, Reports reports, Decide decide,
                                                         std::string& failure) {
    gpr_set_log_function([](gpr_log_func_args*) {});  // the reason is returned
    const std::string path = pathOf(address);
    if (path.empty())
        failure = "this is no address of a socket";
    else
        failure = occupantOf(path);
    if (!failure.empty()) return nullptr;
    auto server = std::make_unique<Server>(path, std::move(reports), std::move(decide));
    if (!server->start()) {
        failure = "the socket cannot be made";
        return nullptr;
    }
    return std::unique_ptr<DaemonInterface>(new DaemonInterface(std::move(server)));
}

bool DaemonInterface::isConnected() const {
    return server_->isConnected();
}

}  // namespace engine
