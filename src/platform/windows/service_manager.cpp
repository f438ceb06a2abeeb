// Service manager: a desk's program is no service here, and nobody asks how it is.
#include "platform/service_manager.h"

namespace tellaxis::platform {

std::unique_ptr<ServiceManager> openServiceManager() { return nullptr; }

}  // namespace tellaxis::platform
