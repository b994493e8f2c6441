// Messages on their way to the client.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// Writes only as much as the client takes, so that one that reads slowly, or not at all, blocks nothing. Not
/// thread-safe.
class MessageOutput {
 public:
  /// Does not own the descriptor, and leaves it blocking or not as it is, because other programs may share
  /// it. SIGPIPE must be ignored.
  explicit MessageOutput(int descriptor);

  int descriptor() const { return descriptor_; }

  /// Adds a message; its line end is added here.
  void add(std::string_view message) { pending_.append(message).push_back('\n'); }

  /// The bytes that the client has not taken yet.
  std::size_t pending() const { return pending_.size() - written_; }

  /// Writes what can be written without waiting. Throws std::system_error.
  void flush();

 private:
  bool canBeWritten() const;

  int descriptor_;
  bool isSocket_;
  std::string pending_{};
  std::size_t written_ = 0;  // of `pending_`
};

}  // namespace velmora
