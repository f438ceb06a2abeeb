// Locale of Windows: GetLocaleInfo, VarCyFromStr and VarBstrFromBool.
#include "platform/windows/locale.h"

#include <oleauto.h>

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

namespace {

/// Sunday first; the system counts from Monday.
constexpr LCTYPE dayNames[] = {LOCALE_SDAYNAME7, LOCALE_SDAYNAME1, LOCALE_SDAYNAME2, LOCALE_SDAYNAME3,
                               LOCALE_SDAYNAME4, LOCALE_SDAYNAME5, LOCALE_SDAYNAME6};

std::string localeText(LCID region, LCTYPE type) {
  wchar_t buffer[128];
  const int length = GetLocaleInfoW(region, type, buffer, static_cast<int>(std::size(buffer)));
  return length > 1 ? narrowForReading({buffer, static_cast<std::size_t>(length - 1)}) : std::string();
}

/// The word of the region's language for true or false; empty when there is none.
std::string truthWord(bool truth, LCID region) {
  BSTR word = nullptr;
  if (VarBstrFromBool(truth ? VARIANT_TRUE : VARIANT_FALSE, region, VAR_LOCALBOOL, &word) != S_OK) return {};
  std::string text = narrowForReading({word, SysStringLen(word)});
  SysFreeString(word);
  return text;
}

/// What the enumeration, which has no room for an argument of ours, looks for and finds.
thread_local std::string wantedName;
thread_local std::optional<LCID> foundRegion;

BOOL CALLBACK compareName(wchar_t* number) {
  const LCID region = wcstoul(number, nullptr, 16);
  if (localeText(region, LOCALE_SISO639LANGNAME) + "_" + localeText(region, LOCALE_SISO3166CTRYNAME) != wantedName)
    return TRUE;
  foundRegion = region;
  return FALSE;
}

}  // namespace

std::optional<LCID> regionCalled(std::string_view name) {
  wantedName = name.substr(0, name.find_first_of(".@"));
  foundRegion.reset();
  EnumSystemLocalesW(compareName, LCID_INSTALLED);
  return foundRegion;
}

WindowsLocale::WindowsLocale(LCID region, DWORD flags) : region_(region), flags_(flags) {
  const std::string decimal = text(LOCALE_SDECIMAL);
  const std::string group = text(LOCALE_STHOUSAND);
  if (!decimal.empty()) regional_.decimalSeparator = decimal.front();
  if (!group.empty()) regional_.groupSeparator = group.front();
  for (std::size_t day = 0; day < regional_.weekdays.size(); ++day) regional_.weekdays[day] = text(dayNames[day]);
  const std::string trueWord = truthWord(true, region_);
  const std::string falseWord = truthWord(false, region_);
  if (!trueWord.empty()) regional_.trueWord = trueWord;
  if (!falseWord.empty()) regional_.falseWord = falseWord;
}

std::string WindowsLocale::text(LCTYPE type) const { return localeText(region_, type | flags_); }

std::optional<std::int64_t> WindowsLocale::currency(std::string_view text) const {
  CY result;
  // The system takes the text to end at its first NUL.
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  if (VarCyFromStr(wide(text).data(), region_, flags_, &result) != S_OK) return std::nullopt;
  return result.int64;
}

}  // namespace tellaxis::platform
