#include "VelmoraApp/Style/StyleSetup.h"

namespace velmora {

void chooseRenderer() {
  // Qt's own choice, Metal, is the right one here.
}

}  // namespace velmora
