# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(fit SOURCES
  ConfidenceLevels_test.cpp
  DataRemarks_test.cpp
  ExportToASCIIFile_test.cpp
  FailedFits_test.cpp
  FailureHints_test.cpp
  FitLog_test.cpp
  FitNewModel_test.cpp
  ImportASCIIFile_test.cpp
  ImportCommaSeparated_test.cpp
  ImportVELT2File_test.cpp
  InputParams_test.cpp
  LimitRemarks_test.cpp
  ManagerProjections_test.cpp
  MinimiserOptions_test.cpp
  ParameterReport_test.cpp
  PrintParameters_test.cpp
  ProjectFile_test.cpp
  ProjectionLimits_test.cpp
  ProjectionStale_test.cpp
  Projections_test.cpp
  RefusedImports_test.cpp
  Remarks_test.cpp
  SurfaceRemarks_test.cpp
  clsMethManager_test.cpp
  USES velt_test_support)
