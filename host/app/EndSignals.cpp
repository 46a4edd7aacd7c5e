#include "host/app/EndSignals.h"

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace Torvik::Viewer {

namespace {

constexpr int handled[] = {SIGTERM, SIGINT, SIGHUP};

/** Where the handler writes: nothing else is allowed in one. */
volatile std::sig_atomic_t writingEnd = -1;

void note(int number)
{
    const auto byte = static_cast<char>(number);
    // A full socket has told it already.
    [[maybe_unused]] const auto written = ::write(writingEnd, &byte, 1);
}

int readingEndOf(int (&sockets)[2])
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, sockets) != 0)
        qFatal("There is no socket for signals");
    return sockets[1];
}

} // namespace

EndSignals::EndSignals(QObject* parent)
    : QObject(parent)
    , m_notifier(readingEndOf(m_sockets), QSocketNotifier::Read)
{
    writingEnd = m_sockets[0];
    connect(&m_notifier, &QSocketNotifier::activated, this, &EndSignals::read);
    for (int number : handled) {
        struct sigaction action = {};
        struct sigaction before = {};
        action.sa_handler = note;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        ::sigaction(number, &action, &before);
        if (before.sa_handler == SIG_IGN)
            ::sigaction(number, &before, nullptr);
    }
}

EndSignals::~EndSignals()
{
    for (int number : handled) {
        struct sigaction present = {};
        ::sigaction(number, nullptr, &present);
        if (present.sa_handler == note)
            std::signal(number, SIG_DFL);
    }
    m_notifier.setEnabled(false);
    ::close(m_sockets[0]);
    ::close(m_sockets[1]);
}

void EndSignals::read()
{
    char number = 0;
    if (::read(m_sockets[1], &number, 1) != 1)
        return;
    m_number = number;
    emit asked();
}

} // namespace Torvik::Viewer
