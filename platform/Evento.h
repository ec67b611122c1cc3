// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace bn {

/// A notification upward: whoever owns it raises it, whoever is interested connects to it.
/// Handlers run synchronously, in the order connected; what a handler throws reaches the raiser.
template <class... A>
class Evento {
 public:
    /// Adds a handler. One added while the event is being raised is called from the next time on.
    void conectar(std::function<void(A...)> manejador) {
        manejadores_.push_back(std::move(manejador));
    }

    /// Raises the event.
    void operator()(A... argumentos) const {
        const std::size_t cuantos = manejadores_.size();
        for (std::size_t i = 0; i < cuantos; ++i) {
            const auto manejador = manejadores_[i];  // a copy: the vector may grow meanwhile
            manejador(argumentos...);
        }
    }

 private:
    std::vector<std::function<void(A...)>> manejadores_;
};

}  // namespace bn
