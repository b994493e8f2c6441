// The application and those beside it, as AppKit knows them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora::mac {

/// The running application's bundle, such as /Applications/Velmora.app; for a program without one, its
/// folder. The helper that MCP clients launch is Contents/Helpers/velmora in it. Any thread.
std::filesystem::path applicationBundlePath();

/// The languages that the user reads: tags (BCP 47, such as "ko-KR" or "zh-Hans-CN"), the most preferred one
/// first. What the user chose for this application alone counts in the application's own process only. Any
/// thread.
std::vector<std::string> preferredLanguages();

/// Whether an application with this bundle identifier runs. Asks the system, not the application, so it
/// neither launches it nor needs a permission. Any thread.
bool isApplicationRunning(const std::string& bundleIdentifier);

/// Starts the application with this bundle identifier behind what the user has in front, and does not wait
/// for it; nothing happens when it runs or is not there. Any thread.
void startInBackground(const std::string& bundleIdentifier);

/// From now on, until the process ends, the system neither slows it down (App Nap) nor ends it by itself,
/// while the Mac may still go to sleep. `reason` shows in the system's diagnostics. Any thread.
void stayAwake(const std::string& reason);

/// Opens the standard about panel (name, version and copyright, from Info.plist) and brings it to the front.
/// Main thread.
void showAboutPanel();

/// Opens an address with the application that the user has for it. False when the system could not. Main
/// thread.
bool openURL(const std::string& address);

}  // namespace velmora::mac
