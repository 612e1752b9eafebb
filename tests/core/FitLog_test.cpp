// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/FitLog.h"

#include "base/Text.h"
#include "data/clsVeltData.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace
{
clsFit Named(const std::string& name)
{
    clsFit fit;
    fit.Create(name, 36526.0);
    return fit;
}

/// Prompt, title and suggestion of each input box.
using Boxes = std::vector<std::array<std::string, 3>>;

/// A user who remembers everything about the input boxes.
class AttentiveUser : public ScriptedUser
{
public:
    Boxes boxes;
    std::optional<std::string> InputBox(const std::string& prompt, const std::string& title,
                                        const std::string& suggestion) override
    {
        boxes.push_back({prompt, title, suggestion});
        return ScriptedUser::InputBox(prompt, title, suggestion);
    }
};

class FitLog : public testing::Test
{
protected:
    /// Logs a fit of the Schaefer model (5) under gamma errors (3) at 18:00 on 2000-01-01.
    clsFit* Log(const std::string& name)
    {
        return GetANewLog(data, 5, 3, name, [] { return 36526.75; });
    }

    AttentiveUser user;
    RecordingWindow window;
    RecordingMeter meter;
    RandomSource random{20261121};
    ::Run run{user, window, meter, random};
    clsVeltData data{run};
};
} // namespace

TEST_F(FitLog, TheNameIsAskedForWithAnEmptySuggestion)
{
    user.inputs = {"Ling"};
    const clsFit* const fit = Log("");
    ASSERT_NE(fit, nullptr);
    EXPECT_EQ(user.boxes, (Boxes{{"Enter name for current fit", "VELT 3.0", ""}}));
    EXPECT_TRUE(user.messages.empty());
}

TEST_F(FitLog, ANameThatIsGivenIsNotAskedFor)
{
    const clsFit* const fit = Log("Ling");
    ASSERT_NE(fit, nullptr);
    EXPECT_EQ(fit->FitName(), PadString("Ling", 50));
    EXPECT_TRUE(user.boxes.empty());
}

TEST_F(FitLog, AGivenNameOfBlanksCountsAsEmptyAndIsAskedFor)
{
    user.inputs = {"Ling"};
    const clsFit* const fit = Log("   ");
    ASSERT_NE(fit, nullptr);
    EXPECT_EQ(Trim(fit->FitName()), "Ling");
}

TEST_F(FitLog, TheNewFitCarriesModelErrorModelAndMomentAndStandsLast)
{
    data.AddLoggedFit(Named("Tusk"));
    const clsFit* const fit = Log("Ling");
    ASSERT_NE(fit, nullptr);
    EXPECT_EQ(fit, &data.LoggedFit(2));
    EXPECT_EQ(fit->MethType(), 5);
    EXPECT_EQ(fit->FitOp(), 3);
    EXPECT_EQ(fit->TheDate(), 36526.0);
    EXPECT_EQ(fit->TheTime(), 0.75);
    EXPECT_FALSE(fit->Deleted());
    EXPECT_TRUE(data.IsDirty());
}

TEST_F(FitLog, WithTheNameBoxLeftEmptyBlankOrCancelledNothingIsLogged)
{
    const std::vector<std::optional<std::string>> replies{"", "   ", std::nullopt};
    for (const auto& reply : replies) {
        user.inputs = {reply};
        EXPECT_EQ(Log(""), nullptr);
    }
    EXPECT_EQ(user.boxes.size(), replies.size());
    EXPECT_EQ(data.NumLoggedFits(), 0);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(FitLog, ANameThatIsTakenIsRefusedWithAHelpButtonAndAskedForAgain)
{
    data.AddLoggedFit(Named("Ling"));
    user.inputs = {"Ling", "Ling 2"};

    const clsFit* const fit = Log("");

    ASSERT_NE(fit, nullptr);
    EXPECT_EQ(Trim(fit->FitName()), "Ling 2");
    EXPECT_EQ(user.boxes.size(), 2U);
    ASSERT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.messages[0].text, "Fit Name Exists already, please type a different name");
    EXPECT_EQ(user.messages[0].title, "VELT 3.0");
    EXPECT_EQ(user.messages[0].icon, Icon::Exclamation);
    EXPECT_EQ(user.messages[0].buttons, Buttons::Ok);
    EXPECT_EQ(user.messages[0].helpTopic, "102");
}

TEST_F(FitLog, AGivenNameThatIsTakenIsAskedForAndCancelThenLogsNothing)
{
    data.AddLoggedFit(Named("Ling"));
    user.inputs = {std::nullopt};
    EXPECT_EQ(Log("Ling"), nullptr);
    EXPECT_EQ(user.messages.size(), 1U);
    EXPECT_EQ(user.boxes.size(), 1U);
    EXPECT_EQ(data.NumLoggedFits(), 1);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(FitLog, ANameOf51CharactersIsCutAndASecondFitWithTheSameFirst50IsRefusedAsADuplicate)
{
    const std::string fifty(50, 'x');
    const clsFit* const first = Log(fifty + "1");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->FitName(), fifty);

    EXPECT_EQ(Log(fifty + "2"), nullptr);

    EXPECT_TRUE(user.Saw("Fit Name Exists already"));
    EXPECT_EQ(data.NumLoggedFits(), 1);
}

TEST_F(FitLog, NamesAreComparedExactlyOnceFilledOutWithBlanks)
{
    data.AddLoggedFit(Named("Ling"));
    EXPECT_NE(Log("ling"), nullptr);   // another case, another name
    EXPECT_NE(Log(" Ling"), nullptr);  // a blank in front is part of the name
    EXPECT_EQ(Log("Ling  "), nullptr); // blanks behind are not
    EXPECT_EQ(data.NumLoggedFits(), 3);
}

TEST_F(FitLog, TheMomentIsTakenOnlyOnceTheNameStands)
{
    user.inputs = {"Ling"};
    std::size_t boxesBefore = 0;
    const clsFit* const fit = GetANewLog(data, 1, 1, "", [&] {
        boxesBefore = user.boxes.size();
        return 40000.5;
    });
    ASSERT_NE(fit, nullptr);
    EXPECT_EQ(boxesBefore, 1U);
    EXPECT_EQ(fit->TheDate(), 40000.0);
    EXPECT_EQ(fit->TheTime(), 0.5);
}
