// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace bn {

/// A set of ordinals, counted from 0, kept as the runs that they form.
class Tramos {
 public:
    /// Takes in those from desde up to, not including, hasta.
    void anadir(std::size_t desde, std::size_t hasta);
    void anadir(const Tramos& otros);

    bool contiene(std::size_t ordinal) const;
    std::size_t cuantos() const;
    bool vacio() const { return tramos_.empty(); }

    /// "0-4,7": first and last of each run; "" when there is none.
    std::string texto() const;
    /// Nothing when the text is no such list.
    static std::optional<Tramos> deTexto(std::string_view texto);

    bool operator==(const Tramos&) const = default;

 private:
    std::map<std::size_t, std::size_t> tramos_;  // first, and the one behind the last
};

}  // namespace bn
