// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace bn::excel::com {

/// Watches, from a thread of its own, over one call at a time that may never come back.
class Vigilante {
 public:
    /// alVencer is called in the watching thread when a call takes too long, once for each.
    explicit Vigilante(std::function<void()> alVencer);
    Vigilante(const Vigilante&) = delete;
    Vigilante& operator=(const Vigilante&) = delete;
    ~Vigilante();

    /// A call goes out, and has that long to come back; zero: as long as it likes.
    void armar(std::chrono::milliseconds plazo);
    /// It has come back. True when it was too late: alVencer has then ended.
    bool desarmar();

 private:
    using Reloj = std::chrono::steady_clock;

    void vigilar();

    std::function<void()> alVencer_;
    std::mutex cerrojo_;
    std::condition_variable cambio_;
    std::optional<Reloj::time_point> fin_;
    bool vencida_ = false;
    bool terminar_ = false;
    // The last one: it uses all the others.
    std::thread hilo_;
};

}  // namespace bn::excel::com
