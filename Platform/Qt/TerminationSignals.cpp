#include "Platform/Qt/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>
#include <csignal>

#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <utility>

namespace corvane {

namespace {

constexpr std::array<int, 3> endingSignals = {SIGTERM, SIGINT, SIGHUP};

// Reached from the signal handler, which can touch nothing but a plain integer.
volatile sig_atomic_t signalWriteEnd = -1;

extern "C" void writeSignalToPipe(int signal) {
    const int savedErrno = errno;
    const auto byte = static_cast<unsigned char>(signal);
    // A full pipe already holds a wake-up, so a failed write loses nothing. (Kept in a
    // variable: a cast to void does not quiet GCC's unused-result warning under fortify.)
    [[maybe_unused]] const ssize_t written = ::write(signalWriteEnd, &byte, 1);
    errno = savedErrno;
}

}  // namespace

class TerminationSignals::Pipe {
public:
    explicit Pipe(std::function<void(int)> onSignal) : onSignal(std::move(onSignal)) {
        if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
            return;
        }
        signalWriteEnd = ends[1];
        notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                         [this] { drain(); });
        struct sigaction action {};
        action.sa_handler = writeSignalToPipe;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        for (int signal : endingSignals) {
            ::sigaction(signal, &action, nullptr);
        }
    }

    ~Pipe() {
        if (!notifier) {
            return;
        }
        for (int signal : endingSignals) {
            ::signal(signal, SIG_DFL);
        }
        signalWriteEnd = -1;
        notifier.reset();
        ::close(ends[0]);
        ::close(ends[1]);
    }

private:
    void drain() {
        unsigned char byte = 0;
        while (::read(ends[0], &byte, 1) == 1) {
            onSignal(byte);
        }
    }

    std::function<void(int)> onSignal;
    std::array<int, 2> ends = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
};

TerminationSignals::TerminationSignals(std::function<void(int)> onSignal)
    : pipe(std::make_unique<Pipe>(std::move(onSignal))) {}

TerminationSignals::~TerminationSignals() = default;

class BusLossWatch::Poll {
public:
    Poll(QDBusConnection connection, std::chrono::milliseconds period, std::function<void()> onLoss)
        : connection(std::move(connection)), onLoss(std::move(onLoss)) {
        if (!this->connection.isConnected()) {
            return;
        }
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
            if (!this->connection.isConnected()) {
                timer.stop();
                this->onLoss();
            }
        });
        timer.start(period);
    }

private:
    QDBusConnection connection;
    std::function<void()> onLoss;
    QTimer timer;
};

BusLossWatch::BusLossWatch(QDBusConnection connection, std::chrono::milliseconds period,
                           std::function<void()> onLoss)
    : poll(std::make_unique<Poll>(std::move(connection), period, std::move(onLoss))) {}

BusLossWatch::~BusLossWatch() = default;

}  // namespace corvane
