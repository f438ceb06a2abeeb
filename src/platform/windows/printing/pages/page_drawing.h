// Page drawing: a page as a BMP file.
#pragma once

#include <string>

#include "platform/printing/pages/page_layout.h"
#include "platform/windows/printing/pages/gdi_typefaces.h"

namespace tellaxis::platform {

/// Writes `page` as a picture of one pixel a dot, to a path in UTF-8; what stands below two and a half metres is left
/// out. The page is drawn strip by strip, so that its length needs no memory.
bool writePage(const std::string& path, const Page& page, GdiTypefaces& typefaces);

}  // namespace tellaxis::platform
