// SPDX-License-Identifier: MIT
#include "destinations/xls/MotorInterno.h"
