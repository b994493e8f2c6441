// The window with the application's name and version.
#pragma once

namespace velmora::mac {

/// Opens the standard about panel (name and version, from Info.plist) and brings it to the front. Main
/// thread.
void showAboutPanel();

}  // namespace velmora::mac
