#include "VelmoraApp/MenuBar/PermissionPanes.h"

namespace velmora {

std::vector<PermissionPane> permissionPanes() { return {}; }

}  // namespace velmora
