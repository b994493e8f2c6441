#include "VelmoraHelper/Stdio/MessageLines.h"

#include <algorithm>
#include <utility>

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
      dropMiddle();
      searched_ = buffer_.size();
      compact();
      return std::nullopt;
    }
    std::string_view text(buffer_.data() + taken_, end - taken_);
    taken_ = searched_ = end + 1;
    if (text.ends_with('\r')) text.remove_suffix(1);
    if (std::exchange(dropping_, false)) return Line{std::move(beginning_), std::string(endOf(text)), true};
    if (text.size() > maximumLength_)
      return Line{std::string(text.substr(0, keptOfAnEnd)), std::string(endOf(text)), true};
    if (!isBlank(text)) return Line{.text = std::string(text)};
  }
}

std::string_view MessageLines::endOf(std::string_view text) {
  return text.substr(text.size() - std::min(text.size(), keptOfAnEnd));
}

void MessageLines::dropMiddle() {
  const auto length = buffer_.size() - taken_;
  // One byte more than the maximum may be the CR of a line end that is still to come.
  if (!dropping_ && length > maximumLength_ + 1) {
    dropping_ = true;
    beginning_ = buffer_.substr(taken_, keptOfAnEnd);
  }
  if (dropping_) taken_ = buffer_.size() - std::min(length, keptOfAnEnd + 1);
}

void MessageLines::compact() {
  buffer_.erase(0, taken_);
  searched_ -= taken_;
  taken_ = 0;
}

}  // namespace velmora
