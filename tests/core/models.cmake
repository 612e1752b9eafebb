# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(models SOURCES
  ContourGrid_test.cpp
  ContourRange_test.cpp
  DepletionBootstraps_test.cpp
  GammaFit_test.cpp
  LogFit_test.cpp
  ModelGraphs_test.cpp
  ProductionBootstraps_test.cpp
  ProductionFit_test.cpp
  StartVals_test.cpp
  clsBootStrap_test.cpp
  clsConstRecruit_test.cpp
  clsProduction_test.cpp
  clsRecruitINdex_test.cpp
  clsSingleCohort_test.cpp
  modMaths_test.cpp
  USES velt_test_support)
