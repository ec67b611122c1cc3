// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <memory>
#include <set>

namespace bn::excel::com {

/// The process of an application that is started while this object lives, so that it can be ended,
/// and no other: the user's own instances hold work of theirs.
class ProcesoPropio {
 public:
    /// Remembers the processes that run already: none of them will be ours.
    ProcesoPropio();

    /// Takes the process of a window for ours, if it has begun since.
    void reconocer(HWND ventana);
    /// Ends it, and waits for its end. False when it is not known or cannot be ended.
    bool acabar() const;

 private:
    struct Cerrar {
        void operator()(HANDLE asa) const { CloseHandle(asa); }
    };

    std::set<DWORD> anteriores_;
    // Held open from the start: its number may come to be another process's, this cannot.
    std::unique_ptr<void, Cerrar> proceso_;
};

}  // namespace bn::excel::com
