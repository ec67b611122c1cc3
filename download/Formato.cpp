// SPDX-License-Identifier: MIT
#include "download/Formato.h"
