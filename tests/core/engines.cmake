# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(engines SOURCES
  MinimumTest_test.cpp
  OriginRegress_test.cpp
  PenaltySurfaces_test.cpp
  RandomSource_test.cpp
  SearchEnd_test.cpp
  SearchSpace_test.cpp
  SimplexSteps_test.cpp
  VELT_NelMead_test.cpp
  VELT_Regress_test.cpp
  VELT_Solver_test.cpp
  VariantSorter_test.cpp)
