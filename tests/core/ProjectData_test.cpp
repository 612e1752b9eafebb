// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/ProjectData.h"

#include "support/ByteStrings.h"
#include "support/ScriptedUser.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>

namespace
{
using namespace byte_strings;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

std::string Contents(const std::string& name)
{
    std::ifstream file(VELT_TEST_SAMPLES "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// A project over the periods 1986 to 1990 with these columns, scenarios and fits.
std::string ProjectBytes(const std::string& columns, const std::vector<std::string>& scenarios = {},
                         const std::vector<std::string>& fits = {})
{
    std::string file =
        ProjectHeader("Ling", 1986, 1990) + columns +
        Counts(static_cast<std::int64_t>(fits.size()), static_cast<std::int64_t>(scenarios.size()));
    for (const std::string& record : scenarios)
        file += record;
    for (const std::string& record : fits)
        file += record;
    return file;
}

std::string ScenarioTitled(const std::string& title)
{
    return Scenario(title, Times(201, Tagged16(0)), 0);
}

std::string FitNamed(const std::string& name)
{
    return FitIndex(name, 4, 1, 1, 1);
}

std::string OverRange(std::int64_t minTimeP, std::int64_t maxTimeP)
{
    return ProjectHeader("", minTimeP, maxTimeP) + AbsentColumns(15) + Counts(0, 0);
}

/// Effort of 5, 0 and two periods without one, and a catch per period.
std::string EffortColumns(std::initializer_list<float> effort)
{
    return AbsentColumns(3) + PresentColumn("0", effort) + PresentColumn("0.0", {1, 2, 3, 4, 5}) +
           AbsentColumns(10);
}

class ProjectData : public testing::Test
{
protected:
    OpenedProject Open(const std::string& file) { return ReadProjectData(file, bench.run); }
    clsVeltData DataOf(const std::string& file) { return Open(file).data; }

    /// Number of the failure and what is said behind its first words; nothing when the project opens.
    std::optional<std::pair<std::uint32_t, std::string>> Refusal(const std::string& file)
    {
        try {
            Open(file);
        } catch (const VeltError& error) {
            return std::pair{error.number, error.description};
        }
        return std::nullopt;
    }

    std::vector<std::string> TitlesOf(const std::vector<std::string>& inFile)
    {
        std::vector<std::string> records;
        for (const std::string& title : inFile)
            records.push_back(ScenarioTitled(title));
        const clsVeltData data = DataOf(ProjectBytes(AbsentColumns(15), records));
        std::vector<std::string> titles;
        for (std::int32_t i = 1; i <= data.NumProjScenarios(); ++i)
            titles.push_back(data.ProjScenario(i)->Title());
        return titles;
    }

    std::vector<std::string> NamesOf(const std::vector<std::string>& inFile)
    {
        std::vector<std::string> records;
        for (const std::string& name : inFile)
            records.push_back(FitNamed(name));
        const clsVeltData data = DataOf(ProjectBytes(AbsentColumns(15), {}, records));
        std::vector<std::string> names;
        for (std::int32_t i = 1; i <= data.NumLoggedFits(); ++i)
            names.push_back(data.LoggedFit(i).FitName());
        return names;
    }

    /// Opened and saved again, with the bodies carried over.
    std::string SavedAgain(const std::string& file)
    {
        const clsVeltData data = DataOf(file);
        project_file::Project project = ProjectOf(data);
        std::vector<std::string_view> bodies;
        for (const project_file::FitIndexRecord& fit : project.fits)
            bodies.push_back(project_file::BodyOf(fit, file));
        return project_file::WriteProject(project, bodies);
    }

    /// The data that a fit of `data` would log.
    static project_file::DataRecord OfFit(const clsVeltData& data) { return DataRecordOf(data, true); }

    Bench bench;
};
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

// ---- the data of a fit ------------------------------------------------------------------------------------

TEST_F(ProjectData, ReloadingTheDataOfAFitBringsItsColumnsAndTogglesBack)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    data.ColPresent(columns::PopWt, true);
    data.PopWt(1, 0.5F);
    data.Toggle(2);
    const project_file::DataRecord logged = OfFit(data);

    clsVeltData opened = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    TakeDataOfFit(opened, logged);

    EXPECT_EQ(opened.Table().db, data.Table().db);
    EXPECT_EQ(opened.Table().present, data.Table().present);
    EXPECT_EQ(opened.ToggledIn(), data.ToggledIn());
    EXPECT_FALSE(opened.IsDirty()); // its user columns are those of the project
}

TEST_F(ProjectData, UserColumnsOfAFitThatDifferAreAChange)
{
    const clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    const auto dirties = [&](const std::string& columns) {
        clsVeltData copy = data;
        TakeDataOfFit(copy, OfFit(DataOf(ProjectBytes(columns))));
        return copy.IsDirty();
    };
    EXPECT_FALSE(dirties(EffortColumns({1, 2, 3, 4, 5})));
    EXPECT_TRUE(dirties(EffortColumns({1, 2, 3, 4, 6})));
    EXPECT_TRUE(dirties(AbsentColumns(3) + PresentColumn("0", {1, 2, 3, 4, 5}) + AbsentColumns(11)));
    EXPECT_TRUE(dirties(PresentColumn("0", {1}) + AbsentColumns(2) + PresentColumn("0", {1, 2, 3, 4, 5}) +
                        PresentColumn("0.0", {1, 2, 3, 4, 5}) + AbsentColumns(10)));
    EXPECT_TRUE(dirties(AbsentColumns(3) + PresentColumn("0.00", {1, 2, 3, 4, 5}) +
                        PresentColumn("0.0", {1, 2, 3, 4, 5}) + AbsentColumns(10)));
}

TEST_F(ProjectData, AValueThatIsNoNumberIsEqualToItself)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, kNaN, 3, 4, 5})));
    TakeDataOfFit(data, OfFit(data));
    EXPECT_FALSE(data.IsDirty());
}

