// SPDX-License-Identifier: MIT
#pragma once

/// The members of the application's object model that the program calls, and no other.
namespace bn::excel::com::miembro {

inline constexpr const wchar_t* kActiveCell = L"ActiveCell";
inline constexpr const wchar_t* kAdd = L"Add";
inline constexpr const wchar_t* kAutomationSecurity = L"AutomationSecurity";
inline constexpr const wchar_t* kCells = L"Cells";
inline constexpr const wchar_t* kCheckCompatibility = L"CheckCompatibility";
inline constexpr const wchar_t* kClearContents = L"ClearContents";
inline constexpr const wchar_t* kClose = L"Close";
inline constexpr const wchar_t* kColumnWidth = L"ColumnWidth";
inline constexpr const wchar_t* kColumns = L"Columns";
inline constexpr const wchar_t* kCopy = L"Copy";
inline constexpr const wchar_t* kCount = L"Count";
inline constexpr const wchar_t* kCutCopyMode = L"CutCopyMode";
inline constexpr const wchar_t* kDelete = L"Delete";
inline constexpr const wchar_t* kDisplayAlerts = L"DisplayAlerts";
inline constexpr const wchar_t* kEnableEvents = L"EnableEvents";
inline constexpr const wchar_t* kFormulaR1C1 = L"FormulaR1C1";
inline constexpr const wchar_t* kHPageBreaks = L"HPageBreaks";
inline constexpr const wchar_t* kHorizontalAlignment = L"HorizontalAlignment";
inline constexpr const wchar_t* kHwnd = L"Hwnd";
inline constexpr const wchar_t* kIgnoreRemoteRequests = L"IgnoreRemoteRequests";
inline constexpr const wchar_t* kItem = L"Item";
inline constexpr const wchar_t* kName = L"Name";
inline constexpr const wchar_t* kNames = L"Names";
inline constexpr const wchar_t* kNumberFormat = L"NumberFormat";
inline constexpr const wchar_t* kOpen = L"Open";
inline constexpr const wchar_t* kPaste = L"Paste";
inline constexpr const wchar_t* kPrintOut = L"PrintOut";
inline constexpr const wchar_t* kPrintPreview = L"PrintPreview";
inline constexpr const wchar_t* kQuit = L"Quit";
inline constexpr const wchar_t* kRange = L"Range";
inline constexpr const wchar_t* kReadOnly = L"ReadOnly";
inline constexpr const wchar_t* kRefersTo = L"RefersTo";
inline constexpr const wchar_t* kRows = L"Rows";
inline constexpr const wchar_t* kSaveAs = L"SaveAs";
inline constexpr const wchar_t* kSelect = L"Select";
inline constexpr const wchar_t* kSelection = L"Selection";
inline constexpr const wchar_t* kVersion = L"Version";
inline constexpr const wchar_t* kVisible = L"Visible";
inline constexpr const wchar_t* kWorkbooks = L"Workbooks";
inline constexpr const wchar_t* kWorksheets = L"Worksheets";
inline constexpr const wchar_t* kWriteReservedBy = L"WriteReservedBy";

}  // namespace bn::excel::com::miembro

/// The kinds of object that have them.
namespace bn::excel::com::clase {

inline constexpr const wchar_t* kAplicacion = L"Application";
inline constexpr const wchar_t* kHoja = L"Worksheet";
inline constexpr const wchar_t* kHojas = L"Sheets";
inline constexpr const wchar_t* kLibro = L"Workbook";
inline constexpr const wchar_t* kLibros = L"Workbooks";
inline constexpr const wchar_t* kNombre = L"Name";
inline constexpr const wchar_t* kNombres = L"Names";
inline constexpr const wchar_t* kRango = L"Range";
inline constexpr const wchar_t* kSaltos = L"HPageBreaks";

}  // namespace bn::excel::com::clase
