// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

#include "destinations/xls/Errores.h"

namespace bn::xls {

/// Bytes of a file, read little-endian; every access out of them throws ErrorExcel.
class Vista {
 public:
    Vista() = default;
    Vista(std::string_view bytes) : bytes_(bytes) {}
    Vista(const std::string& bytes) : bytes_(bytes) {}

    size_t size() const { return bytes_.size(); }
    std::string_view todo() const { return bytes_; }

    uint8_t u8(size_t pos) const {
        exigir(pos, 1);
        return byte(pos);
    }
    uint16_t u16(size_t pos) const {
        exigir(pos, 2);
        return static_cast<uint16_t>(byte(pos) | byte(pos + 1) << 8);
    }
    uint32_t u32(size_t pos) const {
        exigir(pos, 4);
        return bajo32(pos);
    }
    uint64_t u64(size_t pos) const {
        exigir(pos, 8);
        return bajo32(pos) | uint64_t{bajo32(pos + 4)} << 32;
    }
    double f64(size_t pos) const { return std::bit_cast<double>(u64(pos)); }
    std::string_view trozo(size_t pos, size_t largo) const {
        exigir(pos, largo);
        return bytes_.substr(pos, largo);
    }
    std::string_view desde(size_t pos) const {
        exigir(pos, 0);
        return bytes_.substr(pos);
    }

 private:
    uint8_t byte(size_t pos) const { return static_cast<uint8_t>(bytes_[pos]); }
    uint32_t bajo32(size_t pos) const {
        return uint32_t{byte(pos)} | uint32_t{byte(pos + 1)} << 8 | uint32_t{byte(pos + 2)} << 16 |
               uint32_t{byte(pos + 3)} << 24;
    }
    void exigir(size_t pos, size_t largo) const {
        if (pos > bytes_.size() || bytes_.size() - pos < largo) danado("faltan bytes");
    }

    std::string_view bytes_;
};

inline void poner8(std::string& salida, uint32_t v) { salida.push_back(static_cast<char>(v)); }
inline void poner16(std::string& salida, uint32_t v) {
    const char bytes[] = {static_cast<char>(v), static_cast<char>(v >> 8)};
    salida.append(bytes, sizeof bytes);
}
inline void poner32(std::string& salida, uint32_t v) {
    const char bytes[] = {static_cast<char>(v), static_cast<char>(v >> 8),
                          static_cast<char>(v >> 16), static_cast<char>(v >> 24)};
    salida.append(bytes, sizeof bytes);
}
inline void poner64(std::string& salida, uint64_t v) {
    poner32(salida, static_cast<uint32_t>(v));
    poner32(salida, static_cast<uint32_t>(v >> 32));
}
inline void ponerDoble(std::string& salida, double v) {
    poner64(salida, std::bit_cast<uint64_t>(v));
}

/// Overwrites what stands at pos, which must lie inside the bytes.
inline void cambiar16(std::string& bytes, size_t pos, uint32_t v) {
    if (pos > bytes.size() || bytes.size() - pos < 2) danado("faltan bytes");
    bytes[pos] = static_cast<char>(v);
    bytes[pos + 1] = static_cast<char>(v >> 8);
}
inline void cambiar32(std::string& bytes, size_t pos, uint32_t v) {
    cambiar16(bytes, pos, v);
    cambiar16(bytes, pos + 2, v >> 16);
}

}  // namespace bn::xls
