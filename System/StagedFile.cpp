#include "System/StagedFile.h"

#include <exception>

namespace velmora {

StagedFile::StagedFile(FileSystem& files, std::filesystem::path file, std::string_view bytes)
    : files_(files), file_(std::move(file)), place_(placeBeside(file_)) {
  files_.remove(place_);
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

void StagedFile::commit() {
  files_.rename(place_, file_);
  waits_ = false;
  files_.flushDirectory(file_.parent_path());
}

std::filesystem::path StagedFile::placeBeside(const std::filesystem::path& file) {
  auto place = file;
  place += ".tmp";
  return place;
}

void StagedFile::discard() noexcept {
  try {
    files_.remove(place_);
  } catch (const std::exception&) {
    // The failure that led here is the one to report; the next save removes what is left.
  }
}

}  // namespace velmora
