// SPDX-License-Identifier: MIT
#include "platform/Escritorio.h"

#include <fcntl.h>
#include <unistd.h>

#include <ctime>
#include <system_error>

#include "platform/Ficheros.h"
#include "platform/linux/CarpetasXdg.h"

namespace bn::escritorio {

namespace fs = std::filesystem;

std::string carpetaEspecial(int32_t numero) {
    return numero == kCarpetaDocumentos ? xdg::documentos().string() : std::string();
}

fs::path ejecutable() {
    std::error_code error;
    fs::path ruta = fs::read_symlink("/proc/self/exe", error);
    if (error) throw ErrorFichero("/proc/self/exe: no se sabe dónde está el programa");
    return ruta;
}

fs::path carpetaPropia() { return carpetaPropia(ejecutable().parent_path()); }

fs::path carpetaPropia(const fs::path& carpetaEjecutable) {
    if (::faccessat(AT_FDCWD, carpetaEjecutable.c_str(), W_OK | X_OK, AT_EACCESS) == 0) {
        return carpetaEjecutable;
    }
    fs::path carpeta = xdg::datos() / "bnDX5";
    std::error_code error;
    fs::create_directories(carpeta, error);
    if (error) throw ErrorFichero(carpeta.string() + ": no se puede crear la carpeta");
    return carpeta;
}

double fechaLocal(std::chrono::system_clock::time_point instante) {
    using std::chrono::day, std::chrono::month, std::chrono::sys_days, std::chrono::year;
    constexpr double kSegundosDelDia = 86400;
    const std::time_t segundos = std::chrono::system_clock::to_time_t(instante);
    std::tm local{};
    ::localtime_r(&segundos, &local);
    const auto hoy = sys_days(year(local.tm_year + 1900) / month(unsigned(local.tm_mon) + 1) /
                              day(unsigned(local.tm_mday)));
    const auto origen = sys_days(year(1899) / month(12) / day(30));
    const double delDia = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
    return static_cast<double>((hoy - origen).count()) + delDia / kSegundosDelDia;
}

void cederElFrente() {}  // the window managers here decide by themselves

double ahora() { return fechaLocal(std::chrono::system_clock::now()); }

}  // namespace bn::escritorio
