// SPDX-License-Identifier: MIT
#include "platform/Escritorio.h"

#include <fcntl.h>
#include <unistd.h>

#include <ctime>

#include "platform/linux/CarpetasXdg.h"

namespace bn::escritorio {

namespace fs = std::filesystem;

std::string carpetaEspecial(int32_t numero) {
    return numero == kCarpetaDocumentos ? xdg::documentos().string() : std::string();
}

fs::path ejecutable() { return fs::read_symlink("/proc/self/exe"); }

fs::path carpetaPropia() { return carpetaPropia(ejecutable().parent_path()); }

fs::path carpetaPropia(const fs::path& carpetaEjecutable) {
    if (::faccessat(AT_FDCWD, carpetaEjecutable.c_str(), W_OK | X_OK, AT_EACCESS) == 0) {
        return carpetaEjecutable;
    }
    fs::path carpeta = xdg::datos() / "bnDX5";
    fs::create_directories(carpeta);
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

double ahora() { return fechaLocal(std::chrono::system_clock::now()); }

}  // namespace bn::escritorio
