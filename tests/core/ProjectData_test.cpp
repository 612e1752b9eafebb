// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ProjectData.h"

#include "core/ProjectDataBench.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace
{
using namespace project_data;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

using Names = std::vector<std::string>;
} // namespace

// ---- opening ----------------------------------------------------------------------------------------------

TEST_F(ProjectData, OpeningIsNoChangeAndTakesWhatTheFileSays)
{
    const std::string file = ProjectHeader("Ling", 1986, 1990, 11, 12, 13) + EffortColumns({1, 2, 3, 4, 5}) +
                             Counts(0, 1) + ScenarioTitled("Quota");
    const clsVeltData data = DataOf(file);
    EXPECT_FALSE(data.IsDirty());
    EXPECT_EQ(data.DSDesc(), "Ling");
    EXPECT_EQ(data.MinTimeP(), 1986);
    EXPECT_EQ(data.MaxTimeP(), 1990);
    EXPECT_EQ(data.TimeInts(), 5);
    EXPECT_EQ(data.NAPoints(), 5);
    EXPECT_EQ(data.OrigNAPoints(), 5);
    EXPECT_EQ(data.NDPoints(), 6);
    EXPECT_EQ(data.NNtPoints(), 5);
    EXPECT_EQ(data.Effort(5), 5.0F);
    EXPECT_EQ(data.Effort(6), -1.0F);
    EXPECT_EQ(data.ColFormat(columns::CatchWt), "0.0");
    EXPECT_EQ(data.ProjScenario("Quota")->VecType(), 0);
}

TEST_F(ProjectData, CountsOfTheHeaderAreCarried)
{
    const std::string file = ProjectHeader("", 1, 3, 11, 12, 13) + AbsentColumns(15) + Counts(0, 0);
    const clsVeltData data = DataOf(file);
    EXPECT_EQ(data.NumLoggedRuns(), 11);
    EXPECT_EQ(data.NumScens(), 12);
    EXPECT_EQ(data.NumPts(), 13);
    EXPECT_EQ(data.V2KLoggedFits(), 0);
    EXPECT_EQ(data.V2kProjScens(), 0);
    // Number of scenarios alone is taken anew.
    EXPECT_EQ(SavedAgain(file), ProjectHeader("", 1, 3, 11, 0, 13) + AbsentColumns(15) + Counts(0, 0));
}

TEST_F(ProjectData, EveryUsableRowOfTheRangeIsToggledInAfterOpening) // deliberate: the file has no toggles
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 0, -1})));
    EXPECT_EQ(data.NNtPoints(), 4); // an effort of 0 is usable, a missing one is not
    EXPECT_FALSE(data.ToggledIn(5));
    data.Toggle(2);
    project_file::Project project = ProjectOf(data);
    const clsVeltData again = DataOf(project_file::WriteProject(project, {}));
    EXPECT_TRUE(again.ToggledIn(2));
}

TEST_F(ProjectData, ADataSetWithoutColumnsIsOpenedAndSaved)
{
    const std::string file = OverRange(1, 3);
    EXPECT_EQ(file.size(), 157U);
    EXPECT_EQ(DataOf(file).TimeInts(), 3);
    EXPECT_EQ(SavedAgain(file), file);
}

TEST_F(ProjectData, ARangeOf201PeriodsIsOpenedAndSavedAndHas200Rows)
{
    const std::string file = ProjectHeader("", 0, 200) + EffortColumns({1, 2, 3}) + Counts(0, 0);
    const clsVeltData data = DataOf(file);
    EXPECT_EQ(data.TimeInts(), 201);
    EXPECT_EQ(data.NDPoints(), 202);
    EXPECT_EQ(data.ShownRows(), 200);
    EXPECT_EQ(SavedAgain(file), file);
}

