#include "VelmoraHelper/Stdio/MessageLines.h"

namespace velmora {

namespace {

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r") == std::string_view::npos; }

}  // namespace

void MessageLines::finish() {
  if (taken_ < buffer_.size()) buffer_.push_back('\n');
}

std::optional<MessageLines::Line> MessageLines::next() {
  while (true) {
    const auto end = buffer_.find('\n', searched_);
    if (end == std::string::npos) {
      searched_ = buffer_.size();
      // One byte more than the maximum may be the CR of a line end that is still to come.
      const bool exceeded = buffer_.size() - taken_ > maximumLength_ + 1;
      if (dropping_ || exceeded) taken_ = buffer_.size();
      compact();
      if (!exceeded || dropping_) return std::nullopt;
      dropping_ = true;
      return Line{.tooLong = true};
    }
    std::string_view text(buffer_.data() + taken_, end - taken_);
    taken_ = searched_ = end + 1;
    if (dropping_) {
      dropping_ = false;
      continue;
    }
    if (text.ends_with('\r')) text.remove_suffix(1);
    if (text.size() > maximumLength_) return Line{.tooLong = true};
    if (!isBlank(text)) return Line{.text = std::string(text)};
  }
}

void MessageLines::compact() {
  buffer_.erase(0, taken_);
  searched_ -= taken_;
  taken_ = 0;
}

}  // namespace velmora
