#include "VelmoraHelper/Commands/PersonCalls.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "LocalControl/LocalControlCodec.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "VelmoraHelper/Bridge/BridgeConnection.h"
#include "VelmoraHelper/Bridge/BridgeContact.h"
#include "VelmoraHelper/Bridge/CallFailure.h"

namespace velmora {

namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

// False when nothing happens until `end`.
bool waitFor(const BridgeConnection& connection, SteadyTime end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
  if (left.count() <= 0) return false;
  const auto events = static_cast<short>(POLLIN | (connection.isWriting() ? POLLOUT : 0));
  pollfd watched{connection.descriptor(), events, 0};
  if (::poll(&watched, 1, static_cast<int>(left.count())) < 0 && errno != EINTR)
    throw std::system_error(errno, std::generic_category(), "poll");
  return true;
}

// A failure in the words that a call of a tool which changes nothing gets.
template <class Words>
LocalControlResponse failure(const Words& words) {
  static const boost::json::value none(boost::json::object_kind);
  auto answer = words(BridgeRequest(LocalControlCall<JsonMembers>{.arguments = {&none}}));
  return {.error = std::move(answer.result.error)};
}

class Connection final : public PersonCalling {
 public:
  Connection(std::vector<std::filesystem::path> places, std::string version)
      : places_(std::move(places)), version_(std::move(version)) {}

  LocalControlResponse call(PersonVerb verb, JSONObject arguments, std::chrono::seconds deadline) override {
    const auto end = std::chrono::steady_clock::now() + deadline;
    try {
      if (!connection_) connection_.emplace(contactBridge(places_).connection);
      connection_->begin(personFrame(verb, std::move(arguments), version_));
      auto frame = connection_->advance();
      for (; !frame; frame = connection_->advance()) {
        if (waitFor(*connection_, end)) continue;
        connection_.reset();
        return failure([&](const BridgeRequest& request) { return answerToSilence(request, deadline); });
      }
      return LocalControlCodec::decode<LocalControlResponse>(*frame);
    } catch (const std::exception&) {
      connection_.reset();
      return failure(
          [](const BridgeRequest& request) { return answerToFailure(request, std::current_exception()); });
    }
  }

 private:
  const std::vector<std::filesystem::path> places_;
  const std::string version_;
  std::optional<BridgeConnection> connection_{};
};

}  // namespace

std::unique_ptr<PersonCalling> personCalls(std::vector<std::filesystem::path> places, std::string version) {
  return std::make_unique<Connection>(personPlaces(std::move(places)), std::move(version));
}

std::vector<std::filesystem::path> personPlaces(std::vector<std::filesystem::path> places) {
  for (auto& place : places) place = UnixSocketEndpoint::personURL(place);
  return places;
}

std::string personFrame(PersonVerb verb, JSONObject arguments, const std::string& version) {
  return LocalControlCodec::frame(
      PersonRequest{.requestId = Uuid::random(),
                    .client = {.name = "velmora", .version = version, .processId = ::getpid()},
                    .operation = verb,
                    .arguments = std::move(arguments)});
}

}  // namespace velmora
