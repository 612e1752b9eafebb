// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <exception>
#include <string>

/// Added to the numbers of the program's own failures; runtime failures carry their bare number.
inline constexpr std::uint32_t kProgramErrorBase = 0x80040000U;

/// The program's own failures, without the base.
namespace errors
{
inline constexpr std::uint32_t kPageTooSmall = 2251;
inline constexpr std::uint32_t kReadObj = 2253;
inline constexpr std::uint32_t kWriteObj = 2254;
inline constexpr std::uint32_t kImportColumns = 2256;
inline constexpr std::uint32_t kImportData = 2257;
inline constexpr std::uint32_t kLegacyFile = 2258;
inline constexpr std::uint32_t kMinimisationFailed = 2261;
inline constexpr std::uint32_t kContoursFailed = 2262;
inline constexpr std::uint32_t kUserCancelled = 2263;
inline constexpr std::uint32_t kNumberFormat = 2352;
// What the fit workflow raises when the model answers "no" instead of raising: base + 2253.
inline constexpr std::uint32_t kFitFailed = 2253;
// Runtime failures.
inline constexpr std::uint32_t kInvalidArgument = 5;
inline constexpr std::uint32_t kOverflow = 6;
inline constexpr std::uint32_t kOutOfMemory = 7;
inline constexpr std::uint32_t kSubscript = 9;
inline constexpr std::uint32_t kDivisionByZero = 11;
inline constexpr std::uint32_t kInternal = 51; ///< raised by none of the program's own operations
inline constexpr std::uint32_t kDevice = 57;   // a file or a printer that cannot be written to
} // namespace errors

/// The one exception of the program: what happened (`number`, `description`) and which operation says so
/// (`source`, a class name joined to a procedure name). It knows nothing of how it will be shown.
struct VeltError : std::exception {
    VeltError(std::uint32_t number, std::string description, std::string source)
        : number(number), description(std::move(description)), source(std::move(source))
    {
    }
    const char* what() const noexcept override { return description.c_str(); }

    /// A runtime failure of arithmetic (5, 6 or 11), as the minimiser's penalties catch it.
    bool IsNumeric() const
    {
        return number == errors::kInvalidArgument || number == errors::kOverflow ||
               number == errors::kDivisionByZero;
    }
    bool IsUserCancel() const { return number == kProgramErrorBase + errors::kUserCancelled; }

    std::uint32_t number;
    std::string description;
    std::string source;
};

/// The printer, or the system's way to it, refused; `description` says what the user may do about it.
struct PrinterFault : VeltError {
    explicit PrinterFault(std::string description) : VeltError(errors::kDevice, std::move(description), "") {}
};

/// A failure of the program's own: raised with the base added to `number`.
VeltError ProgramError(std::uint32_t number, std::string description, std::string source);

/// "User Cancelled.", the end of long work that the user stopped; commands swallow it silently.
VeltError UserCancelled(std::string source);

[[noreturn]] void RaiseInvalidArgument(); ///< 5, "Invalid procedure call or argument"
[[noreturn]] void RaiseOverflow();        ///< 6, "Overflow"
[[noreturn]] void RaiseSubscript();       ///< 9, "Subscript out of range"
[[noreturn]] void RaiseDivisionByZero();  ///< 11, "Division by zero"
