#include "platform/system/HostLookup.h"

#include <netdb.h>

#include <csignal>
#include <memory>
#include <utility>

namespace platform {

namespace {

// A request to getaddrinfo_a(), which refers to these members until it calls answer().
struct Lookup {
    QByteArray name;
    std::function<void(const QList<HostAddress>&)> found;
    addrinfo hints{};
    gaicb question{};
};

void answer(sigval value) {
    const std::unique_ptr<Lookup> lookup(static_cast<Lookup*>(value.sival_ptr));
    QList<HostAddress> addresses;
    addrinfo* result = lookup->question.ar_result;
    for (const addrinfo* each = result; each; each = each->ai_next) {
        const HostAddress address(*each->ai_addr);
        if (!address.isNull()) addresses.append(address);
    }
    if (result) freeaddrinfo(result);
    lookup->found(addresses);
}

}  // namespace

void lookUpHost(const QString& name, std::function<void(const QList<HostAddress>&)> found) {
    auto lookup = std::make_unique<Lookup>(Lookup{.name = name.toUtf8(), .found = std::move(found)});
    lookup->hints.ai_socktype = SOCK_STREAM;  // otherwise each address is returned once per socket type
    lookup->question.ar_name = lookup->name.constData();
    lookup->question.ar_request = &lookup->hints;
    gaicb* questions[] = {&lookup->question};
    sigevent whenDone{};
    whenDone.sigev_notify = SIGEV_THREAD;
    whenDone.sigev_notify_function = answer;
    whenDone.sigev_value.sival_ptr = lookup.get();
    if (getaddrinfo_a(GAI_NOWAIT, questions, 1, &whenDone) == 0)
        static_cast<void>(lookup.release());
    else
        lookup->found({});
}

}  // namespace platform
