// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "link/pesaDX5.h"

namespace bn {

/// Tells the copy of a record, which the indicator sends when an answer has not reached it or has
/// reached it twice, from a record that is equal. Only records with a delivery note number can be
/// told: two of those are never equal.
class Copias {
 public:
    /// The last record of a download that did not end well, for the next cycle; "" for none.
    void esperar(const std::string& datos) { paraElProximo_ = datos; }
    /// A cycle begins.
    void empezar();
    /// A NAK has gone out that the indicator may hear beside the answer to the frame it is sending.
    void nakDeMas() { nakDeMas_ = true; }
    /// Whether the record is the one that the last download may not have been heard to acknowledge.
    /// Only the first record of a cycle is; to be asked of each before it is accepted.
    bool esLaEsperada(const pesaDX5& pesada);
    /// Whether the record is the copy that a NAK too many brings; true only once for each accepted.
    bool esLaDelNak(const pesaDX5& pesada);
    /// A record has been accepted.
    void aceptada(const std::string& datos);

 private:
    std::string paraElProximo_;
    std::string esperada_;
    std::string ultima_;
    bool nakDeMas_ = false;   // since the last one was accepted
    bool cabeCopia_ = false;  // of the last one accepted
};

}  // namespace bn