// Used to be a change: the format of a new column had no blanks behind it, the one from the file had.
TEST_F(ProjectData, FormatsAreComparedWithoutTheBlanksBehindThem)
{
    clsVeltData data(bench.run);
    data.AddColumn(columns::Effort);
    data.TimeInts(3);
    data.MarkSaved();
    project_file::Body body;
    body.data = OfFit(data);
    body.bootStraps.resize(8000);
    const auto read = project_file::ReadBody(project_file::WriteBody(body, 4), 4);
    TakeDataOfFit(data, read.data);
    EXPECT_FALSE(data.IsDirty());
}

TEST_F(ProjectData, TheRowsInTheFitAreNotCountedAnewAfterAReload) // deliberate: the model counts them
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    project_file::DataRecord logged = OfFit(data);
    (*logged.ToggledIn)(2) = false;
    TakeDataOfFit(data, logged);
    EXPECT_FALSE(data.ToggledIn(2));
    EXPECT_EQ(data.NNtPoints(), 5);
}

TEST_F(ProjectData, TheCountsOfAFitsDataAreTakenAndThoseOfTheHeaderStay)
{
    clsVeltData data = DataOf(ProjectHeader("", 1, 3, 11, 0, 0) + AbsentColumns(15) + Counts(0, 0));
    project_file::DataRecord logged = OfFit(data);
    logged.loggedFits = 2147483647;
    logged.scenarios = -5;
    TakeDataOfFit(data, logged);
    EXPECT_EQ(data.V2KLoggedFits(), 2147483647);
    EXPECT_EQ(data.V2kProjScens(), -5);
    EXPECT_EQ(data.NumLoggedRuns(), 11);
}

