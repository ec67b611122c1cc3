// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>

#include "destinations/excel/com/ComPtr.h"

namespace bn::excel::com {

/// While a call of this thread is out, and this object lives: the call is given up at the first
/// message after it has been cancelled. Without that, all is as the system does it by itself.
class EsperaDeLlamada final : public IMessageFilter {
 public:
    explicit EsperaDeLlamada(const std::atomic<bool>& cancelada);
    EsperaDeLlamada(const EsperaDeLlamada&) = delete;
    EsperaDeLlamada& operator=(const EsperaDeLlamada&) = delete;
    virtual ~EsperaDeLlamada();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objeto) override;
    // It lives on the stack of the call: the references held to it end before it does.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    DWORD STDMETHODCALLTYPE HandleInComingCall(DWORD tipo, HTASK deQuien, DWORD espera,
                                               LPINTERFACEINFO llamada) override;
    DWORD STDMETHODCALLTYPE RetryRejectedCall(HTASK aQuien, DWORD espera, DWORD rechazo) override;
    DWORD STDMETHODCALLTYPE MessagePending(HTASK aQuien, DWORD espera, DWORD tipo) override;

 private:
    const std::atomic<bool>& cancelada_;
    ComPtr<IMessageFilter> anterior_;
};

}  // namespace bn::excel::com
