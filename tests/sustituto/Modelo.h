// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tests/sustituto/ObjetoSustituto.h"

namespace bn::sustituto {

/// A new application over an engine of its own, with one reference. nullptr when it has been
/// ordered to be absent.
IDispatch* nuevaAplicacion();

/// How many applications have been told to quit.
int64_t aplicacionesCerradas();

}  // namespace bn::sustituto
