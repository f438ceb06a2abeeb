// Folder identity: one text for a folder, however its path is spelled.
#pragma once

#include <string>

namespace tellaxis::platform {

/// What the file system knows the folder by; its name in capitals where it cannot be opened.
std::wstring folderIdentity(const std::wstring& folder);

}  // namespace tellaxis::platform
