#include "engine/daemon/Report.h"

#include "daemon.pb.h"

namespace engine {

namespace {

// Host's spelling, or what was said where it is no host.
std::string spelled(const std::string& text) {
    const auto host = parseHost(text);
    return host ? host->text : text;
}

}  // namespace

Report reportOf(const protocol::Connection& connection) {
    Report report;
    report.process.path = connection.process_path();
    report.process.arguments.assign(connection.process_args().begin(), connection.process_args().end());
    report.process.environment.insert(connection.process_env().begin(), connection.process_env().end());
    report.protocol = connection.protocol();
    report.destination.address = spelled(connection.dst_ip());
    report.destination.name = spelled(connection.dst_host());
    if (report.destination.name == report.destination.address) report.destination.name.clear();
    report.destination.port = static_cast<std::uint16_t>(connection.dst_port());
    return report;
}

Report reportOf(const protocol::Event& event) {
    using Clock = std::chrono::system_clock;
    Report report = reportOf(event.connection());
    report.time =
        Clock::time_point(std::chrono::duration_cast<Clock::duration>(std::chrono::nanoseconds(event.unixnano())));
    report.rule = event.rule().name();
    report.isAllowed = event.rule().action() == "allow";
    return report;
}

}  // namespace engine
