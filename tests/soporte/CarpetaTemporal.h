// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace bn::prueba {

/// A folder of the test's own, empty at first, gone with the object. Its name has an "ñ" and a
/// blank: paths of real users have them.
class CarpetaTemporal {
 public:
    CarpetaTemporal() {
        std::random_device azar;
        do {
            const std::u8string nombre = u8"bn prueba ñ ";
            ruta_ = std::filesystem::temp_directory_path() / nombre;
            ruta_ += std::to_string(azar());
        } while (!std::filesystem::create_directory(ruta_));
    }
    CarpetaTemporal(const CarpetaTemporal&) = delete;
    CarpetaTemporal& operator=(const CarpetaTemporal&) = delete;
    ~CarpetaTemporal() {
        std::error_code error;
        std::filesystem::remove_all(ruta_, error);
    }

    const std::filesystem::path& ruta() const { return ruta_; }
    std::filesystem::path operator/(const std::string& nombre) const { return ruta_ / nombre; }

    std::vector<std::string> nombres() const {
        std::vector<std::string> todos;
        for (const auto& entrada : std::filesystem::directory_iterator(ruta_)) {
            todos.push_back(entrada.path().filename().string());
        }
        return todos;
    }

 private:
    std::filesystem::path ruta_;
};

/// The bytes of a file, read without any help of the code under test.
inline std::string leerFichero(const std::filesystem::path& ruta) {
    std::ifstream fichero(ruta, std::ios::binary);
    EXPECT_TRUE(fichero.is_open()) << ruta;
    return {std::istreambuf_iterator<char>(fichero), {}};
}

inline void escribirFichero(const std::filesystem::path& ruta, const std::string& bytes) {
    std::ofstream fichero(ruta, std::ios::binary | std::ios::trunc);
    fichero << bytes;
    ASSERT_TRUE(fichero.flush().good()) << ruta;
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
