// SPDX-License-Identifier: GPL-3.0-or-later
// The tables of a job to the letter.
#include "batch/WriteCsv.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{
std::string BytesOf(const std::vector<ResultFile>& files, const std::string& name)
{
    for (const ResultFile& file : files)
        if (file.name == name)
            return file.bytes;
    return "no " + name;
}

/// A grid of two by two; the value at (2, 4) lies on the plateau.
ContourRecord Contours()
{
    ContourRecord contours;
    contours.surface.xName = "K";
    contours.surface.yName = "r";
    contours.surface.x = {1.0, 2.0};
    contours.surface.y = {3.0, 4.0};
    contours.surface.z = {{5.0, 7.0}, {6.5, 9.0}};
    contours.surface.zMin = 5.0;
    contours.surface.zMax = 7.0;
    contours.surface.plateau = 9.0;
    return contours;
}
} // namespace

TEST(WriteCsv, TheHighestValidPointOfASurfaceHasItsValueAndOneOnThePlateauAnEmptyCell)
{
    EXPECT_EQ(BytesOf(CsvFilesOf(Contours()), "contours.csv"), "K,r,Objective\n"
                                                               "1,3,5\n"
                                                               "1,4,7\n"
                                                               "2,3,6.5\n"
                                                               "2,4,\n");
}

TEST(WriteCsv, ThePathNamesEachMarkAndEndsEachStepWhereItLeads)
{
    ContourRecord contours = Contours();
    contours.marks = {{ContourMark::Start1, 1.0, 3.0},
                      {ContourMark::Start2, 1.5, 3.5},
                      {ContourMark::Start3, 2.0, 4.0},
                      {ContourMark::Final, 1.25, 3.25}};
    contours.path = {{1.0, 3.0, 1.0625, 3.125}, {1.0625, 3.125, 1.25, 3.25}};

    EXPECT_EQ(BytesOf(CsvFilesOf(contours), "contour_path.csv"), "kind,K,r\n"
                                                                 "start1,1,3\n"
                                                                 "start2,1.5,3.5\n"
                                                                 "start3,2,4\n"
                                                                 "final,1.25,3.25\n"
                                                                 "step,1.0625,3.125\n"
                                                                 "step,1.25,3.25\n");
}

TEST(WriteCsv, ASeriesHasEachValueUnderItsHeadingAndEmptyCellsForThoseThatDoNotExist)
{
    FitTables tables;
    tables.series.push_back({1970, true, false, 1.5F, 2.5F, 3.5F, 4.5F, 5.5F, 6.5F, 7.5F, 8.5F});
    tables.series.push_back({1971, false, true, {}, {}, {}, {}, {}, {}, {}, {}});
    tables.timeAfter = 1972;
    tables.ntAfter = 9.5F;

    EXPECT_EQ(BytesOf(CsvFilesOf(tables), "series.csv"),
              "Time,Included,ToggledIn,Effort,ObsCPUE,ExpCPUE,ObsCatch,ExpCatch,Nt,FittedVec,ResidVec\n"
              "1970,1,0,1.5,2.5,3.5,4.5,5.5,6.5,7.5,8.5\n"
              "1971,0,1,,,,,,,,\n"
              "1972,,,,,,,,9.5,,\n");
}

TEST(WriteCsv, EstimatesEndWithTheFiguresOfTheFitAndAValueThatIsNotFiniteIsAnEmptyCell)
{
    FitTables tables;
    tables.estimates = {{"K", 1000.0}, {"Q", 0.25}};
    tables.details.var = 0.5F;
    tables.details.objective = 12.0;
    tables.rSqr = std::numeric_limits<float>::quiet_NaN();

    EXPECT_EQ(BytesOf(CsvFilesOf(tables), "estimates.csv"),
              "parameter,value\nK,1000\nQ,0.25\nVar,0.5\nRSqr,\nObjective,12\n");
}

TEST(WriteCsv, LimitsAndReplicatesAreTablesOfTheirOwnAndOnlyWithBootstraps)
{
    FitTables tables;
    EXPECT_EQ(CsvFilesOf(tables).size(), 2U);

    tables.intervals = {{"K", 1.5F, 2.5F}, {"Q", 0.125F, 0.25F}};
    tables.replicates = {{"K", {1.5F, 2.5F}}, {"Q", {0.125F, 0.25F}}};
    const std::vector<ResultFile> files = CsvFilesOf(tables);

    EXPECT_EQ(BytesOf(files, "intervals.csv"), "parameter,low,high\nK,1.5,2.5\nQ,0.125,0.25\n");
    EXPECT_EQ(BytesOf(files, "replicates.csv"), "replicate,K,Q\n1,1.5,0.125\n2,2.5,0.25\n");
}
