#include "standalone/commands/interruption.h"

#include <atomic>
#include <csignal>

namespace jostle::standalone {

namespace {

std::atomic<bool> wanted{false};

extern "C" void onInterrupt(int signal) {
    wanted.store(true, std::memory_order_relaxed);
    std::signal(signal, SIG_DFL);
}

void handle(void (*handler)(int)) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (std::signal(signal, handler) == SIG_IGN) {
            std::signal(signal, SIG_IGN); // whoever started us wants it so, as nohup does
        }
    }
}

} // namespace

void heedInterruptions() {
    handle(onInterrupt);
}

void forgetInterruptions() {
    handle(SIG_DFL);
    wanted.store(false, std::memory_order_relaxed);
}

bool interrupted() {
    return wanted.load(std::memory_order_relaxed);
}

} // namespace jostle::standalone