TEST_F(ProjectData, AConversionThatFailsOnReloadLeavesTheDataAsTheyWere)
{
    clsVeltData data = DataOf(ProjectBytes(EffortColumns({1, 2, 3, 4, 5})));
    const DataTable before = data.Table();
    project_file::DataRecord logged = OfFit(data);
    logged.columns[2] = project_file::ColumnRecord{"0", project_file::Series(0.0F)}; // mean weight 0
    EXPECT_THROW(TakeDataOfFit(data, logged), VeltError);
    EXPECT_EQ(data.Table(), before);
    EXPECT_FALSE(data.IsDirty());
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

// ---- hostile files ----------------------------------------------------------------------------------------

namespace
{
/// How a file ends: it does not open, it opens but the body of a fit cannot be read, or all can be read.
enum class End { Refused, BodyRefused, Read };

void ExpectSentence(const VeltError& error, const std::string& file)
{
    EXPECT_GT(error.description.size(), 20U) << file;
    EXPECT_LT(error.description.size(), 500U) << file;
    EXPECT_TRUE(error.number == 0x80040000U + 2253U || error.number == 6U) << file;
}

void ExpectSane(const clsVeltData& data, const std::string& file)
{
    EXPECT_EQ(data.NumLoggedFits(), data.V2KLoggedFits()) << file;
    EXPECT_EQ(data.NumProjScenarios(), data.V2kProjScens()) << file;
    EXPECT_EQ(data.NDPoints(), data.TimeInts() + 1) << file;
    for (int row = 1; row <= clsVeltData::kRows; ++row)
        EXPECT_TRUE(data.Included(row) || !data.ToggledIn(row)) << file << " row " << row;
}

/// Reads all of `file`. Any exception but a VeltError goes through and fails the test.
End ReadAll(const std::string& name, const std::string& file, Run& run)
{
    std::optional<OpenedProject> opened;
    try {
        opened = ReadProjectData(file, run);
    } catch (const VeltError& error) {
        ExpectSentence(error, name);
        return End::Refused;
    }
    ExpectSane(opened->data, name);
    for (const auto& fit : ProjectOf(opened->data).fits) {
        try {
            const std::string_view body = project_file::BodyOf(fit, file);
            project_file::ReadBody(body, fit.MethType, static_cast<std::size_t>(fit.Start));
        } catch (const VeltError& error) {
            ExpectSentence(error, name);
            return End::BodyRefused;
        }
    }
    return End::Read;
}

/// As the manifest says it.
std::string Word(End end)
{
    return end == End::Refused ? "refused" : end == End::BodyRefused ? "body refused" : "read";
}
} // namespace

TEST_F(ProjectData, HostileFilesAreRefusedInASentenceOrReadAsSaneData)
{
    int files = 0;
    for (const auto& entry : nlohmann::json::parse(Contents("hostile/manifest.json"))) {
        const auto name = entry.at("file").get<std::string>();
        ASSERT_TRUE(std::filesystem::exists(VELT_TEST_SAMPLES "/hostile/" + name)) << name;
        const End end = ReadAll(name, Contents("hostile/" + name), bench.run);
        EXPECT_EQ(Word(end), entry.at("end").get<std::string>()) << name << ": " << entry.at("what");
        ++files;
    }
    EXPECT_GE(files, 60);
}

TEST_F(ProjectData, AProjectWithAnyByteChangedIsRefusedInASentenceOrReadAsSaneData)
{
    const std::string whole = ProjectBytes(EffortColumns({1, 2, 3}), {ScenarioTitled("A")}, {FitNamed("B")});
    int read = 0;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string file = whole;
            file[at] = static_cast<char>(file[at] ^ change);
            read += ReadAll("byte " + std::to_string(at), file, bench.run) == End::Refused ? 0 : 1;
        }
    EXPECT_GT(read, 3 * 48); // those of the unused bytes of the header at least
}

TEST_F(ProjectData, AProjectCutOffAtAnyByteIsRefusedInASentence)
{
    const std::string whole = ProjectBytes(EffortColumns({1, 2, 3}), {ScenarioTitled("A")}, {FitNamed("B")});
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_EQ(ReadAll("cut at " + std::to_string(size), whole.substr(0, size), bench.run), End::Refused);
}
