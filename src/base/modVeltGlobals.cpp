// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/modVeltGlobals.h"

#include "base/StringTable.h"

#include <cstddef>

namespace modVeltGlobals
{
namespace
{
template <std::size_t N>
void Cache(Array1<std::string, N>& texts, int firstId)
{
    for (std::string& text : texts)
        text = LoadResString(firstId++);
}
} // namespace

bool CacheStrings(Globals& g)
{
    if (g.cached)
        return false;
    Cache(g.GraphTitles, 1801);
    Cache(g.ResidTitles, 1808);
    Cache(g.ModelTitles, 1812);
    Cache(g.FitOpTitles, 1818);
    Cache(g.ParamNames, 1822);
    Cache(g.ColumnFileNames, 1830);
    Cache(g.ColumnDisplayNames, 1845);
    Cache(g.ExcuseTexts, 1860);
    int id = 1865;
    for (std::string* text : {&g.RSqrTitle,
                              &g.CPUETitle,
                              &g.Ready,
                              &g.FitTitle,
                              &g.ModelTitle,
                              &g.DateTitle,
                              &g.FitNameTitle,
                              &g.PopulationTitle,
                              &g.CalculatingBootstraps,
                              &g.SortingBootstraps,
                              &g.CountTitle,
                              &g.GeneratingConfInts,
                              &g.TimeTitle,
                              &g.IncludeTitle,
                              &g.ComputingGammaCatchMatrix,
                              &g.SavingFile,
                              &g.TextExport,
                              &g.DrawingContours,
                              &g.Minimisation,
                              &g.Selected,
                              &g.UnSelected,
                              &g.ZShape,
                              &g.NatMortality,
                              &g.InitProportion,
                              &g.TimeLag,
                              &g.N1,
                              &g.Q,
                              &g.FinalPopulation,
                              &g.Lambda,
                              &g.ReplacementYield,
                              &g.FinalBiomass,
                              &g.K,
                              &g.R,
                              &g.MSY,
                              &g.InitialPopulation,
                              &g.Page,
                              &g.Of})
        *text = LoadResString(id++);
    g.Help = LoadResString(1955);
    g.cached = true;
    return true;
}

} // namespace modVeltGlobals
