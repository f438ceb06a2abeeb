// Guide: the Italian guide that is installed with the program.
#pragma once

namespace tellaxis::ui {

/// Whether the guide lies beside the program or where its package puts it.
bool guideIsThere();

/// Opens the guide in the user's browser; false when there is none, of either.
bool showGuide();

}  // namespace tellaxis::ui
