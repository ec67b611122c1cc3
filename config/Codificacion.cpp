// SPDX-License-Identifier: MIT
#include "config/Codificacion.h"
