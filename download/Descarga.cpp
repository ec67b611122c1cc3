// SPDX-License-Identifier: MIT
#include "download/Descarga.h"
