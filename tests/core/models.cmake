# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(models SOURCES
  ContourRange_test.cpp
  GammaFit_test.cpp
  LogFit_test.cpp
  StartVals_test.cpp
  clsBootStrap_test.cpp
  clsConstRecruit_test.cpp
  clsRecruitINdex_test.cpp
  clsSingleCohort_test.cpp
  modMaths_test.cpp
  USES velt_test_support)
