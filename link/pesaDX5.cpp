// SPDX-License-Identifier: MIT
#include "link/pesaDX5.h"
