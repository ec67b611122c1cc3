// SPDX-License-Identifier: MIT
#include "destinations/excel/com/EnUso.h"

#include <windows.h>

#include <filesystem>
#include <optional>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "platform/Ficheros.h"

namespace bn::excel::com {

namespace {

// The file holds the name twice: its length and its characters in the system's old set, 55 bytes in
// all, then both again in UTF-16, to byte 165.
constexpr std::size_t kEnUtf16 = 55;
constexpr std::size_t kNombreMasLargo = 54;

std::size_t octeto(const std::string& bytes, std::size_t lugar) {
    return lugar < bytes.size() ? static_cast<unsigned char>(bytes[lugar]) : 0U;
}

std::string nombreEnUtf16(const std::string& bytes) {
    const std::size_t largo = octeto(bytes, kEnUtf16) + octeto(bytes, kEnUtf16 + 1) * 256;
    if (largo > kNombreMasLargo) return {};
    std::u16string nombre;
    for (std::size_t i = 0; i < largo; ++i) {
        const std::size_t lugar = kEnUtf16 + 2 + i * 2;
        const auto unidad =
            static_cast<char16_t>(octeto(bytes, lugar) + octeto(bytes, lugar + 1) * 256);
        if (unidad != 0) nombre += unidad;
    }
    return u16AUtf8(nombre);
}

std::string nombreAntiguo(const std::string& bytes) {
    const std::size_t largo = octeto(bytes, 0);
    return largo > kNombreMasLargo ? std::string() : cp1252AUtf8(bytes.substr(1, largo));
}

}  // namespace

bool estaProtegidoContraEscritura(const std::string& libro) {
    const std::filesystem::path ruta = ficheros::aRuta(libro);
    const DWORD atributos = GetFileAttributesW(ruta.c_str());
    if (atributos != INVALID_FILE_ATTRIBUTES && (atributos & FILE_ATTRIBUTE_READONLY) != 0) {
        return true;
    }
    // Permission is looked at before anybody else's use of the file is.
    HANDLE asa = CreateFileW(ruta.c_str(), GENERIC_WRITE,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (asa == INVALID_HANDLE_VALUE) {
        const DWORD causa = GetLastError();
        return causa == ERROR_ACCESS_DENIED || causa == ERROR_WRITE_PROTECT;
    }
    CloseHandle(asa);
    return false;
}

std::string usuarioDelLibro(const std::string& libro) {
    const std::filesystem::path ruta = ficheros::aRuta(libro);
    std::filesystem::path aviso = ruta.parent_path() / L"~$";
    aviso += ruta.filename();
    std::string bytes;
    try {
        bytes = ficheros::leer(discoDelSistema(), aviso).value_or("");
    } catch (const ErrorFichero&) {
        return {};  // the name is a courtesy: what matters is that somebody has the workbook
    }
    if (bytes.empty()) return {};
    std::string nombre(utiltexto::sinBlancos(nombreEnUtf16(bytes)));
    if (nombre.empty()) nombre = utiltexto::sinBlancos(nombreAntiguo(bytes));
    return nombre;
}

}  // namespace bn::excel::com
