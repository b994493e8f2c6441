// The real file system with a hook before every operation, where a test makes it fail, wait or count.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <system_error>

#include "System/FileSystem.h"

namespace velmora::testing {

class HookedFileSystem final : public FileSystem {
 public:
  /// Runs with the operation's name and its path, "rename" with the old one; what it throws is the
  /// operation's failure. Set while no operation runs.
  std::function<void(const std::string& operation, const std::filesystem::path& path)> before =
      [](const auto&, const auto&) {};

  bool exists(const std::filesystem::path& path) override {
    before("exists", path);
    return real_.exists(path);
  }
  std::string read(const std::filesystem::path& path) override {
    before("read", path);
    return real_.read(path);
  }
  std::optional<double> lastWritten(const std::filesystem::path& path) override {
    before("lastWritten", path);
    return real_.lastWritten(path);
  }
  std::optional<std::filesystem::path> linkTarget(const std::filesystem::path& path) override {
    return real_.linkTarget(path);
  }
  std::vector<std::filesystem::path> filesBeginningWith(const std::filesystem::path& prefix) override {
    before("filesBeginningWith", prefix);
    return real_.filesBeginningWith(prefix);
  }
  void create(const std::filesystem::path& path, std::string_view bytes) override {
    try {
      before("create", path);
    } catch (const std::exception&) {
      real_.create(path, bytes.substr(0, bytes.size() / 2));  // as a full disk leaves it
      throw;
    }
    real_.create(path, bytes);
  }
  void rename(const std::filesystem::path& from, const std::filesystem::path& to) override {
    before("rename", from);
    real_.rename(from, to);
  }
  void remove(const std::filesystem::path& path) override {
    before("remove", path);
    real_.remove(path);
  }
  void setMode(const std::filesystem::path& path, mode_t mode) override {
    before("setMode", path);
    real_.setMode(path, mode);
  }
  void createDirectories(const std::filesystem::path& path) override {
    before("createDirectories", path);
    real_.createDirectories(path);
  }
  void flushDirectory(const std::filesystem::path& path) override {
    before("flushDirectory", path);
    real_.flushDirectory(path);
  }

  /// Makes the operation numbered `step` (from 0) fail, or that one and all after it, as if the machine
  /// had stopped there.
  void failAt(int step, bool andAllAfter, std::errc error = std::errc::io_error) {
    before = [this, step, andAllAfter, error](const auto& operation, const auto&) {
      const int current = steps_++;
      if (current == step || (andAllAfter && current > step)) {
        failed_ = true;
        throw std::system_error(std::make_error_code(error), operation);
      }
    };
    steps_ = 0;
    failed_ = false;
  }

  /// Makes every operation of that name fail.
  void failOn(std::string name, std::errc error) {
    before = [name = std::move(name), error](const auto& operation, const auto&) {
      if (operation == name) throw std::system_error(std::make_error_code(error), operation);
    };
  }

  void work() {
    before = [](const auto&, const auto&) {};
  }

  /// Whether a failure that failAt asked for has come.
  bool failed() const { return failed_; }

 private:
  PosixFileSystem real_;
  int steps_ = 0;
  bool failed_ = false;
};

}  // namespace velmora::testing
