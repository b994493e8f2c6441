#include "System/StagedFile.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <exception>
#include <random>

namespace velmora {

namespace {

std::filesystem::path placesBeside(const std::filesystem::path& file) {
  auto places = file;
  places += ".tmp";
  return places;
}

std::filesystem::path newPlaceBeside(const std::filesystem::path& file) {
  std::random_device random;
  std::array<char, 16> digits{};
  const std::uint64_t number = (std::uint64_t{random()} << 32) | random();
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16);
  auto place = placesBeside(file);
  place += "." + std::string(digits.data(), end);
  return place;
}

}  // namespace

StagedFile::StagedFile(FileSystem& files, std::filesystem::path file, std::string_view bytes)
    : files_(files), file_(std::move(file)), place_(newPlaceBeside(file_)) {
  try {
    files_.create(place_, bytes);
  } catch (const std::exception&) {
    discard();
    throw;
  }
}

StagedFile::~StagedFile() {
  if (waits_) discard();
}

std::error_code StagedFile::commit() {
  files_.rename(place_, file_);
  waits_ = false;
  try {
    files_.flushDirectory(file_.parent_path());
    return {};
  } catch (const std::system_error& error) {
    return error.code();
  }
}

void StagedFile::removeLeftovers(FileSystem& files, const std::filesystem::path& file) {
  for (const auto& place : files.filesBeginningWith(placesBeside(file))) files.remove(place);
}

void StagedFile::discard() noexcept {
  try {
    files_.remove(place_);
  } catch (const std::exception&) {
    // The failure that led here is the one to report; the next start of the bridge removes what is left.
  }
}

}  // namespace velmora
