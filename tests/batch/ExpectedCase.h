// SPDX-License-Identifier: GPL-3.0-or-later
// A case of an independent computation: the data and the inputs of a fit, and the ranges of its answers.
#pragma once

#include "batch/BatchJob.h"

#include <string>
#include <vector>

/// The cases of a folder of samples, without their ending.
std::vector<std::string> CaseNames(const std::string& folder);

/// The command line that fits a case of that folder.
std::vector<std::string> CommandLineOf(const nlohmann::json& expected, const std::string& folder);

/// Expects the number `ours` inside `range`, two numbers. \param quantity for the message
void ExpectInRange(const std::string& quantity, const nlohmann::json& ours, const nlohmann::json& range);
