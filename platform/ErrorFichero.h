// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace bn {

/// A file that cannot be read or written. what() is UTF-8 Spanish: the file, then the cause.
class ErrorFichero : public std::runtime_error {
 public:
    /// What is to blame, for those who give advice.
    enum class Causa {
        kNoExiste,     ///< the file, its folder or its drive
        kSinPermiso,   ///< this user may not
        kLleno,        ///< the disk, or the user's share of it
        kEnUso,        ///< another program holds it
        kEsCarpeta,    ///< a folder stands where a file should
        kSoloLectura,  ///< the disk
        kAveria,       ///< the disk, the drive or the network does not answer as it should
        kOtra,
    };

    explicit ErrorFichero(const std::string& texto, Causa causa = Causa::kOtra);
    /// The text is made of the file's name and the explanation.
    ErrorFichero(const std::filesystem::path& ruta, const std::string& explicacion, Causa causa);

    Causa causa() const { return causa_; }
    /// The text without the name of the file; all of it when they were not given apart. Lives as
    /// long as the error.
    std::string_view explicacion() const;

 private:
    Causa causa_;
    std::size_t comienzo_ = 0;  // of the explanation, in what()
};

}  // namespace bn
