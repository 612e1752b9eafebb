// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VeltError.h"

VeltError ProgramError(std::uint32_t number, std::string description, std::string source)
{
    return VeltError{kProgramErrorBase + number, std::move(description), std::move(source)};
}

VeltError UserCancelled(std::string source)
{
    return ProgramError(errors::kUserCancelled, "User Cancelled.", std::move(source));
}

void RaiseInvalidArgument()
{
    throw VeltError{errors::kInvalidArgument, "Invalid procedure call or argument", ""};
}

void RaiseOverflow()
{
    throw VeltError{errors::kOverflow, "Overflow", ""};
}

void RaiseSubscript()
{
    throw VeltError{errors::kSubscript, "Subscript out of range", ""};
}

void RaiseDivisionByZero()
{
    throw VeltError{errors::kDivisionByZero, "Division by zero", ""};
}
