// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/soporte/CarpetaTemporal.h"

namespace bn::prueba {

/// A folder of the test's own whose path is longer than the system's usual limit, gone with the
/// object.
class CarpetaLarga {
 public:
    CarpetaLarga() : ruta_(corta_.ruta()) {
        for (int i = 0; i < 3; ++i) {
            ruta_ /= std::wstring(100, static_cast<wchar_t>(L'a' + i));
            carpetas_.push_back(entera(ruta_));
            EXPECT_TRUE(::CreateDirectoryW(carpetas_.back().c_str(), nullptr)) << i;
        }
    }
    CarpetaLarga(const CarpetaLarga&) = delete;
    CarpetaLarga& operator=(const CarpetaLarga&) = delete;
    ~CarpetaLarga() {
        for (const auto& nombre : nombres()) {
            EXPECT_TRUE(::DeleteFileW(entera(ruta_ / nombre).c_str()));
        }
        for (auto una = carpetas_.rbegin(); una != carpetas_.rend(); ++una) {
            EXPECT_TRUE(::RemoveDirectoryW(una->c_str()));
        }
    }

    const std::filesystem::path& ruta() const { return ruta_; }
    std::filesystem::path operator/(const std::string& nombre) const { return ruta_ / nombre; }

    std::vector<std::string> nombres() const {
        std::vector<std::string> todos;
        WIN32_FIND_DATAW hallado{};
        const HANDLE busca = ::FindFirstFileW(entera(ruta_ / L"*").c_str(), &hallado);
        EXPECT_NE(busca, INVALID_HANDLE_VALUE);
        do {
            const std::filesystem::path nombre = hallado.cFileName;
            if (nombre != "." && nombre != "..") todos.push_back(nombre.string());
        } while (::FindNextFileW(busca, &hallado));
        ::FindClose(busca);
        return todos;
    }

 private:
    static std::wstring entera(const std::filesystem::path& ruta) {
        return L"\\\\?\\" + std::filesystem::path(ruta).make_preferred().native();
    }

    CarpetaTemporal corta_;
    std::filesystem::path ruta_;
    std::vector<std::wstring> carpetas_;
};

}  // namespace bn::prueba
