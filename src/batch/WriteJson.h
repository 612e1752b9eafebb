// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/BatchFailure.h"
#include "batch/FitTables.h"

#include <string>

/// A fit as one JSON object. Numbers carry full precision; a value that does not exist, and one that is not
/// finite, is null.
std::string JsonOf(const FitTables& tables);

/// A fit that failed: its excuse number and the message.
std::string JsonOf(const BatchFailure& failure);
