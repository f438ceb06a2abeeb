// Samsung models: the tables of fields, styles and sizes.
#include "courtesy/samsung_models.h"

#include "courtesy/samsung_lines.h"
#include "courtesy/samsung_markup.h"

namespace tellaxis {

namespace {

constexpr FieldRule fieldsOf500[] = {
    {.emptyGives = "a", .store = storeText}, {.emptyGives = "0", .store = storeCommand},
    {.emptyGives = "9", .store = storeSize}, {.emptyGives = "0", .store = storeStyleUnlessSmall},
    {.emptyGives = "0", .store = storeBold}, {.emptyGives = "N", .store = storeColour},
};

constexpr FieldRule fieldsOfOthers[] = {
    {.emptyGives = "", .store = storeText},
    {.emptyGives = "0", .store = storeCommand},
    {.emptyGives = "0", .store = storePitch},
    {.emptyGives = "0", .store = storeStyle},
};

constexpr Style stylesOf500[] = {
    {.code = 0, .font = "FontA15cpi", .size = 9},
    {.code = 13, .font = "FontA15cpi", .size = 9},
    {.font = "FontA15cpi", .size = 18},
};

constexpr Style stylesOf350[] = {
    {.code = 0, .font = "FontA1x1", .size = 1},
    {.code = 1, .font = "FontA1x1", .size = 1},
    {.code = 13, .font = barCodeFont, .size = 18},
};

constexpr Style stylesOf103[] = {
    {.code = 0, .font = "FontB1x1", .fontOn350 = "FontA1x1", .size = 1},
    {.code = 1, .font = "FontB1x2", .fontOn350 = "FontA1x1", .size = 1},
    {.code = 13, .font = barCodeFont, .size = 18},
};

// The 350 class compares its stored size, a whole number, with 9.5: it never prints small.
constexpr SamsungModel models[] = {
    {.Modello = "500",
     .fields = fieldsOf500,
     .styles = stylesOf500,
     .openingControl = "w",
     .printLine = printLineOn500,
     .deletesJobFile = false},
    {.Modello = "350",
     .fields = fieldsOfOthers,
     .styles = stylesOf350,
     .pitch = {.small = 10, .usual = 14, .takenForSmall = 9.5},
     .printLine = printLineOnOthers},
    {.Modello = "103",
     .fields = fieldsOfOthers,
     .styles = stylesOf103,
     .pitch = {.small = 7, .usual = 14, .takenForSmall = 7, .usualSize = 14},
     .printLine = printLineOnOthers},
};

}  // namespace

const SamsungModel& samsungModelOf(std::string_view deviceName) {
  for (const SamsungModel& model : models)
    if (deviceName.find(model.Modello) != std::string_view::npos) return model;
  return std::end(models)[-1];
}

bool is350Device(platform::PrinterObject& printer) { return printer.DeviceName().find("350") != std::string::npos; }

}  // namespace tellaxis
