#include "BridgeHost/DataFolder.h"

#include <unistd.h>

#include <system_error>

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeCore/StructuredErrorMapper.h"

namespace velmora {

namespace {

constexpr auto runMark = "running\n";

/// Another bridge's files: to be read only.
class ForeignFiles final : public FileSystem {
 public:
  bool exists(const std::filesystem::path& path) override { return real_.exists(path); }
  std::string read(const std::filesystem::path& path) override { return real_.read(path); }
  std::optional<double> lastWritten(const std::filesystem::path& path) override {
    return real_.lastWritten(path);
  }
  std::optional<std::filesystem::path> linkTarget(const std::filesystem::path& path) override {
    return real_.linkTarget(path);
  }
  std::vector<std::filesystem::path> filesBeginningWith(const std::filesystem::path& prefix) override {
    return real_.filesBeginningWith(prefix);
  }
  void create(const std::filesystem::path& path, std::string_view) override { refuse(path); }
  void rename(const std::filesystem::path& from, const std::filesystem::path&) override { refuse(from); }
  void remove(const std::filesystem::path& path) override { refuse(path); }
  void setMode(const std::filesystem::path& path, mode_t) override { refuse(path); }
  void createDirectories(const std::filesystem::path& path) override { refuse(path); }
  void flushDirectory(const std::filesystem::path& path) override { refuse(path); }

 private:
  [[noreturn]] static void refuse(const std::filesystem::path& path) {
    throw std::system_error(EBUSY, std::generic_category(), "another bridge uses " + path.string());
  }

  PosixFileSystem real_;
};

std::string wordsOfHolder(const std::filesystem::path& file, const std::filesystem::path& folder) {
  const auto text = textOfLock(file);
  const auto process = text.substr(0, text.find('\n'));
  return "Velmora is already running" + (process.empty() ? std::string() : " as process " + process) +
         " and keeps its data in " + folder.string();
}

}  // namespace

DataFolder::DataFolder(const std::filesystem::path& folder, Log log) : log_(std::move(log)) {
  const auto file = folder / "bridge.lock";
  try {
    ensureDirectory(*files_, folder);
    lock_ = FileLock::take(file);
    if (!lock_) {
      problem_ = wordsOfHolder(file, folder);
      files_ = std::make_unique<ForeignFiles>();
      return;
    }
    formerRunWasCutShort_ = lock_->text().ends_with(runMark);
  } catch (...) {
    log_.warning("start", "another bridge on " + folder.string() +
                              " would not be noticed: " + problemSentence(std::current_exception()));
  }
  write(formerRunWasCutShort_ ? runMark : "");
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

}  // namespace velmora
