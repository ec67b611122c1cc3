// SPDX-License-Identifier: MIT
#include "config/ArchivoIni.h"
