# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(engines SOURCES
  OriginRegress_test.cpp
  RandomSource_test.cpp
  RoughSurface_test.cpp
  VELT_NelMead_test.cpp
  VELT_Regress_test.cpp
  VELT_Solver_test.cpp
  VariantSorter_test.cpp)
