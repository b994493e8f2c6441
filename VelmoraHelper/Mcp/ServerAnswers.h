// The answers that never change while the program runs.
#pragma once

#include <array>
#include <string>
#include <utility>

#include "BridgeModels/Json/JsonWriter.h"
#include "BridgeModels/ToolForm.h"
#include "VelmoraHelper/Protocol/ProtocolRevision.h"

namespace velmora {

/// Results as JSON text, each made when it is first needed and copied from then on. Not
/// thread-safe.
class ServerAnswers {
 public:
  /// `version` is this program's.
  explicit ServerAnswers(std::string version, ToolForm form = ToolForm::plain)
      : version_(std::move(version)), form_(form) {}

  const std::string& discover();
  const std::string& initialize(ProtocolRevision revision);  ///< Of one that has a handshake.
  const std::string& toolList(ProtocolRevision revision);

  /// Writes what follows the members of every result of a stateless revision: the result's type and the
  /// server's name.
  void writeStatelessMembers(JsonWriter& writer) const;

 private:
  /// The answers with which a conversation begins describe the server, in the extended form.
  void writeStatelessMembers(JsonWriter& writer, bool isDescribed) const;

  std::string version_;
  ToolForm form_;
  // Empty until they are made.
  std::string discover_{};
  std::array<std::string, enumCases<ProtocolRevision>.size()> initialize_{};
  std::array<std::string, enumCases<ProtocolRevision>.size()> toolLists_{};
};

}  // namespace velmora
