# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(graphs SOURCES
  ModelGraph_test.cpp
  ProjGraph_test.cpp)