TEST_F(ProjectData, ARangeBelowOnePeriodOpensAsATableWithoutRows)
{
    for (const auto& [first, last, periods] :
         {std::tuple{1974, 1973, 0}, {10, 1, -8}, {0, -2147483647, -2147483646}}) {
        const std::string file = OverRange(first, last);
        const clsVeltData data = DataOf(file);
        EXPECT_EQ(data.TimeInts(), periods);
        EXPECT_EQ(data.ShownRows(), 0);
        EXPECT_EQ(SavedAgain(file), file);
    }
}

// What must fit 32 bits: the difference, the periods, and one more for the end of a trajectory.
TEST_F(ProjectData, ARangeThatOverflows32BitsFailsTheOpen)
{
    constexpr std::int64_t kMost = 2147483647;
    constexpr std::int64_t kLeast = -kMost - 1;
    for (const auto& [first, last] : {std::pair{kLeast, kMost},
                                      {-1 + 0 * kMost, kMost},
                                      {0 * kMost, kMost},
                                      {1 + 0 * kMost, kMost},
                                      {1 + 0 * kMost, kLeast}}) {
        const auto refusal = Refusal(OverRange(first, last));
        ASSERT_TRUE(refusal) << first << " " << last;
        EXPECT_EQ(refusal->first, 6U);
        EXPECT_EQ(refusal->second, "Overflow: the time periods " + std::to_string(first) + " to " +
                                       std::to_string(last) + " are too many.");
    }
    EXPECT_EQ(DataOf(OverRange(2, kMost)).NDPoints(), kMost);
}

TEST_F(ProjectData, AFailureBuildsNoDataSet)
{
    const auto refusal = Refusal("");
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->first, 0x80040000U + 2253U);
    EXPECT_EQ(refusal->second, "ReadObj Failure.\nByte 1 of the file: \"header\" points outside the file.");
}

// Catch in weight over a mean weight of 0 is the catch in numbers.
TEST_F(ProjectData, AConversionThatFailsIsReportedAndTheColumnsAreAsStored)
{
    const std::string file =
        ProjectBytes(AbsentColumns(2) + PresentColumn("0.00", {2, 0, 2}) + PresentColumn("0", {1, kNaN, 1}) +
                     PresentColumn("0", {8, 8, 8}) + AbsentColumns(10));
    const OpenedProject opened = Open(file);
    ASSERT_TRUE(opened.failedConversion);
    EXPECT_EQ(opened.failedConversion->number, 11U);
    EXPECT_NE(opened.failedConversion->description.find("of row 2 cannot be derived"), std::string::npos);
    EXPECT_FALSE(opened.data.ColPresent(columns::CatchNums));
    EXPECT_TRUE(opened.data.ColPresent(columns::MeanWt));
    EXPECT_EQ(opened.data.MeanWt(3), 2.0F);
    EXPECT_FALSE(opened.data.IsDirty());
    EXPECT_EQ(SavedAgain(file), file);
}

TEST_F(ProjectData, AConversionThatSucceedsIsNotReported)
{
    const OpenedProject opened =
        Open(ProjectBytes(AbsentColumns(2) + PresentColumn("0.00", {2, 4, 2}) +
                          PresentColumn("0", {1, 1, 1}) + PresentColumn("0", {8, 8, 8}) + AbsentColumns(10)));
    EXPECT_FALSE(opened.failedConversion);
    EXPECT_EQ(opened.data.CatchNums(2), 2.0F); // 8 / 4
    EXPECT_FALSE(opened.data.IsDirty());
}

TEST_F(ProjectData, ANumberThatIsNoneIsKeptAndSuchAnEffortIsNotIncluded)
{
    const std::string file = ProjectBytes(EffortColumns({1, kNaN, kInfinity, -kInfinity, 5}));
    const clsVeltData data = DataOf(file);
    EXPECT_TRUE(data.Included(1));
    for (const int row : {2, 3, 4})
        EXPECT_FALSE(data.Included(row)) << row;
    EXPECT_EQ(data.NNtPoints(), 2);
    EXPECT_EQ(SavedAgain(file), file);
}

