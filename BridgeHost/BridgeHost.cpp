#include "BridgeHost/BridgeHost.h"

#include <spdlog/spdlog.h>

#include "BridgeCore/HistoryStore/ApplicationSupportDirectory.h"
#include "BridgeHost/ProblemSentence.h"
#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "TerminalAutomation/Unavailable/UnavailableTerminalAutomation.h"

namespace velmora {

namespace {

bool isAnswering(const std::filesystem::path& socketURL) {
  try {
    UnixSocketClient::connect(socketURL);
    return true;
  } catch (const UnixSocketError&) {
    return false;
  }
}

// Another bridge that serves there keeps its socket.
std::unique_ptr<LocalControlServer> serverAt(const std::filesystem::path& socketURL,
                                             LocalControlHandler handler) {
  if (isAnswering(socketURL)) throw std::runtime_error("Velmora is already running there");
  return std::make_unique<LocalControlServer>(std::move(handler), socketURL);
}

std::unique_ptr<TerminalAutomating> terminalOf(const BridgeHostOptions& options,
                                               const std::filesystem::path& temporaryDirectory) {
  try {
    return options.makeTerminal(temporaryDirectory);
  } catch (...) {
    spdlog::error("the terminal adapter could not be made: {}", problemSentence(std::current_exception()));
    return std::make_unique<UnavailableTerminalAutomation>();
  }
}

}  // namespace

BridgeHost::BridgeHost(const BridgeHostOptions& options)
    : socketURL_(UnixSocketEndpoint::defaultURL(options.environment)),
      terminal_(terminalOf(options, socketURL_.parent_path().parent_path())),
      registry_(options.uuid(), options.uuid),
      operationState_(MCPState::active),
      recorder_(options.now),
      historyStore_(files_, defaultHistoryFile(options.environment)),
      settingsStore_(files_, defaultSettingsFile(options.environment), PrivacyRetentionSettings{}),
      coordinator_(*terminal_, registry_, operationState_, recorder_, settingsStore_, historyStore_,
                   options.now),
      router_(coordinator_) {
  try {
    localServer_ = serverAt(socketURL_, [this](std::string_view request) { return router_.answer(request); });
  } catch (const std::exception&) {
    serverProblem_ = problemSentence(std::current_exception());
  }
}

BridgeHost::~BridgeHost() { endServing(); }

LocalStateProblems BridgeHost::loadLocalState() {
  LocalStateProblems problems;
  try {
    settingsStore_.load();
  } catch (...) {
    settingsAreUnreadable_ = true;
    problems.settings = problemSentence(std::current_exception());
  }
  const auto settings = settingsStore_.current();
  coordinator_.setSessionPolicy(settings.sessionPolicy);
  if (!settings.persistentHistoryEnabled) return problems;
  try {
    recorder_.prepend(historyStore_.load());
  } catch (...) {
    problems.history = problemSentence(std::current_exception());
  }
  return problems;
}

void BridgeHost::startServing() {
  if (localServer_) localServer_->start();
}

void BridgeHost::endServing() noexcept {
  if (localServer_) localServer_->stop();
  terminal_->cancel();  // a terminal that hangs holds up no one's exit
  localServer_.reset();
}

void BridgeHost::prepareForTermination() {
  endServing();  // first, so that no request writes the history again
  // Unreadable settings may say that the history is to be kept.
  if (settingsAreUnreadable_ || !settingsStore_.current().deleteOnAppExit) return;
  try {
    recorder_.clear(historyStore_);
  } catch (const StructuredError& error) {
    spdlog::warn("{}", error.message);
  }
}

}  // namespace velmora
