// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/VeltError.h"
#include "models/clsConstRecruit.h"
#include "models/clsProduction.h"
#include "models/clsRecruitINdex.h"
#include "models/clsSingleCohort.h"

std::unique_ptr<IMethod> NewMethod(std::int32_t whichMeth)
{
    switch (whichMeth) {
    case models::kNoRecruitment:
        return std::make_unique<clsSingleCohort>();
    case models::kRecruitmentIndex:
        return std::make_unique<clsRecruitINdex>();
    case models::kConstantRecruitment:
        return std::make_unique<clsConstRecruit>();
    case models::kFox:
    case models::kSchaefer:
    case models::kPellaTomlinson:
        return std::make_unique<clsProduction>();
    default:
        RaiseInvalidArgument();
    }
}
