// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "models/FitSurface.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

class FuturePeriods;
class clsVeltData;
namespace project_file
{
struct Body;
}

/// Model numbers (`WhichMeth`).
namespace models
{
inline constexpr std::int32_t kNoRecruitment = 1;
inline constexpr std::int32_t kRecruitmentIndex = 2;
inline constexpr std::int32_t kConstantRecruitment = 3;
inline constexpr std::int32_t kFox = 4;
inline constexpr std::int32_t kSchaefer = 5;
inline constexpr std::int32_t kPellaTomlinson = 6;
inline constexpr int kCount = 6;

inline constexpr bool IsProduction(std::int32_t whichMeth)
{
    return whichMeth >= kFox && whichMeth <= kPellaTomlinson;
}
} // namespace models

/// Error model numbers (`FitOp`).
namespace fit_op
{
inline constexpr std::int32_t kLeastSquares = 1;
inline constexpr std::int32_t kLog = 2;
inline constexpr std::int32_t kGamma = 3;
inline constexpr std::int32_t kWeightedLeastSquares = 4;

inline constexpr bool IsLeastSquares(std::int32_t fitOp)
{
    return fitOp == kLeastSquares || fitOp == kWeightedLeastSquares;
}
} // namespace fit_op

/// Why a fit stopped; 1-based into the outcome texts. A new model holds 0, which has no text.
namespace excuse
{
inline constexpr std::int32_t kNone = 0;
inline constexpr std::int32_t kPopulationUnderflow = 2;
inline constexpr std::int32_t kNotConverged = 3;
inline constexpr std::int32_t kNoStart = 4;
} // namespace excuse

/// Bootstrap parameter numbers.
namespace bs_param
{
inline constexpr int kK = 1, kQ = 2, kR = 3, kN1 = 4, kLambda = 5, kVar = 6, kMSY = 7, kRYield = 8;
inline constexpr int kCount = 8;
} // namespace bs_param

/// One named value of a record of estimates.
struct NamedValue {
    std::string name;
    double value = 0.0;
};

/// What lies behind a fit, for tables and pictures outside the report. Vectors hold one entry a period, from
/// period 1 to `NAPoints`.
struct FitDetails {
    std::vector<NamedValue> initEsts; ///< starting estimates: N1 or K, Q and further ones of the model
    double var = 0.0;                 ///< dispersion parameter of the error model
    std::optional<double> objective;  ///< value of the minimised objective; none where nothing is minimised
    bool atBorder = false; ///< the search ended where the stock just survives, or where the objective stops
    /// The lowest objective of a start whose search did not arrive, when that is below `objective`.
    std::optional<double> notArrivedAt;
    std::int32_t evaluations = 0; ///< evaluations that the minimiser used; 0 where nothing is minimised
    std::vector<float> fitted;    ///< fitted value on the scale of the error model
    std::vector<float> resid;     ///< residual on the scale of the error model
    bool fittedExists = true;     ///< the gamma model has no fitted values on its scale
};

/// The one interface through which the fit manager, the result windows and the batch tool see a model.
/// Periods count from 1. A property is two overloads of one name.
class IMethod
{
public:
    virtual ~IMethod() = default;

    /// Estimate `parameter` (bs_param) of replicate `n`, in the order drawn; 0 when there is none.
    virtual float BootStrap(std::int32_t parameter, std::int32_t n) const = 0;
    /// The same in ascending order of the parameter.
    virtual float SortedBootStrap(std::int32_t parameter, std::int32_t n) const = 0;
    virtual bool BSFilled(int parameter) const = 0; ///< whether bootstraps fill this parameter

    virtual std::int32_t Excuse() const = 0;
    virtual bool IsBSDone() const = 0;
    virtual bool MethDefined() const = 0;
    virtual std::string MethTitle() const = 0;
    virtual float Nt(std::int16_t i) const = 0; ///< population at the start of period i, last trajectory
    virtual double Q() const = 0;
    virtual float RSqr() const = 0;
    virtual bool UsingNos() const = 0; ///< catches are numbers (models 1 to 3), not weights

