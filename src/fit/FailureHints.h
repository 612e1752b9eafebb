// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

class IMethod;
class clsVeltData;
struct VeltError;

/// A sentence of advice on a fit or a bootstrap run that ended with `error`, for the words of a failure say
/// what happened and not what to do. It stands in a paragraph of its own behind them. Empty where the cause
/// is not known, and for a cancel. \param method  null when there was none yet
std::string HintOn(const VeltError& error, const clsVeltData& data, const IMethod* method);

/// Which columns a data set lacks that allows no model, and how to give it some.
std::string HintOnNoModel(const clsVeltData& data);
