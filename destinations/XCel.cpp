// SPDX-License-Identifier: MIT
#include "destinations/XCel.h"