// ---- titles and names -------------------------------------------------------------------------------------

TEST_F(ProjectData, EqualTitlesOfScenariosAreNumbered)
{
    EXPECT_EQ(TitlesOf({"Quota", "Quota", "Quota", "quota"}),
              (Names{"Quota", "Quota (2)", "Quota (3)", "quota"}));
    EXPECT_EQ(TitlesOf({"Quota", "Quota (2)", "Quota"}), (Names{"Quota", "Quota (2)", "Quota (3)"}));
    EXPECT_EQ(TitlesOf({"Quota", "Quota", "Quota (2)"}), (Names{"Quota", "Quota (2)", "Quota (2) (2)"}));
    EXPECT_EQ(TitlesOf({" Quota", "Quota"}), (Names{"Quota", "Quota (2)"})); // titles are trimmed
}

TEST_F(ProjectData, ANumberedTitleIsOfAtMost30Characters)
{
    const std::string thirty = "A title of the whole width 123";
    EXPECT_EQ(TitlesOf({thirty, thirty}), (Names{thirty, "A title of the whole width (2)"}));
    const std::string blankAtCut = "A title of the whole widt  123"; // a blank would stand before the mark's
    EXPECT_EQ(TitlesOf({blankAtCut, blankAtCut}), (Names{blankAtCut, "A title of the whole widt (2)"}));
}

TEST_F(ProjectData, EqualBlankTitlesAreNumbersAlone)
{
    EXPECT_EQ(TitlesOf({"", "", ""}), (Names{"", "(2)", "(3)"}));
}

TEST_F(ProjectData, NumberingIsAChangeAndWhatIsSavedThenOpensWithoutOne)
{
    const std::string file = ProjectBytes(AbsentColumns(15), {ScenarioTitled("A"), ScenarioTitled("A")});
    EXPECT_TRUE(DataOf(file).IsDirty());
    EXPECT_FALSE(DataOf(SavedAgain(file)).IsDirty());
    const std::string fits = ProjectBytes(AbsentColumns(15), {}, {FitNamed(""), FitNamed("")});
    EXPECT_TRUE(DataOf(fits).IsDirty());
    EXPECT_FALSE(DataOf(SavedAgain(fits)).IsDirty());
}

TEST_F(ProjectData, EqualNamesOfFitsAreNumberedWithin50Characters)
{
    const std::string fifty(50, 'f');
    EXPECT_EQ(NamesOf({fifty, fifty}), (Names{fifty, std::string(46, 'f') + " (2)"}));
    EXPECT_EQ(NamesOf({"Fox", "Fox"}), (Names{Text("Fox", 50), Text("Fox (2)", 50)}));
}

TEST_F(ProjectData, NamesOfFitsThatDifferByTheBlanksBeforeThemAreDifferent)
{
    EXPECT_EQ(NamesOf({"Fox", " Fox", " Fox"}),
              (Names{Text("Fox", 50), Text(" Fox", 50), Text(" Fox (2)", 50)}));
}

// Used to look at every number from 2 on for each of them, and at every name for each number: minutes.
TEST_F(ProjectData, ThousandsOfEqualNamesAreNoWork)
{
    const Names names = NamesOf(Names(8000, "Fox"));
    EXPECT_EQ(names.back(), Text("Fox (8000)", 50));
}

// ---- fits and scenarios -----------------------------------------------------------------------------------

TEST_F(ProjectData, AFitKeepsWhatItsIndexRecordSays)
{
    const std::string file =
        ProjectBytes(AbsentColumns(15), {}, {FitIndex("Fox", 4, 2, 246, 246, -1)}); // 157 + 88 = 245
    const clsVeltData data = DataOf(file);
    const clsFit& fit = data.LoggedFit(1);
    EXPECT_EQ(fit.FitName(), Text("Fox", 50));
    EXPECT_EQ(fit.MethType(), 4);
    EXPECT_EQ(fit.FitOp(), 2);
    EXPECT_EQ(fit.TheDate(), 36526.0);
    EXPECT_EQ(fit.TheTime(), 0.75);
    EXPECT_EQ(fit.Start(), 246);
    EXPECT_EQ(fit.TheEnd(), 246);
    EXPECT_TRUE(fit.Deleted());
    EXPECT_EQ(SavedAgain(file), file);
}

