// SPDX-License-Identifier: MIT
#include "platform/Puertos.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <system_error>
#include <tuple>

namespace bn {

namespace {

namespace fs = std::filesystem;

constexpr int kUltimoCanal = 16;

std::string primeraLinea(const fs::path& fichero) {
    std::ifstream flujo(fichero);
    std::string linea;
    std::getline(flujo, linea);
    return linea;
}

/// "ttyUSB12" is "ttyUSB" and 12, so that names sort as people count.
std::pair<std::string, int> partirNombre(const std::string& nombre) {
    const std::size_t cifras = nombre.find_last_not_of("0123456789") + 1;
    int numero = -1;
    std::from_chars(nombre.data() + cifras, nombre.data() + nombre.size(), numero);
    return {nombre.substr(0, cifras), numero};
}

/// The names that adapters give themselves, by device: "usb-FTDI_FT232R-if00-port0".
std::map<std::string, std::string> nombresPropios(const fs::path& raiz) {
    std::map<std::string, std::string> nombres;
    std::error_code error;
    for (fs::directory_iterator it(raiz / "dev/serial/by-id", error), fin; !error && it != fin;
         it.increment(error)) {
        std::error_code ilegible;
        const fs::path destino = fs::read_symlink(it->path(), ilegible);
        if (!ilegible) nombres[destino.filename().string()] = it->path().filename().string();
    }
    return nombres;
}

/// "usb-FTDI_FT232R-if00-port0" reads "FTDI FT232R".
std::string legible(std::string nombre) {
    if (nombre.starts_with("usb-")) nombre.erase(0, 4);
    const std::size_t interfaz = nombre.rfind("-if");
    if (interfaz != std::string::npos) nombre.erase(interfaz);
    std::replace(nombre.begin(), nombre.end(), '_', ' ');
    return nombre;
}

/// The kernel keeps names for built-in ports that are not there; those are of type 0.
bool existeDeVerdad(const fs::path& tty) {
    std::error_code error;
    if (!fs::exists(tty / "device", error)) return false;
    const fs::path tipo = tty / "type";
    return !fs::exists(tipo, error) || primeraLinea(tipo) != "0";
}

int16_t canalDe(const std::string& familia, int numero) {
    return familia == "ttyS" && numero >= 0 && numero < kUltimoCanal
               ? static_cast<int16_t>(numero + 1)
               : int16_t{0};
}

}  // namespace

std::vector<PuertoPresente> puertosPresentes(const fs::path& raiz) {
    const auto propios = nombresPropios(raiz);
    std::vector<std::tuple<std::string, int, std::string>> nombres;
    std::error_code error;
    for (fs::directory_iterator it(raiz / "sys/class/tty", error), fin; !error && it != fin;
         it.increment(error)) {
        if (!existeDeVerdad(it->path())) continue;
        const std::string nombre = it->path().filename().string();
        const auto [familia, numero] = partirNombre(nombre);
        nombres.emplace_back(familia, numero, nombre);
    }
    std::sort(nombres.begin(), nombres.end());

    std::vector<PuertoPresente> puertos;
    for (const auto& [familia, numero, nombre] : nombres) {
        const auto propio = propios.find(nombre);
        puertos.push_back({"/dev/" + nombre,
                           propio != propios.end() ? legible(propio->second) : "Puerto serie",
                           canalDe(familia, numero)});
    }
    return puertos;
}

bool esElMismoPuerto(const std::string& uno, const std::string& otro, const fs::path& raiz) {
    if (uno == otro) return true;
    const auto enRaiz = [&raiz](const std::string& nombre) {
        return raiz / fs::path(nombre).relative_path();
    };
    std::error_code error;
    return fs::equivalent(enRaiz(uno), enRaiz(otro), error);
}

}  // namespace bn
