// Device face: the order of preference.
#include "platform/windows/printing/device_face.h"

namespace tellaxis::platform {

namespace {

int rank(bool ofDevice, const LOGFONTW& description) {
  return (ofDevice ? 2 : 0) + (description.lfCharSet == ANSI_CHARSET ? 1 : 0);
}

constexpr int highestRank = 3;

}  // namespace

int CALLBACK takeFace(const LOGFONTW* description, const TEXTMETRICW* /*metrics*/, DWORD type, LPARAM target) {
  Face& face = *reinterpret_cast<Face*>(target);
  const bool ofDevice = (type & DEVICE_FONTTYPE) != 0;
  const int offered = rank(ofDevice, *description);
  if (!face.found || offered > rank(face.ofDevice, face.description))
    face = {.found = true, .ofDevice = ofDevice, .description = *description};
  return offered == highestRank ? 0 : 1;
}

}  // namespace tellaxis::platform
