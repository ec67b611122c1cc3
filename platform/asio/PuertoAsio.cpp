// SPDX-License-Identifier: MIT
#include "platform/asio/PuertoAsio.h"
