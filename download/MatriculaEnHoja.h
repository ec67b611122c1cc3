// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace bn {

/// What to type into a worksheet so that the plate (UTF-8) arrives there as the text it is: the
/// plate itself, or, when an entry in English or Spanish notation could make a number, date,
/// formula… of it, the plate behind the apostrophe that keeps it a text. "" stays "".
std::string matriculaEnHoja(const std::string& matriculaUtf8);

}  // namespace bn
