// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitTables.h"

#include <string>

/// The projected populations for the terminal: one row a period, one column a scenario, its limits beside it.
/// Empty without projections.
std::string ProjectionsAsText(const FitTables& tables);
