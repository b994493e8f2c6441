// A connection to the bridge's channel for users that never blocks, for a program that also listens to keys.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "VelmoraHelper/Bridge/BridgeConnection.h"
#include "VelmoraHelper/Commands/PersonCalls.h"

namespace velmora {

/// One question at a time. Not thread-safe.
class PersonChannel {
 public:
  /// `places` as for `personCalls`.
  PersonChannel(std::vector<std::filesystem::path> places, std::string version);

  bool isOpen() const { return connection_.has_value(); }
  std::optional<PersonVerb> asked() const { return asked_; }  ///< What is not answered yet.

  /// Connects. Throws UnixSocketError.
  void open();
  void close();

  void ask(PersonVerb verb, JSONObject arguments = {});

  /// The descriptor to wait for, and whether for writing too; -1 when it is closed.
  int descriptor() const { return connection_ ? connection_->descriptor() : -1; }
  bool isWriting() const { return connection_ && connection_->isWriting(); }

  /// The answer, once it is there. Throws when the bridge has gone or sends no answer: UnixSocketError,
  /// LocalControlCodecError, JsonDecodeError.
  std::optional<LocalControlResponse> advance();

 private:
  const std::vector<std::filesystem::path> places_;
  const std::string version_;
  std::optional<BridgeConnection> connection_{};
  std::optional<PersonVerb> asked_{};
};

}  // namespace velmora
