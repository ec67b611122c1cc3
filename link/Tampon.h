// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "link/pesaDX5.h"

namespace bn {

/// What has been received and not yet taken as a frame. Cuts it into frames at their terminators,
/// and knows when a frame has only begun. No input or output of its own.
class Tampon {
 public:
    struct Trama {
        std::string bytes;      ///< its terminator included
        bool resto = false;     ///< only the end of one: olvidar had cut it in two
        bool retenida = false;  ///< it had been held back for an ending that has not come
    };

    /// The protocol tells what a frame begins and ends with.
    explicit Tampon(const pesaDX5& protocolo) : protocolo_(protocolo) {}

    /// A cycle begins: nothing is known of what came before it.
    void empezar();
    /// Appends what has arrived; true when that has completed a frame.
    bool anadir(const std::string& bytes);
    bool vacio() const { return bytes_.empty(); }
    bool hayTrama() const { return largoTrama() != 0; }
    /// Takes the first frame out; only when there is one.
    Trama tomar();
    /// A frame taken has been refused. If its own check character has cut it short, the same one
    /// waits for its whole ending when it comes again.
    void rechazada(const std::string& trama);
    /// A start character has come and no terminator since, forgotten or not.
    bool aMedias() const;
    /// A transmission goes out: forgets the bytes, but not that they were the beginning of a frame.
    void olvidar();

 private:
    std::size_t largoTrama() const;
    bool esperaFinal() const;

    const pesaDX5& protocolo_;
    std::string bytes_;
    std::set<std::string> cortadas_;  // in this cycle
    bool olvidadaAMedias_ = false;
    bool retenida_ = false;
};

}  // namespace bn
