// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "batch/FitRequest.h"

#include <ostream>
#include <string>

/// Makes a project out of one of version 2.0, as the desktop does by Open and Save As; whatever ends the
/// program, a project that it replaces or the new one stands, whole. What does not come across is told to
/// `err`. \return what the new project holds, as a page to read
/// \throws BatchFailure BadData when the former project cannot be read, BadUsage when the new one cannot be
///         written or is there already and not to be replaced
std::string ConvertProject(const FitRequest& request, std::ostream& err);
