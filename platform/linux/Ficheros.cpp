// SPDX-License-Identifier: MIT
#include "platform/Ficheros.h"