    virtual float CatchRef(std::int16_t i) const = 0;
    virtual void CatchRef(std::int16_t i, float value) = 0;
    virtual float CatchVector(std::int16_t i) const = 0;
    virtual void CatchVector(std::int16_t i, float value) = 0;
    virtual bool DIYTCatch() const = 0; ///< beyond the data, total catch comes from effort
    virtual void DIYTCatch(bool on) = 0;
    /// Runs the trajectory on the final estimates and gives the report values, in the order of the model:
    /// 1: N1, Q, final population. 2: N1, Q, Lambda, final population. 3: K, Q, replacement yield, final
    /// population. 4 to 6: K, Q, R, MSY, replacement yield, final biomass.
    virtual std::vector<double> FinalEsts() = 0;
    virtual std::int32_t FitOp() const = 0;
    virtual void FitOp(std::int32_t value) = 0;
    virtual float InitDep() const = 0;
    virtual void InitDep(float value) = 0;
    virtual std::int16_t LAG() const = 0;
    virtual void LAG(std::int16_t value) = 0;
    virtual float Mort() const = 0;
    virtual void Mort(float value) = 0;
    virtual std::int32_t NumBootStraps() const = 0;
    virtual void NumBootStraps(std::int32_t value) = 0;
    virtual float ObsTCatchRef(std::int16_t i) const = 0;
    virtual void ObsTCatchRef(std::int16_t i, float value) = 0;
    virtual float ObsCatchRef(std::int16_t i) const = 0;
    virtual void ObsCatchRef(std::int16_t i, float value) = 0;
    virtual bool PlotEvaluations() const = 0;
    virtual void PlotEvaluations(bool on) = 0;
    virtual bool SetStartingEsts() const = 0;
    virtual void SetStartingEsts(bool on) = 0;
    virtual std::int32_t WhichMeth() const = 0;
    /// Takes effect only while the number is 4, 5 or 6: a depletion model keeps the number of its class.
    virtual void WhichMeth(std::int32_t value) = 0;
    virtual float Z() const = 0;
    virtual void Z(float value) = 0;

    virtual void CalcThetaVec() = 0;
    virtual void CalcDiscCatches() = 0;
    virtual void SetColumnRefs() = 0;
    virtual void CalcPopTraj() = 0;
    virtual void CalcMinPop() = 0;
    virtual void SetRSquared() = 0;
    virtual bool CalcInitEstimates() = 0; ///< false: no usable start, Excuse says why
    virtual void CalcCPUEVectors() = 0;
    /// Fits by FitOp; always true. \throws VeltError 2261 with the convergence text when the search failed.
    virtual bool CalcFinalEstimates() = 0;
    virtual void CalcBootStraps() = 0;
    virtual bool SetContourRanges() = 0;  ///< false: no contours in this model, or Cancel
    virtual bool InputStartingEsts() = 0; ///< false: Cancel
    virtual bool BuildModelGraphs() = 0;
    virtual bool PlotInitContours() = 0; ///< false: there is no range to draw
    virtual void CalcBootStrapHistos(float low, float high) = 0;
    virtual void CopyFinalToWorkEsts() = 0;
    virtual void CopyQANDFinalToWorkEsts() = 0;
    virtual void CopyBStrapsToWorkEsts(std::int16_t n) = 0;

    /// The fit with all that it takes to show it again: the model, the data set as it stands, the replicates.
    virtual project_file::Body SaveAsVELT3() const = 0;
    /// Takes a stored fit, and its data in place of those of the data set; afterwards the model answers as
    /// after that fit. \pre Create and WhichMeth were called
    /// \throws VeltError the body holds what no fit of this model can; the data set may have changed then
    virtual void OpenAsVELT3(const project_file::Body& body) = 0;

    /// First call on a new object: the defaults of the class, then the data set.
    virtual void Create(clsVeltData& data) = 0;

    virtual FitDetails Details() const = 0;
    /// The objective around the fit, for as long as the surface lives. \pre a fit that stands, with the
    /// catches that it was made on
    virtual FitSurface Surface() = 0;
    /// Lengthens the data set by future periods for as long as the answer lives. \pre a fit that stands, and
    /// room for them
    virtual std::unique_ptr<FuturePeriods> Lengthen(int periods) = 0;
    /// What a regression gave for N1 or K when the start was replaced, because that stock would not have
    /// survived the catches.
    virtual std::optional<double> ReplacedStart() const = 0;
    /// How many refits of the last bootstrap run had to be drawn again.
    virtual int ReplicatesDrawnAgain() const = 0;
};

/// A new model of the class that serves model number 1 to 6, not yet created on a data set.
/// \throws VeltError 5 for another number
std::unique_ptr<IMethod> NewMethod(std::int32_t whichMeth);
