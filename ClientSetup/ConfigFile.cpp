#include "ClientSetup/ConfigFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <system_error>

#include "System/StagedFile.h"

namespace velmora {

namespace {

std::string reasonOf(const std::system_error& error) { return error.code().message(); }

// 20261122T150309Z
std::string stamp(Date now) {
  auto text = now.toIso8601();
  text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == '-' || c == ':'; }),
             text.end());
  return text;
}

// What is left of a copy is no loss; the failure that led here is the one to report.
void discard(FileSystem& files, const std::filesystem::path& copy) noexcept {
  try {
    files.remove(copy);
  } catch (const std::exception&) {
    return;
  }
}

}  // namespace

std::optional<std::string> reasonToLeave(const FileStanding& standing, uid_t user) {
  if (standing.kind == FileStanding::Kind::link) return "is a link to another place";
  if (standing.kind == FileStanding::Kind::other) return "is no regular file";
  if (standing.owner != user) return "belongs to another user";
  if (standing.names > 1) return "has another name, which would keep the old text";
  if ((standing.mode & S_IWUSR) == 0) return "is read-only";
  return std::nullopt;
}

ConfigFile::ConfigFile(FileSystem& files, std::filesystem::path path, uid_t user)
    : files_(files), path_(std::move(path)), user_(user) {
  try {
    standing_ = fileStanding(path_);
    if (!standing_) return;
    if (const auto reason = reasonToLeave(*standing_, user_)) throw ConfigFileError(*reason);
    text_ = files_.read(path_);
  } catch (const std::system_error& error) {
    throw ConfigFileError("cannot be read: " + reasonOf(error));
  }
}

std::optional<std::filesystem::path> ConfigFile::backUp(Date now) {
  if (!standing_) return std::nullopt;
  const auto name = path_.string() + ".before-velmora-" + stamp(now);
  for (int number = 1;; ++number) {
    const std::filesystem::path place = number == 1 ? name : name + "-" + std::to_string(number);
    try {
      files_.create(place, text_);
      return place;
    } catch (const std::system_error& error) {
      if (error.code() == std::errc::file_exists) continue;
      discard(files_, place);
      throw ConfigFileError("cannot be copied to " + place.string() + ": " + reasonOf(error));
    }
  }
}

std::optional<std::filesystem::path> ConfigFile::replace(std::string_view text, Date now) {
  std::optional<std::filesystem::path> copy;
  try {
    files_.createDirectories(path_.parent_path());
    StagedFile staged(files_, path_, text);
    if (standing_) {
      files_.setMode(staged.place(), standing_->mode);
      offerToGroup(staged.place(), standing_->group);
    }
    copy = backUp(now);
    // Clients write their files, too.
    if (ConfigFile current(files_, path_, user_); current.isThere() != isThere() || current.text() != text_)
      throw ConfigFileError("was changed by another program meanwhile; try again");
    staged.commit();
    return copy;
  } catch (const std::system_error& error) {
    if (copy) discard(files_, *copy);
    throw ConfigFileError("cannot be written: " + reasonOf(error));
  } catch (const ConfigFileError&) {
    if (copy) discard(files_, *copy);
    throw;
  }
}

}  // namespace velmora
