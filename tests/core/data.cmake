# SPDX-License-Identifier: GPL-3.0-or-later
find_package(nlohmann_json REQUIRED)
velt_core_test(data SOURCES
  ColumnConversions_test.cpp
  DataOfFit_test.cpp
  DataTable_test.cpp
  ExportText_test.cpp
  FormatsDocument_test.cpp
  GridClipboard_test.cpp
  HostileProjects_test.cpp
  ImportLegacy_test.cpp
  ImportText_test.cpp
  NewDataSet_test.cpp
  NumberFormat_test.cpp
  PasteBlock_test.cpp
  PrintData_test.cpp
  ProjectData_test.cpp
  RandomGrid_test.cpp
  ScenarioEntries_test.cpp
  ScenarioSheet_test.cpp
  StructuralEditing_test.cpp
  TableSheet_test.cpp
  clsDataGrid_test.cpp
  clsFit_test.cpp
  clsProjScenario_test.cpp
  clsVeltData_test.cpp
  USES velt_scripted_user nlohmann_json::nlohmann_json)
