// Folder identity: volume and file number.
#include "platform/windows/files/folder_identity.h"

#include "platform/windows/kernel/native.h"

namespace tellaxis::platform {

std::wstring folderIdentity(const std::wstring& folder) {
  const UniqueHandle opened =
      owned(CreateFileW(folder.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION information;
  if (opened && GetFileInformationByHandle(opened.get(), &information))
    return std::to_wstring(information.dwVolumeSerialNumber) + L"-" + std::to_wstring(information.nFileIndexHigh) +
           L"-" + std::to_wstring(information.nFileIndexLow);
  std::wstring name = folder;
  CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
  for (wchar_t& letter : name)
    if (letter == L'\\') letter = L'/';
  return name;
}

}  // namespace tellaxis::platform
