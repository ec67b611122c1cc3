// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>

namespace bn {

/// A file that one program holds at a time. The system itself keeps it, and gives it up with the
/// program, however that ends: what a killed program leaves behind holds nobody.
class Cerrojo {
 public:
    enum class Estado {
        kNuestro,
        kDeOtro,
        kImposible,  ///< the file cannot be made
    };

    /// Tries once, and does not wait.
    explicit Cerrojo(const std::filesystem::path& fichero);
    Cerrojo(const Cerrojo&) = delete;
    Cerrojo& operator=(const Cerrojo&) = delete;
    ~Cerrojo();

    Estado estado() const { return estado_; }

 private:
    struct Sistema;

    std::unique_ptr<Sistema> sistema_;
    Estado estado_ = Estado::kImposible;
};

}  // namespace bn
