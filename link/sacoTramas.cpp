// SPDX-License-Identifier: MIT
#include "link/sacoTramas.h"
