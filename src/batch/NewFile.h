// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitRequest.h"

/// \throws BatchFailure BadUsage when the file to be made is there already and not to be replaced, or is the
///         one that it is made of, under whatever name
void CheckNewFile(const FitRequest::Making& making);
