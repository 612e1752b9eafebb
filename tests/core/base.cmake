# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(base SOURCES
  Array1_test.cpp
  Checked_test.cpp
  ErrorReporter_test.cpp
  FileErrors_test.cpp
  FileType_test.cpp
  ForeignText_test.cpp
  MeterScope_test.cpp
  NumberText_test.cpp
  Paths_test.cpp
  RaisedErrors_test.cpp
  SignalHold_test.cpp
  StringTable_test.cpp
  Text_test.cpp
  Windows1252_test.cpp
  modVeltGlobals_test.cpp
  USES velt_scripted_user)
