// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace bn {

/// A user-interface thread's event queue, as small as can be: the test's own thread empties it.
class ColaDeInterfaz {
 public:
    /// From any thread.
    void poner(std::function<void()> aviso) {
        const std::scoped_lock cerrojo(cerrojo_);
        avisos_.push_back(std::move(aviso));
        hayAviso_.notify_one();
    }

    /// Runs what comes until the condition holds; false when it does not within five seconds.
    bool hasta(const std::function<bool()>& condicion) {
        const auto fin = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!condicion()) {
            std::function<void()> aviso;
            {
                std::unique_lock cerrojo(cerrojo_);
                if (!hayAviso_.wait_until(cerrojo, fin, [this] { return !avisos_.empty(); })) {
                    return false;
                }
                aviso = std::move(avisos_.front());
                avisos_.pop_front();
            }
            aviso();
        }
        return true;
    }

    /// Waits, running nothing, until so many notifications lie in the queue.
    bool esperarAvisos(std::size_t cuantos,
                       std::chrono::milliseconds limite = std::chrono::seconds(5)) {
        std::unique_lock cerrojo(cerrojo_);
        return hayAviso_.wait_for(cerrojo, limite, [&] { return avisos_.size() >= cuantos; });
    }

    /// Runs what lies in the queue now; how many there were.
    std::size_t vaciar() {
        std::deque<std::function<void()>> todos;
        {
            const std::scoped_lock cerrojo(cerrojo_);
            todos.swap(avisos_);
        }
        for (const auto& aviso : todos) {
            aviso();
        }
        return todos.size();
    }

 private:
    std::mutex cerrojo_;
    std::condition_variable hayAviso_;
    std::deque<std::function<void()>> avisos_;
};

}  // namespace bn