TEST_F(ProjectData, DatesThatAreImpossibleAreKept)
{
    const std::string fit = I16(0) + I32(4) + I32(1) + Text("Fox", 50) + Date(1e300) +
                            Date(std::numeric_limits<double>::quiet_NaN()) + I32(246) + I32(246);
    const std::string file = ProjectBytes(AbsentColumns(15), {}, {fit});
    EXPECT_EQ(SavedAgain(file), file);
}

TEST_F(ProjectData, ElementsOfAVectorKeepTheirWidthAndAllOthersBecomeWholeNumbers)
{
    const std::string rest = Times(195, Tagged16(0));
    const auto file = [&](const std::string& six) {
        return ProjectHeader("", 1, 3, 0, 1) + AbsentColumns(15) + Counts(0, 1) +
               Scenario("A", six + rest, 2);
    };
    // Rounded to whole, ties to even; an empty one is a 16-bit 0, as one that was never set.
    EXPECT_EQ(SavedAgain(file(Tagged16(-7) + Tagged32(-7) + Empty() + TaggedFloat(2.5F) + TaggedDouble(3.5) +
                              Tagged32(70000))),
              file(Tagged16(-7) + Tagged32(-7) + Tagged16(0) + Tagged32(2) + Tagged32(4) + Tagged32(70000)));
}

TEST_F(ProjectData, AValueOfAScenarioThatDoesNotFit32BitsFailsTheOpen)
{
    for (const double value : {2147483648.0, -1e300, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        const std::string vector = Times(29, Tagged16(0)) + TaggedDouble(value) + Times(171, Tagged16(0));
        const auto refusal = Refusal(ProjectBytes(AbsentColumns(15), {Scenario("A\tB", vector, 0)}));
        ASSERT_TRUE(refusal) << value;
        EXPECT_EQ(refusal->first, 6U);
        EXPECT_EQ(refusal->second, "Overflow: value 30 of the scenario \"A\\tB\" does not fit 32 bits.");
    }
}

// ---- saving -----------------------------------------------------------------------------------------------

TEST_F(ProjectData, SystemColumnsAndTogglesAreKeptOnlyInTheDataOfAFit)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    data.ColPresent(columns::PopNums, true);
    data.PopNums(1, 0.5F);
    data.Toggle(2);

    const project_file::DataRecord own = DataRecordOf(data, false);
    EXPECT_TRUE(own.columns[3]);
    EXPECT_FALSE(own.columns[14]);
    EXPECT_FALSE(own.ToggledIn);

    const project_file::DataRecord ofFit = DataRecordOf(data, true);
    ASSERT_TRUE(ofFit.columns[14]);
    EXPECT_EQ(ofFit.columns[14]->values(1), 0.5F);
    ASSERT_TRUE(ofFit.ToggledIn);
    EXPECT_TRUE((*ofFit.ToggledIn)(1));
    EXPECT_FALSE((*ofFit.ToggledIn)(2));
}

TEST_F(ProjectData, ADescriptionIsCutOnSaveAndComesBackCut)
{
    clsVeltData data = DataOf(OverRange(1, 3));
    data.DSDesc("A description that goes on behind its 40 characters \u0141");
    project_file::Project project = ProjectOf(data);
    EXPECT_EQ(DataOf(project_file::WriteProject(project, {})).DSDesc(),
              "A description that goes on behind its 40");
    data.DSDesc("\u0141osos 1986");
    project = ProjectOf(data);
    EXPECT_EQ(DataOf(project_file::WriteProject(project, {})).DSDesc(), "?osos 1986");
}

