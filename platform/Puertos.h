// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace bn {

/// A serial device that the machine has at this moment. Texts are UTF-8.
struct PuertoPresente {
    std::string dispositivo;  ///< as it is opened
    std::string descripcion;  ///< what it says of itself, Spanish where the program says it
    int16_t canal = 0;        ///< the channel number that opens it, 1 to 16; 0 for none
};

/// The serial devices present, in the order of their names. What cannot be read is left out. raiz:
/// where the system's own tree of devices begins, another one only in tests.
std::vector<PuertoPresente> puertosPresentes(const std::filesystem::path& raiz = "/");

/// Whether two names (UTF-8), each as a device is opened by it, are the same device's. What cannot
/// be compared is another device. raiz: as above.
bool esElMismoPuerto(const std::string& uno, const std::string& otro,
                     const std::filesystem::path& raiz = "/");

}  // namespace bn
