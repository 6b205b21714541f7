#pragma once

#include <pthread.h>

#include <csignal>
#include <thread>
#include <utility>

namespace tallyhorn {

/// Starts a thread that blocks all signals, so that they are delivered to other threads.
template <typename Function>
std::thread StartWithoutSignals(Function function) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread;
    try {
        thread = std::thread(std::move(function));
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

}  // namespace tallyhorn
