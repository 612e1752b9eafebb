# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(fit SOURCES
  InputParams_test.cpp
  MinimiserOptions_test.cpp
  ParameterReport_test.cpp
  clsMethManager_test.cpp
  USES velt_test_support)
