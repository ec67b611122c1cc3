// SPDX-License-Identifier: MIT
#include "app/CuentaAtras.h"
