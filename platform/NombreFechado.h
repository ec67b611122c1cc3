// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "platform/Disco.h"

namespace bn {

/// A path that is not taken yet on the disk: comienzo, the date-time (days since 30 December 1899)
/// as "AAAAMMDD-HHMMSS", and final; "-2", "-3"... before final when another has it already.
std::filesystem::path nombreFechado(Disco& disco, const std::filesystem::path& comienzo,
                                    double fechaHora, const std::string& final);

}  // namespace bn
