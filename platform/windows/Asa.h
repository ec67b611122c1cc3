// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <utility>

namespace bn::windows {

/// A handle of the system's, closed with its owner.
class Asa {
 public:
    Asa() = default;
    /// Takes over what a call has answered: none for null and INVALID_HANDLE_VALUE.
    explicit Asa(HANDLE asa) : asa_(asa == INVALID_HANDLE_VALUE ? nullptr : asa) {}
    Asa(Asa&& otra) noexcept : asa_(std::exchange(otra.asa_, nullptr)) {}
    Asa& operator=(Asa&& otra) noexcept {
        std::swap(asa_, otra.asa_);
        return *this;
    }
    Asa(const Asa&) = delete;
    Asa& operator=(const Asa&) = delete;
    ~Asa() { cerrar(); }

    explicit operator bool() const { return asa_ != nullptr; }
    HANDLE get() const { return asa_; }
    /// Gives it away, unclosed.
    HANDLE entregar() { return std::exchange(asa_, nullptr); }
    void cerrar() {
        if (asa_ != nullptr) {
            ::CloseHandle(std::exchange(asa_, nullptr));
        }
    }

 private:
    HANDLE asa_ = nullptr;
};

}  // namespace bn::windows
