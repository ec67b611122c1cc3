// SPDX-License-Identifier: MIT
#pragma once

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace bn::prueba {

/// A folder of the test's own, gone with it.
class CarpetaTemporal {
 public:
    CarpetaTemporal() {
        std::string plantilla = (std::filesystem::temp_directory_path() / "bndx5-XXXXXX").string();
        if (mkdtemp(plantilla.data()) == nullptr) throw std::runtime_error("mkdtemp");
        ruta_ = plantilla;
    }
    CarpetaTemporal(const CarpetaTemporal&) = delete;
    CarpetaTemporal& operator=(const CarpetaTemporal&) = delete;
    ~CarpetaTemporal() {
        std::error_code error;
        std::filesystem::remove_all(ruta_, error);
    }

    const std::filesystem::path& ruta() const { return ruta_; }
    std::filesystem::path operator/(const std::string& nombre) const { return ruta_ / nombre; }

 private:
    std::filesystem::path ruta_;
};

inline std::string leerFichero(const std::filesystem::path& ruta) {
    std::ifstream fichero(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(fichero), std::istreambuf_iterator<char>()};
}

inline void escribirFichero(const std::filesystem::path& ruta, const std::string& bytes) {
    std::ofstream fichero(ruta, std::ios::binary | std::ios::trunc);
    fichero << bytes;
}

/// The names of the folder's files that begin so, in order.
inline std::vector<std::string> ficherosQueEmpiezan(const std::filesystem::path& carpeta,
                                                    const std::string& comienzo) {
    std::vector<std::string> nombres;
    for (const auto& entrada : std::filesystem::directory_iterator(carpeta)) {
        const std::string nombre = entrada.path().filename().string();
        if (nombre.rfind(comienzo, 0) == 0) nombres.push_back(nombre);
    }
    std::sort(nombres.begin(), nombres.end());
    return nombres;
}

}  // namespace bn::prueba
