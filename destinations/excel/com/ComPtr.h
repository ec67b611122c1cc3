// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <objbase.h>
#include <oleauto.h>

#include <utility>

namespace bn::excel::com {

/// A counted reference to a COM object, or to none.
template <class T>
class ComPtr {
 public:
    ComPtr() = default;
    /// Takes over a reference that the caller owns.
    explicit ComPtr(T* propia) noexcept : objeto_(propia) {}
    ComPtr(const ComPtr& otra) noexcept : objeto_(otra.objeto_) {
        if (objeto_) objeto_->AddRef();
    }
    ComPtr(ComPtr&& otra) noexcept : objeto_(std::exchange(otra.objeto_, nullptr)) {}
    ComPtr& operator=(ComPtr otra) noexcept {
        std::swap(objeto_, otra.objeto_);
        return *this;
    }
    ~ComPtr() {
        if (objeto_) objeto_->Release();
    }

    T* get() const { return objeto_; }
    T* operator->() const { return objeto_; }
    explicit operator bool() const { return objeto_ != nullptr; }

    /// Where a call leaves a reference; what was held is let go.
    T** recibir() {
        *this = ComPtr();
        return &objeto_;
    }

 private:
    T* objeto_ = nullptr;
};

}  // namespace bn::excel::com
