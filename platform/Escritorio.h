// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

namespace bn {

/// What the program asks of the desktop it runs on; implemented once per system.
namespace escritorio {

/// The number by which carpetaEspecial knows the user's documents folder.
inline constexpr int32_t kCarpetaDocumentos = 5;
/// Answers of abrirDocumento; above 32 is done.
inline constexpr int32_t kNoEncontrado = 2;
inline constexpr int32_t kSinPrograma = 31;
inline constexpr int32_t kAbierto = 33;

/// A special folder of the user, UTF-8; "" for a number other than kCarpetaDocumentos.
std::string carpetaEspecial(int32_t numero);

/// The running program's file.
std::filesystem::path ejecutable();

/// The folder of the program's own files: the executable's when it can be written, else one of the
/// user's, which is created. Throws ErrorFichero when it cannot be.
std::filesystem::path carpetaPropia();
/// The same for an executable that stands in the folder given.
std::filesystem::path carpetaPropia(const std::filesystem::path& carpetaEjecutable);

/// Opens a file (UTF-8 path) or a web address with the program that the user has for it, and does
/// not wait for that one. kNoEncontrado, kSinPrograma or kAbierto.
int32_t abrirDocumento(const std::string& rutaODireccion);

/// Whether the program starts when the user logs on.
bool estaEnArranque();
/// Has the program start, or not, when the user logs on. Throws ErrorFichero.
void ponerEnArranque(bool activo, const std::filesystem::path& programa);

/// Lets any other program of the user's bring its window to the front: for one that was started by
/// the user and hands over to another.
void cederElFrente();

/// The local wall clock at an instant, in days since 30 December 1899, whole seconds.
double fechaLocal(std::chrono::system_clock::time_point instante);
/// The local wall clock now, in days since 30 December 1899, whole seconds.
double ahora();

}  // namespace escritorio
}  // namespace bn
