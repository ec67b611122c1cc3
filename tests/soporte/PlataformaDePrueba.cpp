// SPDX-License-Identifier: MIT
#include "tests/soporte/PlataformaDePrueba.h"
