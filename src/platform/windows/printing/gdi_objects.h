// GDI objects: handles that go with their owner.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace tellaxis::platform {

struct ContextDeleter {
  void operator()(HDC context) const { DeleteDC(context); }
};
struct ObjectDeleter {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};

using DeviceContext = std::unique_ptr<std::remove_pointer_t<HDC>, ContextDeleter>;
using BitmapHandle = std::unique_ptr<std::remove_pointer_t<HBITMAP>, ObjectDeleter>;
using FontHandle = std::unique_ptr<std::remove_pointer_t<HFONT>, ObjectDeleter>;

}  // namespace tellaxis::platform
