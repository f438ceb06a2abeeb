// Papers: the table of printers that differ from an ordinary receipt printer.
#include "platform/printing/papers.h"

#include <algorithm>
#include <iterator>

namespace tellaxis::platform {

namespace {

/// The first whose part the name contains.
constexpr Paper papers[] = {
    {.namePart = "TM-U295",
     .width = 105,
     .printingWidth = 86,
     .columnsA = 35,
     .columnsB = 42,
     .formLength = 190,
     .graphics = Graphics::column},
    {.namePart = "TM-U2", .columnsA = 33, .columnsB = 40, .graphics = Graphics::column},
    {.namePart = "TM-L90", .columnsA = 48, .columnsB = 64, .cutAtEnd = true},
    {.namePart = "KUBE", .columnsA = 42, .columnsB = 56, .cutAtEnd = true},
    {.namePart = "Star", .columnsA = 48, .columnsB = 64, .codePage = 32},
    {.namePart = ""},
};

}  // namespace

const Paper& paperOf(std::string_view deviceName) {
  return *std::find_if(std::begin(papers), std::prev(std::end(papers)),
                       [&](const Paper& paper) { return deviceName.find(paper.namePart) != std::string_view::npos; });
}

}  // namespace tellaxis::platform
