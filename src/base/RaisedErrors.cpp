// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/RaisedErrors.h"

#include "base/StringTable.h"
#include "base/VeltError.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace
{
constexpr std::string_view kApplication = "VELT 3.0";
constexpr std::uint32_t kWindowsErrorBase = 0x80047148U;
constexpr std::size_t kMessageBuffer = 256;
constexpr int kFirstTableError = 1001;

std::string TableText(int id)
{
    try {
        return LoadResString(id);
    } catch (const VeltError&) {
        return {}; // the failure to be raised matters more than its missing words
    }
}
} // namespace

void RaiseWindowsError(int code)
{
    const std::string text = code == kBadPathname ? "The path is not a full path in the form of this system."
                                                  : std::system_category().message(code);
    throw VeltError{static_cast<std::uint32_t>(code) + kWindowsErrorBase, text.substr(0, kMessageBuffer),
                    std::string(kApplication) + ".Windows"};
}

void RaiseIfFailed(int code)
{
    if (code != 0)
        RaiseWindowsError(code);
}

void RaiseError(int number)
{
    const std::string application(kApplication);
    const auto raised = static_cast<std::uint32_t>(number);
    if (number < kFirstTableError)
        throw VeltError{raised, "", application + ".VBError"};
    throw VeltError{raised, TableText(number), application + "." + TableText(number / 10 * 10)};
}
