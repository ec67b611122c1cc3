// SPDX-License-Identifier: MIT
#include "link/fComm.h"
