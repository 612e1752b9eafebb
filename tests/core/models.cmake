# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(models SOURCES
  ConstRecruitFits_test.cpp
  ContourGrid_test.cpp
  ContourRange_test.cpp
  DepletionBootstrapsOfOneModel_test.cpp
  DepletionBootstraps_test.cpp
  DepletionFits_test.cpp
  FitSurface_test.cpp
  GammaFit_test.cpp
  LognormalFit_test.cpp
  MethodCommon_test.cpp
  ModelGraphs_test.cpp
  ModelTable_test.cpp
  ProductionBootstraps_test.cpp
  ProductionContours_test.cpp
  ProductionFit_test.cpp
  ProductionPenalties_test.cpp
  ProductionStarts_test.cpp
  RecruitIndexContours_test.cpp
  RecruitIndexRegression_test.cpp
  RecruitIndexSearch_test.cpp
  SingleCohortRegression_test.cpp
  SingleCohortSearch_test.cpp
  StartVals_test.cpp
  clsBootStrap_test.cpp
  clsConstRecruit_test.cpp
  clsProduction_test.cpp
  clsRecruitINdex_test.cpp
  clsSingleCohort_test.cpp
  modMaths_test.cpp
  USES velt_test_support)

# A program of its own, because it replaces the memory operators.
add_executable(allocation_tests CountedMemory.cpp NoAllocation_test.cpp)
target_link_libraries(allocation_tests PRIVATE velt_models velt_test_support GTest::gtest_main)
target_include_directories(allocation_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
gtest_discover_tests(allocation_tests DISCOVERY_TIMEOUT 60)
