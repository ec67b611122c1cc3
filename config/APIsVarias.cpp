// SPDX-License-Identifier: MIT
#include "config/APIsVarias.h"
