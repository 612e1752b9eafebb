# SPDX-License-Identifier: GPL-3.0-or-later
velt_core_test(files SOURCES
  AsciiText_test.cpp
  AsciiWizard_test.cpp
  Bytes_test.cpp
  CsvReader_test.cpp
  CsvText_test.cpp
  GuessDataColumn_test.cpp
  KilledResultSet_test.cpp
  LegacyRecords_test.cpp
  ProjectRecordFields_test.cpp
  ProjectRecords_test.cpp
  ReadWholeFile_test.cpp
  ResultSet_test.cpp
  SampleGuesses_test.cpp
  WholeFile_test.cpp)
