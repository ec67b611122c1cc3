// SPDX-License-Identifier: MIT
#include "download/LineaTexto.h"
