// SPDX-License-Identifier: MIT
#include "config/UtilTexto.h"
