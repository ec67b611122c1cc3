// SPDX-License-Identifier: MIT
#include "destinations/excel/com/EsperaDeLlamada.h"

namespace bn::excel::com {

EsperaDeLlamada::EsperaDeLlamada(const std::atomic<bool>& cancelada) : cancelada_(cancelada) {
    CoRegisterMessageFilter(this, anterior_.recibir());
}

EsperaDeLlamada::~EsperaDeLlamada() { CoRegisterMessageFilter(anterior_.get(), nullptr); }

HRESULT EsperaDeLlamada::QueryInterface(REFIID iid, void** objeto) {
    *objeto = nullptr;
    if (iid != IID_IUnknown && iid != IID_IMessageFilter) return E_NOINTERFACE;
    *objeto = static_cast<IMessageFilter*>(this);
    return S_OK;
}

DWORD EsperaDeLlamada::HandleInComingCall(DWORD /*tipo*/, HTASK /*deQuien*/, DWORD /*espera*/,
                                          LPINTERFACEINFO /*llamada*/) {
    return SERVERCALL_ISHANDLED;
}

DWORD EsperaDeLlamada::RetryRejectedCall(HTASK /*aQuien*/, DWORD /*espera*/, DWORD /*rechazo*/) {
    constexpr auto kNunca = static_cast<DWORD>(-1);
    return kNunca;  // who calls decides that, with a patience of its own
}

DWORD EsperaDeLlamada::MessagePending(HTASK /*aQuien*/, DWORD /*espera*/, DWORD /*tipo*/) {
    return cancelada_ ? PENDINGMSG_CANCELCALL : PENDINGMSG_WAITDEFPROCESS;
}

}  // namespace bn::excel::com
