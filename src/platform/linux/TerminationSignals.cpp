#include "platform/linux/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace tw {

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

// Written by the handler, read on the event loop; -1 while no instance exists. A handler reaches
// only what is global.
std::array<int, 2> pipeEnds{-1, -1}; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void onSignal(int signal) {
    const auto byte = static_cast<unsigned char>(signal);
    // Nothing to do about a full pipe: a signal is already waiting there.
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[0], &byte, 1);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent) {
    if (pipeEnds[0] >= 0 || ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0,
                                         pipeEnds.data()) != 0) {
        return;
    }
    m_notifier = new QSocketNotifier(pipeEnds[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::read);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    // The second signal finds the default again and ends the program.
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    for (const int signal : handled) {
        ::sigaction(signal, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (m_notifier == nullptr) {
        return;
    }
    for (const int signal : handled) {
        ::signal(signal, SIG_DFL);
    }
    delete m_notifier;
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds = {-1, -1};
}

void TerminationSignals::read() {
    unsigned char byte = 0;
    while (::read(pipeEnds[1], &byte, 1) == 1) {
        Q_EMIT received(byte);
    }
}

} // namespace tw
