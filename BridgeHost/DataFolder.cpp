#include "BridgeHost/DataFolder.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <system_error>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeCore/StructuredErrorMapper.h"

namespace velmora {

namespace {

constexpr auto runMark = "running\n";

constexpr auto lockName = "bridge.lock";

// Nothing when the lock's text does not tell.
std::optional<pid_t> holderOf(const std::filesystem::path& file) {
  const auto text = textOfLock(file);
  pid_t process = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), process);
  return read.ec == std::errc() && process > 1 ? std::optional(process) : std::nullopt;
}

// By the names of the two programs, also the application's on macOS.
bool isBridge(std::string_view program) { return program.starts_with("velmora-") || program == "Velmora"; }

std::string wordsOfHolder(const std::filesystem::path& file, const std::filesystem::path& folder) {
  const auto process = holderOf(file);
  return "Velmora is already running" +
         (process ? " as process " + std::to_string(*process) : std::string()) + " and keeps its data in " +
         folder.string();
}

}  // namespace

DataFolder::DataFolder(const std::filesystem::path& folder, Log log) : folder_(folder), log_(std::move(log)) {
  problem_ = "not claimed yet";
  claim();
}

bool DataFolder::claim() {
  if (isOurs()) return true;
  const auto file = folder_ / lockName;
  try {
    PosixFileSystem unlocked;
    if (!unlocked.exists(folder_)) ensureDirectory(unlocked, folder_);
    lock_ = FileLock::take(file);
    if (!lock_) {
      problem_ = wordsOfHolder(file, folder_);
      return false;
    }
    formerRunWasCutShort_ = lock_->text().ends_with(runMark);
  } catch (...) {
    log_.warning("start", "another bridge on " + folder_.string() +
                              " would not be noticed: " + problemSentence(std::current_exception()));
  }
  problem_.clear();
  files_.open();
  write(formerRunWasCutShort_ ? runMark : "");
  return true;
}

std::optional<OtherBridge> DataFolder::holder() const {
  if (isOurs()) return std::nullopt;
  OtherBridge other{.process = holderOf(folder_ / lockName)};
  const auto about = other.process ? runningProcess(*other.process) : std::nullopt;
  // A holder of a moment ago may still be named, and its number may be a stranger's by now.
  if (!about || !isBridge(about->name)) return OtherBridge{};
  other.about = *about;
  return other;
}

void DataFolder::beginRun() noexcept { write(runMark); }

void DataFolder::endRun() noexcept { write(""); }

void DataFolder::write(const std::string& state) noexcept {
  try {
    if (lock_) lock_->setText(std::to_string(::getpid()) + "\n" + state);
  } catch (const std::exception& error) {
    log_.warning("start", std::string("the lock of the data folder cannot be written: ") + error.what());
  }
}

void DataFolder::Files::refuseWhenClosed(const std::filesystem::path& path) const {
  if (closed_)
    throw std::system_error(EBUSY, std::generic_category(), "another bridge uses " + path.string());
}

void DataFolder::Files::create(const std::filesystem::path& path, std::string_view bytes) {
  refuseWhenClosed(path);
  PosixFileSystem::create(path, bytes);
}

void DataFolder::Files::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  refuseWhenClosed(from);
  PosixFileSystem::rename(from, to);
}

void DataFolder::Files::remove(const std::filesystem::path& path) {
  refuseWhenClosed(path);
  PosixFileSystem::remove(path);
}

void DataFolder::Files::setMode(const std::filesystem::path& path, mode_t mode) {
  refuseWhenClosed(path);
  PosixFileSystem::setMode(path, mode);
}

void DataFolder::Files::createDirectories(const std::filesystem::path& path) {
  refuseWhenClosed(path);
  PosixFileSystem::createDirectories(path);
}

void DataFolder::Files::flushDirectory(const std::filesystem::path& path) {
  refuseWhenClosed(path);
  PosixFileSystem::flushDirectory(path);
}

}  // namespace velmora
