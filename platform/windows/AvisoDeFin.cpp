// SPDX-License-Identifier: MIT
#include "platform/AvisoDeFin.h"

#include <utility>

namespace bn {

/// The end of a session reaches a program with windows by their messages, which the toolkit
/// watches.
struct AvisoDeFin::Interior {
    std::function<void()> alAcabar;  // never called
};

AvisoDeFin::AvisoDeFin(std::function<void()> alAcabar)
    : interior_(std::make_unique<Interior>(Interior{std::move(alAcabar)})) {}

AvisoDeFin::~AvisoDeFin() = default;

}  // namespace bn
