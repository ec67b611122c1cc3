// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace bn::prueba {

/// Ports as their drivers declare them, while it lives. Only an administrator may declare them.
class PuertosDeclarados {
 public:
    explicit PuertosDeclarados(const std::vector<std::wstring>& puertos) {
        for (const auto& puerto : puertos) {
            nombres_.push_back(L"\\Device\\BnPrueba" + std::to_wstring(nombres_.size()));
            const auto bytes = static_cast<DWORD>((puerto.size() + 1) * sizeof(wchar_t));
            const LSTATUS error = ::RegSetKeyValueW(
                HKEY_LOCAL_MACHINE, kClave, nombres_.back().c_str(), REG_SZ, puerto.c_str(), bytes);
            sePuede_ = sePuede_ && error == ERROR_SUCCESS;
        }
    }
    PuertosDeclarados(const PuertosDeclarados&) = delete;
    PuertosDeclarados& operator=(const PuertosDeclarados&) = delete;
    ~PuertosDeclarados() {
        for (const auto& nombre : nombres_) {
            ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kClave, nombre.c_str());
        }
    }

    bool sePuede() const { return sePuede_; }

 private:
    static constexpr const wchar_t* kClave = L"HARDWARE\\DEVICEMAP\\SERIALCOMM";
    std::vector<std::wstring> nombres_;
    bool sePuede_ = true;
};

}  // namespace bn::prueba
