#include "engine/service/ConnectionLog.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

#include "engine/ConfigurationFiles.h"
#include "engine/service/NetworkWatch.h"
#include "store/SharedFiles.h"

namespace engine {

ConnectionLog::ConnectionLog(std::filesystem::path device)
    : device_(std::move(device)),
      log_(store::logFile(device_)),
      waiting_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      matcher_(std::make_shared<ProcessMatcher>(std::map<std::string, std::vector<Program>>())) {}

bool ConnectionLog::listen(const std::string& address, std::string& failure) {
    interface_ = DaemonInterface::listen(
        address, [this](const std::vector<Report>& reports) { take(reports); },
        [this](const Report& question) { return answer(question); }, failure);
    return isListening();
}

void ConnectionLog::update(const Programs& programs, bool isOn) {
    auto matcher = std::make_shared<const ProcessMatcher>(programs.known);
    const std::lock_guard lock(mutex_);
    matcher_ = std::move(matcher);
    names_ = programs.names;
    isOn_ = isOn;
}

void ConnectionLog::take(const std::vector<Report>& reports) {
    const std::lock_guard lock(mutex_);
    if (!isOn_) return;
    for (const Report& report : reports) {
        const auto app = matcher_->appOf(report.process);
        if (!app) continue;
        const auto name = names_.find(*app);
        const Destination& end = report.destination;
        lines_.push_back({report.time, name == names_.end() ? *app : name->second,
                          end.name.empty() ? end.address : end.name, end.port, report.isAllowed});
    }
    const std::uint64_t one = 1;
    if (!lines_.empty() && ::write(waiting_.number(), &one, sizeof one) < 0) return;  // is readable already
}

Verdict ConnectionLog::answer(const Report& question) {
    const auto matcher = [&] {
        const std::lock_guard lock(mutex_);
        return matcher_;
    }();
    const auto app = matcher->appOf(question.process);
    if (!app) return Verdict::leave;
    return decide(readConfiguration(device_), {*app, question.destination, isOnWiFi()}).verdict;
}

std::error_code ConnectionLog::write() {
    std::uint64_t count = 0;
    if (::read(waiting_.number(), &count, sizeof count) < 0) return {};
    std::vector<LogLine> lines;
    {
        const std::lock_guard lock(mutex_);
        lines.swap(lines_);
    }
    return log_.append(lines);
}

}  // namespace engine
