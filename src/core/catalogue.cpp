// Catalogue: the table of all settings.
#include "core/catalogue.h"

#include <algorithm>
#include <array>

namespace tellaxis {

namespace {

using enum Group;
using S = Settings;
using F = MainForm;

constexpr auto raw = ReadKind::raw;
constexpr auto typed = ReadKind::typed;
constexpr auto never = WriteKind::never;
constexpr auto writeRaw = WriteKind::raw;
constexpr auto writeTyped = WriteKind::typed;

constexpr DefaultValue blank = Null{};
constexpr DefaultValue zero = no;
constexpr DefaultValue allTrue = std::string_view("-1");
constexpr DefaultValue defaultFolder = std::string_view("C:\\MERIDIA");
constexpr DefaultValue defaultPort = std::string_view("1");
constexpr DefaultValue defaultLine = std::string_view("9600,N,8,1");
constexpr DefaultValue defaultDelay = std::int16_t{50};
constexpr DefaultValue noPrinter = std::string_view("NON PRESENTE");

// Group, key as loaded, read, default, value, control, text not shown | write, key as saved, save position, saved true
// only if The spellings of the two sides differ in places: key names match without regard to case.
// clang-format off
constexpr Setting table[] = {
    {generale, "Orbis_Setting", raw, allTrue, &S::Orbis_Setting, &F::chkOrbis, {}, writeRaw, "Orbis_Setting", 2},
    {generale, "Orbis_Directory", raw, defaultFolder, &S::pointOfSaleFolder, &F::Orbis51Dir, {}, writeRaw, "Orbis_Directory", 1},

    {display, "Display_Active", typed, zero, &S::Display_Active, &F::DLY_Active, {}, writeTyped, "Display_Active", 3, {&F::DLY_Type, "NON PRESENTE"}},
    {display, "Display_File", raw, blank, &S::Display_File, &F::DLY_File, {}, writeTyped, "Display_File", 4},
    {display, "Display_Type", raw, blank, &S::Display_Type, &F::DLY_Type, "0", writeTyped, "Display_Type", 5},
    {display, "Display_COM", raw, blank, &S::Display_COM, &F::DLY_com, {}, writeTyped, "Display_COM", 6},
    {display, "Display_Parametri", raw, blank, &S::Display_Parametri, &F::DLY_Param, {}, writeTyped, "Display_Parametri", 7},
    {display, "Display_Delay", raw, blank, &S::Display_Delay, &F::DLY_Delay, {}, never},

    {misuratoreFiscale, "MF_Active", typed, zero, &S::MF_Active, &F::MF_Active, {}, writeTyped, "MF_Active", 8, {&F::MF_Type, "0 - NON PRESENTE"}},
    {misuratoreFiscale, "MF_File", typed, blank, &S::MF_File, &F::MF_File, {}, writeTyped, "MF_File", 9},
    {misuratoreFiscale, "MF_File_Output", typed, blank, &S::MF_File_Output, &F::MF_FileOutput, {}, writeTyped, "MF_File_Output", 10},
    {misuratoreFiscale, "MF_type", typed, blank, &S::MF_type, &F::MF_Type, {}, writeTyped, "MF_Type", 11},
    {misuratoreFiscale, "MF_Prot", typed, blank, &S::MF_Prot, &F::MF_Protocol, {}, writeTyped, "MF_Prot", 12},
    {misuratoreFiscale, "MF_COM", typed, defaultPort, &S::MF_COM, &F::MF_Com, {}, writeTyped, "MF_COM", 13},
    {misuratoreFiscale, "MF_Parametri", typed, defaultLine, &S::MF_Parametri, &F::MF_Param, {}, writeTyped, "MF_Parametri", 14},
    {misuratoreFiscale, "MF_Buffer", typed, zero, &S::MF_Buffer, &F::MF_Buffer, {}, writeTyped, "MF_Buffer", 15},
    {misuratoreFiscale, "MF_Ritardo", typed, defaultDelay, &S::MF_Ritardo, &F::MF_Delay, {}, writeTyped, "MF_Ritardo", 16},
    {misuratoreFiscale, "MF_ChkLog", typed, zero, &S::MF_ChkLog, &F::MF_chkLog, {}, never},
    {misuratoreFiscale, "MF_Driver", typed, blank, &S::MF_Driver, &F::MF_Driver, {}, never},

    {ricevutaFiscale, "RF_Active", typed, zero, &S::RF_Active, &F::RF_Active, {}, writeTyped, "RF_Active", 17, {&F::RF_File, ""}},
    {ricevutaFiscale, "RF_Stampante", typed, blank, &S::RF_Stampante, &F::RF_Printer, {}, writeTyped, "RF_Stampante", 18},
    {ricevutaFiscale, "RF_Seriale", typed, blank, &S::RF_Seriale, &F::RF_COM, {}, writeTyped, "RF_Seriale", 19},
    {ricevutaFiscale, "RF_File", typed, blank, &S::RF_File, &F::RF_File, {}, writeTyped, "RF_File", 20},
    {ricevutaFiscale, "RF_Righe", typed, blank, &S::RF_Righe, &F::RF_Righe, {}, writeTyped, "RF_Righe", 21},

    {preconto, "Cort_Active", typed, zero, &S::Cort_Active, &F::Cort_Active, {}, writeTyped, "CORT_Active", 22, {&F::Cort_Printer, "NON PRESENTE"}},
    {preconto, "Cort_Printer", typed, noPrinter, &S::Cort_Printer, &F::Cort_Printer, {}, writeTyped, "CORT_Printer", 23},
    {preconto, "Cort_Com", typed, blank, &S::Cort_Com, &F::Cort_COM, {}, writeTyped, "CORT_COM", 25},
    {preconto, "Cort_Sett", typed, defaultLine, &S::Cort_Sett, {}, {}, never},
    {preconto, "Cort_File", typed, blank, &S::Cort_File, &F::Cort_File, {}, writeTyped, "CORT_File", 24},
    {preconto, "Cort_Logo", typed, zero, &S::Cort_Logo, &F::Cort_Logo, {}, writeTyped, "CORT_Logo", 26},
};
// clang-format on

constexpr std::size_t savedCount = std::ranges::count_if(table, [](const Setting& row) { return row.write != never; });

constexpr auto saveOrder = [] {
  std::array<const Setting*, savedCount> rows{};
  for (const Setting& row : table)
    if (row.write != never) rows.at(static_cast<std::size_t>(row.savePosition) - 1) = &row;
  return rows;
}();

static_assert(std::ranges::none_of(saveOrder, [](const Setting* row) { return row == nullptr; }),
              "save positions are the numbers from 1 on, each once");

}  // namespace

std::span<const Setting> catalogue() { return table; }

std::span<const Setting* const> savedSettings() { return saveOrder; }

}  // namespace tellaxis