TEST_F(ProjectData, AFormatOf20CharactersIsKeptWhole)
{
    const std::string file =
        ProjectBytes(AbsentColumns(8) + PresentColumn("#,##0.00000000000000", {1}) + AbsentColumns(6));
    EXPECT_EQ(DataOf(file).ColFormat(columns::RecruitIndex), "#,##0.00000000000000");
    EXPECT_EQ(SavedAgain(file), file);
}

TEST_F(ProjectData, ANameThatTheCodePageLacksIsRefusedAtEntry)
{
    EXPECT_FALSE(RefusalOfName("S\u00F8r 1986 \u2013 \u20AC"));
    EXPECT_FALSE(RefusalOfName(""));
    EXPECT_TRUE(RefusalOfName("\u0141osos"));
}

// ---- samples ----------------------------------------------------------------------------------------------

TEST_F(ProjectData, SampleProjectsAreSavedAsTheyWereRead)
{
    for (const char* name : {"minimal", "two_fits", "one_bare_fit"}) {
        const std::string file = Contents("projects/" + std::string(name) + ".vl3");
        ASSERT_FALSE(file.empty()) << name;
        EXPECT_TRUE(SavedAgain(file) == file) << name;
    }
}

// The third scenario, from position 4314 on, has empty elements, a float and a double: they become whole
// numbers of the width of a new element and of a set one. All else stays.
TEST_F(ProjectData, TheSampleOfScenariosIsSavedWithWholeNumbers)
{
    const std::string file = Contents("projects/three_scenarios.vl3");
    const std::string inFile = Times(25, Tagged16(0)) + Empty() + Tagged16(800) + Tagged32(70000) +
                               TaggedFloat(812.25F) + TaggedDouble(0.1) + Times(120, Tagged16(0)) +
                               Times(51, Empty());
    const std::string saved = Times(25, Tagged16(0)) + Tagged16(0) + Tagged16(800) + Tagged32(70000) +
                              Tagged32(812) + Tagged32(0) + Times(120, Tagged16(0)) + Times(51, Tagged16(0));
    const std::size_t at = 4313 + 30;
    ASSERT_EQ(file.substr(at), inFile + I32(2));
    EXPECT_TRUE(SavedAgain(file) == file.substr(0, at) + saved + I32(2));
}

TEST_F(ProjectData, TheBodiesOfTheSamplesAreWrittenAsTheyWereRead)
{
    int bodies = 0;
    for (const char* name : {"two_fits", "one_bare_fit"}) {
        const std::string file = Contents("projects/" + std::string(name) + ".vl3");
        for (const project_file::FitIndexRecord& fit : project_file::ReadProject(file).fits) {
            const std::string_view body = project_file::BodyOf(fit, file);
            EXPECT_TRUE(project_file::WriteBody(project_file::ReadBody(body, fit.MethType), fit.MethType) ==
                        body)
                << fit.FitName;
            ++bodies;
        }
    }
    EXPECT_EQ(bodies, 3);
}

TEST_F(ProjectData, TheSampleOfTwoFitsSaysWhatItsFitsAre)
{
    const std::string file = Contents("projects/two_fits.vl3");
    const clsVeltData data = DataOf(file);
    EXPECT_EQ(data.DSDesc(), "Scallop dredge fishery, south banks");
    ASSERT_EQ(data.NumLoggedFits(), 2);
    EXPECT_EQ(data.LoggedFit(2).FitName(), Text("Recruitment index, season 3 out", 50));
    const project_file::Project project = ProjectOf(data);
    const auto body = project_file::ReadBody(project_file::BodyOf(project.fits[1], file), 2);
    EXPECT_TRUE((*body.data.ToggledIn)(2));
    EXPECT_FALSE((*body.data.ToggledIn)(3));
    EXPECT_EQ(body.model.NumBootStraps, 500);
    EXPECT_TRUE(body.bootStraps[1000 + 499]); // of parameter 2
    EXPECT_FALSE(body.bootStraps[1000 + 500]);
}
