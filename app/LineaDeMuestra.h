// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "destinations/FormularioTxt.h"
#include "platform/Plataforma.h"

namespace bn {

/// The line that a made-up weighing gives under the layout being edited, UTF-8: the text file
/// before it exists.
std::string lineaDeMuestra(Plataforma& plataforma, const FormularioTxt& formulario);

}  // namespace bn
