// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace bn {

/// Hears when the system wants the program to end (a signal, the end of the session) by a road that
/// the toolkit does not watch. One at a time in a program.
class AvisoDeFin {
 public:
    /// alAcabar is called from a thread of its own, and returns at once. A system that has no such
    /// road never calls it.
    explicit AvisoDeFin(std::function<void()> alAcabar);
    AvisoDeFin(const AvisoDeFin&) = delete;
    AvisoDeFin& operator=(const AvisoDeFin&) = delete;
    /// The system's own way of ending the program is back.
    ~AvisoDeFin();

 private:
    struct Interior;

    std::unique_ptr<Interior> interior_;
};

}  // namespace bn
