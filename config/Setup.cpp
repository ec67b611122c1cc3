// SPDX-License-Identifier: MIT
#include "config/Setup.h"
