// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <variant>

/// A typed field as the program understands it: the value, or the sentence that tells the user why not.
template <typename T>
using Reading = std::variant<T, std::string>;
