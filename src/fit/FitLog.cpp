// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/FitLog.h"

#include "base/StringTable.h"
#include "base/Text.h"
#include "data/clsVeltData.h"

#include <utility>

namespace
{
/// The name as typed, once no fit has it; empty when the user gave none.
std::string AskFitName(const clsVeltData& data, std::string name)
{
    IUser& user = data.TheRun().user;
    const Message taken{.text = LoadResString(1925), .helpContext = 102};
    for (;;) {
        if (Trim(name).empty())
            name = user.InputBox(LoadResString(1942), taken.title, "").value_or("");
        if (Trim(name).empty())
            return {};
        if (!data.HasLoggedFit(name))
            return name;
        user.Show(taken);
        name.clear();
    }
}
} // namespace

clsFit* GetANewLog(clsVeltData& data, std::int32_t whichMeth, std::int32_t fitOp, std::string name,
                   const MomentSource& now)
{
    const std::string given = AskFitName(data, std::move(name));
    return given.empty() ? nullptr : &data.NewLoggedFit(whichMeth, fitOp, given, now());
}
