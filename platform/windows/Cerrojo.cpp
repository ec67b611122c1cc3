// SPDX-License-Identifier: MIT
#include "platform/Cerrojo.h"

#include "platform/windows/Asa.h"
#include "platform/windows/RutaLarga.h"

namespace bn {

struct Cerrojo::Sistema {
    windows::Asa asa;
};

Cerrojo::Cerrojo(const std::filesystem::path& fichero) : sistema_(std::make_unique<Sistema>()) {
    sistema_->asa = windows::Asa(::CreateFileW(
        windows::paraElSistema(fichero).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr,
        OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (sistema_->asa) {
        estado_ = Estado::kNuestro;
    } else if (::GetLastError() == ERROR_SHARING_VIOLATION) {
        estado_ = Estado::kDeOtro;
    }
}

Cerrojo::~Cerrojo() = default;

}  // namespace bn
