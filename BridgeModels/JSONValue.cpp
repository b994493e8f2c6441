#include "BridgeModels/JSONValue.h"

namespace velmora {

const JSONValue* JSONValue::find(std::string_view key) const {
  const auto* members = object();
  if (members == nullptr) return nullptr;
  const auto found = members->find(key);
  return found == members->end() ? nullptr : &found->second;
}

bool JSONValue::operator==(const JSONValue& other) const { return storage == other.storage; }

}  // namespace velmora
