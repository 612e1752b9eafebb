// SPDX-License-Identifier: GPL-3.0-or-later
#include "fit/ProjectFile.h"

#include "data/ProjectData.h"
#include "files/ReadWholeFile.h"
#include "fit/clsMethManager.h"
#include "support/SimulatedStock.h"
#include "support/TableBuilder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

namespace
{
namespace fs = std::filesystem;

/// A folder of the test's own.
class Folder
{
public:
    Folder()
    {
        std::string name = (fs::temp_directory_path() / "velt-test-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~Folder() { fs::remove_all(m_path); }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::string operator/(const char* name) const { return (m_path / name).string(); }

private:
    fs::path m_path;
};

std::string BytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The open project with its manager, as the desktop has them.
struct Desk : Bench {
    Desk() : data(run), file(data), manager(run)
    {
        manager.Create(data);
        manager.LogsInto(file);
    }
    explicit Desk(const std::string& path) : Desk() { file.Open(path); }
    bool Fit(std::int32_t model, std::int32_t fitOp)
    {
        user.ChoosesFit(run.globals.ModelTitles(model), fitOp);
        manager.FitNewModel(false);
        return manager.MethDefined();
    }
    void SaveAs(const std::string& path)
    {
        data.DSFName(path);
        file.Save();
    }

    clsVeltData data;
    ProjectFile file;
    clsMethManager manager;
};

/// Two stocks side by side that all six models can be fitted to, other ones for each seed.
TableBuilder AnyStock(std::mt19937& random)
{
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    SimulatedStock stock{
        .n1 = between(5000, 50000), .q = between(0.001, 0.003), .recruits = between(500, 3000)};
    for (double& effort : stock.effort)
        effort *= between(0.7, 1.3);
    const std::vector<double> numbers = stock.Catches(between(0.02, 0.15));
    std::vector<double> weights;
    std::vector<double> variances;
    double biomass = 10000.0;
    for (const double effort : stock.effort) {
        const double taken = std::min(0.8 * biomass, 0.0015 * effort * biomass * between(0.9, 1.1));
        weights.push_back(taken);
        variances.push_back(between(0.5, 2.0));
        biomass += 0.5 * biomass * (1.0 - biomass / 10000.0) - taken;
    }
    return TableBuilder()
        .Effort(stock.effort)
        .Catch(numbers)
        .Recruits(stock.index)
        .Yield(weights)
        .ToggleOut(1 + static_cast<int>(random() % 12));
}

/// All that a fit shows, and its replicates.
struct Shown {
    explicit Shown(Desk& desk)
    {
        const IMethod& method = *desk.manager.Method();
        for (int quantity = 0; quantity < model_table::kQuantities; ++quantity)
            results.push_back(desk.manager.Result(static_cast<model_table::Quantity>(quantity)));
        results.push_back(desk.manager.RSqr());
        results.push_back(desk.manager.NaturalMortality());
        results.push_back(desk.manager.InitialProportion());
        results.push_back(desk.manager.Z());
        for (int i = 1; i <= desk.data.NDPoints(); ++i)
            results.push_back(method.Nt(static_cast<std::int16_t>(i)));
        for (int i = 1; i <= desk.data.NAPoints(); ++i)
            results.push_back(method.CatchVector(static_cast<std::int16_t>(i)));
        remarks = desk.manager.Remarks();
        const FitDetails details = method.Details();
        results.insert(results.end(), details.fitted.begin(), details.fitted.end());
        results.insert(results.end(), details.resid.begin(), details.resid.end());
        for (int column = columns::kFirst; column <= columns::kLast; ++column)
            if (desk.data.ColPresent(column))
                for (int row = 1; row <= desk.data.ShownRows(); ++row)
                    results.push_back(desk.data.DB(column, row));
        for (const auto& graph : desk.window.graphs)
            graphs.push_back(graph->Title() + "\n" + graph->CopiedText());
        toggles = desk.data.ToggledIn();
    }

    std::vector<float> results;
    std::vector<std::string> graphs;
    std::vector<Remark> remarks;
    clsVeltData::Flags toggles;
};

/// Replicates in the order drawn and sorted.
std::vector<float> Replicates(const Desk& desk)
{
    std::vector<float> all;
    for (int parameter = 1; parameter <= bs_param::kCount; ++parameter)
        for (int n = 1; n <= 1000; ++n) {
            all.push_back(desk.manager.Method()->BootStrap(parameter, n));
            all.push_back(desk.manager.Method()->SortedBootStrap(parameter, n));
        }
    return all;
}

/// How many refits had to be drawn again is not kept: the file has no place for it.
std::string Codes(const std::vector<Remark>& remarks)
{
    std::string codes;
    for (const Remark& remark : remarks)
        codes += remark.code == "ReplicatesFailed" ? "" : remark.code + " ";
    return codes;
}
} // namespace

namespace
{
/// A project on disk with one fit, and that fit still on the desk.
struct LoggedDesk : Desk {
    LoggedDesk()
    {
        std::mt19937 random(1);
        data = AnyStock(random).Build(run);
        data.DSFName(folder / "stock.vl3");
        EXPECT_TRUE(Fit(3, fit_op::kLeastSquares));
        EXPECT_TRUE(manager.LogCurrentFit("first"));
    }
    Folder folder;
};
} // namespace

TEST(WholeCycle, AFitComesBackFromTheDiskToTheBit)
{
    const Folder folder;
    const std::string path = folder / "stock.vl3";
    int fits = 0;
    for (std::uint32_t seed = 1; seed <= 4; ++seed) {
        std::mt19937 random(seed);
        const TableBuilder table = AnyStock(random);
        for (std::int32_t model = 1; model <= models::kCount; ++model) {
            for (std::int32_t fitOp = fit_op::kLeastSquares; fitOp <= fit_op::kGamma; ++fitOp) {
                SCOPED_TRACE("seed " + std::to_string(seed) + ", model " + std::to_string(model) +
                             ", error model " + std::to_string(fitOp));
                Desk first;
                first.data = table.Build(first.run);
                if (!first.Fit(model, fitOp))
                    continue;
                const Shown fit(first); // replicates leave other catches behind
                if ((seed + static_cast<std::uint32_t>(model)) % 2 == 0) {
                    first.run.globals.settings.NumBootStraps = 12;
                    first.manager.GenerateBootStraps();
                    if (first.manager.IsBSDone())
                        first.manager.DisplayBootStrapHistograms();
                }
                first.data.DSFName(path);
                ASSERT_TRUE(first.manager.LogCurrentFit("a fit"));
                EXPECT_FALSE(first.data.IsDirty());

                Desk second(path);
                ASSERT_EQ(second.data.NumLoggedFits(), 1);
                second.manager.ReLoadFit(second.data.LoggedFit(1));
                const Shown reloaded(second);
                EXPECT_EQ(fit.results, reloaded.results);
                EXPECT_EQ(fit.toggles, reloaded.toggles);
                EXPECT_EQ(Shown(first).graphs, reloaded.graphs);
                EXPECT_EQ(Codes(Shown(first).remarks), Codes(reloaded.remarks));
                EXPECT_EQ(Replicates(first), Replicates(second));
                EXPECT_FALSE(second.manager.FitLogged());
                EXPECT_FALSE(second.data.IsDirty());
                EXPECT_EQ(second.manager.NumBootStraps(), first.manager.NumBootStraps());
                ++fits;
            }
        }
    }
    EXPECT_GE(fits, 40); // most of the 72 stocks can be fitted
}

TEST(WholeCycle, AReloadedFitDrawsTheReplicatesThatTheFitItselfWouldHaveDrawn)
{
    const Folder folder;
    const std::string path = folder / "stock.vl3";
    std::mt19937 random(2);
    const TableBuilder table = AnyStock(random);
    for (const std::int32_t model : {1, 3, 5}) {
        for (const std::int32_t fitOp : {fit_op::kLeastSquares, fit_op::kLog}) {
            SCOPED_TRACE("model " + std::to_string(model) + ", error model " + std::to_string(fitOp));
            Desk first;
            first.data = table.Build(first.run);
            if (!first.Fit(model, fitOp))
                continue;
            first.data.DSFName(path);
            ASSERT_TRUE(first.manager.LogCurrentFit("a fit"));
            Desk second(path);
            second.manager.ReLoadFit(second.data.LoggedFit(1));
            for (Desk* desk : {&first, &second}) {
                desk->random = RandomSource(7);
                desk->run.globals.settings.NumBootStraps = 15;
                desk->manager.GenerateBootStraps();
                ASSERT_TRUE(desk->manager.IsBSDone());
            }
            for (int n = 1; n <= 15; ++n)
                for (int parameter = 1; parameter <= bs_param::kCount; ++parameter)
                    EXPECT_EQ(first.manager.Method()->BootStrap(parameter, n),
                              second.manager.Method()->BootStrap(parameter, n));
        }
    }
}

TEST(ProjectFile, AfterADeleteAndASaveTheOtherFitsHaveMovedAndComeBack)
{
    LoggedDesk desk;
    const Folder& folder = desk.folder;
    ASSERT_TRUE(desk.Fit(5, fit_op::kLog));
    ASSERT_TRUE(desk.manager.LogCurrentFit("second"));
    const std::int32_t start = desk.data.LoggedFit(2).Start();
    const float k = desk.manager.K();
    const auto size = BytesOf(folder / "stock.vl3").size();
    desk.data.DeleteLoggedFit("first");
    desk.file.Save();
    EXPECT_LT(desk.data.LoggedFit(1).Start(), start);
    EXPECT_LT(BytesOf(folder / "stock.vl3").size(), size - 20000);
    Desk again(folder / "stock.vl3");
    ASSERT_EQ(again.data.NumLoggedFits(), 1);
    again.manager.ReLoadFit(again.data.LoggedFit(1));
    EXPECT_EQ(again.manager.K(), k);
}

TEST(ProjectFile, ANameOf51CharactersIsStoredCutAndASecondOfTheSameFirst50IsRefused)
{
    const Folder folder;
    std::mt19937 random(1);
    Desk desk;
    desk.data = AnyStock(random).Build(desk.run);
    desk.data.DSFName(folder / "stock.vl3");
    ASSERT_TRUE(desk.Fit(3, fit_op::kLeastSquares));
    const std::string fifty(50, 'n');
    ASSERT_TRUE(desk.manager.LogCurrentFit(fifty + "1"));
    EXPECT_EQ(desk.data.LoggedFit(1).FitName(), fifty);
    EXPECT_FALSE(desk.manager.LogCurrentFit(fifty + "2")); // asked for another one, and none is given
    EXPECT_TRUE(desk.user.Saw("Fit Name Exists already, please type a different name"));
    EXPECT_EQ(desk.data.NumLoggedFits(), 1);
    EXPECT_TRUE(desk.data.LogOrReload()); // until the next save; deliberate
    desk.file.Save();
    EXPECT_FALSE(desk.data.LogOrReload());
}

TEST(ProjectFile, AProjectWithoutFitsIsTheDataAndTheScenariosAlone)
{
    const Folder folder;
    Desk desk;
    desk.data = TableBuilder().Effort({1, 2, 3}).Build(desk.run);
    desk.SaveAs(folder / "plain.vl3");
    // 119 bytes of header, 15 flags, one column of 820 bytes, two counts.
    EXPECT_EQ(BytesOf(folder / "plain.vl3").size(), 119U + 15U * 2U + 820U + 8U);
    EXPECT_EQ(BytesOf(folder / "plain.vl3"), BytesOf(desk.file.strTemp().string()));
}

TEST(ProjectFile, ANameWithAnotherEndingLosesItsLastFourCharacters)
{
    EXPECT_EQ(ProjectFile::SavedName("/a/stock.vl2"), "/a/stock.VL3");
    EXPECT_EQ(ProjectFile::SavedName("/a/stock.vl3"), "/a/stock.vl3");
    EXPECT_EQ(ProjectFile::SavedName("/a/stock.Vl3"), "/a/stock.Vl3");
    EXPECT_EQ(ProjectFile::SavedName("/a/stock.data"), "/a/stock..VL3"); // whatever they were; deliberate
    EXPECT_EQ(ProjectFile::SavedName("a"), "a");
}

TEST(ProjectFile, ADamagedBodyFailsTheSaveAndTheOldProjectStands)
{
    LoggedDesk desk;
    const Folder& folder = desk.folder;
    const std::string before = BytesOf(folder / "stock.vl3");
    for (const auto& [start, end] :
         std::vector<std::pair<int, int>>{{0, 10}, {10, 5}, {-5, 10}, {1, 1 << 30}}) {
        clsFit& fit = desk.data.LoggedFit(1);
        const clsFit kept = fit;
        fit.Start(start);
        fit.TheEnd(end);
        desk.data.DSDesc("changed");
        EXPECT_THROW(desk.file.Save(), VeltError);
        EXPECT_TRUE(desk.data.IsDirty());
        EXPECT_EQ(BytesOf(folder / "stock.vl3"), before);
        fit = kept;
    }
    desk.file.Save();
    EXPECT_NE(BytesOf(folder / "stock.vl3"), before);
}

TEST(ProjectFile, FitsThatShareTheirBytesAreNotWrittenApart)
{
    LoggedDesk desk;
    for (int i = 0; i < 20; ++i) { // as a damaged index could have it
        clsFit& fit = desk.data.NewLoggedFit(3, 1, "copy " + std::to_string(i), 1.0);
        fit.Start(desk.data.LoggedFit(1).Start());
        fit.TheEnd(desk.data.LoggedFit(1).TheEnd());
    }
    EXPECT_THROW(desk.file.Save(), RecordError);
}

TEST(ProjectFile, ABodyThatIsDamagedFailsTheReloadWithNoFitAndTheDataAsTheyWere)
{
    LoggedDesk desk;
    desk.manager.Reset();
    const DataTable before = desk.data.Table();
    clsFit& fit = desk.data.LoggedFit(1);
    fit.TheEnd(fit.TheEnd() - 100); // cut off
    EXPECT_THROW(desk.manager.ReLoadFit(fit), VeltError);
    EXPECT_FALSE(desk.manager.MethDefined());
    EXPECT_EQ(desk.data.Table(), before);
    fit.MethType(99);
    EXPECT_THROW(desk.manager.ReLoadFit(fit), VeltError);
    EXPECT_FALSE(desk.manager.MethDefined());
}

TEST(ProjectFile, ReloadingAFitOfOtherDataBringsThoseBackAndMarksTheDataSet)
{
    LoggedDesk desk;
    const float effort = desk.data.Effort(2);
    desk.data.DB(columns::Effort, 2, 999.0F);
    desk.file.Save();
    desk.manager.ReLoadFit(desk.data.LoggedFit(1));
    EXPECT_EQ(desk.data.Effort(2), effort);
    EXPECT_TRUE(desk.data.IsDirty());
}

TEST(ProjectFile, AWorkingCopyThatWasSweptAwayIsReplacedByTheProjectOnDisk)
{
    LoggedDesk desk;
    const Folder& folder = desk.folder;
    fs::remove(desk.file.strTemp());
    desk.data.DSDesc("changed");
    desk.file.Save();
    Desk again(folder / "stock.vl3");
    again.manager.ReLoadFit(again.data.LoggedFit(1));
    EXPECT_EQ(again.manager.K(), desk.manager.K());
}

TEST(ProjectFile, AWorkingCopyThatWasSweptAwayHindersNoSaveUnderAnotherNameEither)
{
    LoggedDesk desk;
    const Folder& folder = desk.folder;
    fs::remove(desk.file.strTemp());
    desk.SaveAs(folder / "other.vl3");
    Desk again(folder / "other.vl3");
    again.manager.ReLoadFit(again.data.LoggedFit(1));
    EXPECT_EQ(again.manager.K(), desk.manager.K());
}

TEST(ProjectFile, AFitThatNoMemoryIsLeftToLogIsTakenOutAgain)
{
    LoggedDesk desk;
    clsVeltData data(desk.run);
    FileCalls poor = SystemFileCalls();
    ProjectFile file(data, poor);
    clsMethManager manager(desk.run);
    manager.Create(data);
    manager.LogsInto(file);
    file.Open(desk.folder / "stock.vl3");
    manager.ReLoadFit(data.LoggedFit(1));
    poor.open = [](const char*, int, mode_t) -> int { throw std::bad_alloc(); };
    EXPECT_THROW(manager.LogCurrentFit("second"), std::bad_alloc);
    EXPECT_EQ(data.NumLoggedFits(), 1);
    EXPECT_FALSE(data.IsDirty());
    EXPECT_FALSE(manager.FitLogged());
}

TEST(ProjectFile, EverySingleCallThatFailsLeavesTheOldProjectOrTheNewOneWholeAndIsRaised)
{
    LoggedDesk desk;
    const Folder& folder = desk.folder;
    const std::string path = folder / "stock.vl3";
    const std::string before = BytesOf(path);

    int calls = 0; // of the system, and the number of the one that fails
    int failing = 0;
    FileCalls sick = SystemFileCalls();
    const auto fails = [&] { return ++calls == failing; };
    sick.open = [&](const char* p, int flags, mode_t mode) {
        return fails() ? (errno = EIO, -1) : SystemFileCalls().open(p, flags, mode);
    };
    sick.write = [&](int file, const void* bytes, std::size_t size) -> ssize_t {
        return fails() ? (errno = ENOSPC, -1) : SystemFileCalls().write(file, bytes, size);
    };
    sick.sync = [&](int file) { return fails() ? (errno = EIO, -1) : SystemFileCalls().sync(file); };
    sick.close = [&](int file) {
        const int done = SystemFileCalls().close(file);
        return fails() ? (errno = EIO, -1) : done;
    };
    sick.rename = [&](const char* from, const char* to) {
        return fails() ? (errno = EACCES, -1) : SystemFileCalls().rename(from, to);
    };
    int survived = 0;
    for (failing = 1; failing < 100; ++failing) {
        clsVeltData data(desk.run);
        ProjectFile file(data, sick);
        calls = -1000;
        file.Open(path);
        data.DSDesc("changed by " + std::to_string(failing));
        calls = 0;
        try {
            file.Save();
            survived = failing;
        } catch (const VeltError& error) {
            EXPECT_EQ(error.number, kProgramErrorBase + 2254U);
            EXPECT_EQ(error.source, "WriteObj");
            EXPECT_TRUE(error.description.starts_with("WriteObj Failure.\n")) << error.description;
            EXPECT_TRUE(data.IsDirty());
            EXPECT_EQ(data.LoggedFit(1).FitName(), desk.data.LoggedFit(1).FitName());
        }
        Desk again(path); // one of the two, whole
        again.manager.ReLoadFit(again.data.LoggedFit(1));
        EXPECT_EQ(again.manager.K(), desk.manager.K());
        if (calls < failing)
            break; // all calls have had their turn
        calls = -1000;
        std::ofstream(path, std::ios::binary) << before;
    }
    EXPECT_GE(survived, 8); // two files: open, write, sync, close, rename, and the folder
    EXPECT_LT(survived, 99);
}
