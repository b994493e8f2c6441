#include "BridgeHost/BridgeHost.h"

#include <spdlog/spdlog.h>

#include "BridgeCore/HistoryStore/ApplicationSupportDirectory.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "TerminalAutomation/Unavailable/UnavailableTerminalAutomation.h"

namespace velmora {

namespace {

// What went wrong, in the words of whoever noticed.
std::string sentenceOf(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const StructuredError& structured) {
    return structured.message + " " + structured.recoverySuggestion;
  } catch (const UnixSocketError& socket) {
    const std::string reason = socket.what();
    return socket.kind() == UnixSocketError::Kind::system
               ? reason + ": " + std::generic_category().message(socket.code())
               : reason;
  } catch (const std::exception& other) {
    return other.what();
  }
}

std::unique_ptr<TerminalAutomating> terminalOf(const BridgeHostOptions& options,
                                               const std::filesystem::path& temporaryDirectory) {
  try {
    return options.makeTerminal(temporaryDirectory);
  } catch (...) {
    spdlog::error("the terminal adapter could not be made: {}", sentenceOf(std::current_exception()));
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
    localServer_ = std::make_unique<LocalControlServer>(
        [this](const LocalControlRequest& request) { return router_.route(request); }, socketURL_);
  } catch (const std::exception&) {
    serverProblem_ = sentenceOf(std::current_exception());
  }
}

BridgeHost::~BridgeHost() { endServing(); }

LocalStateProblems BridgeHost::loadLocalState() {
  LocalStateProblems problems;
  try {
    settingsStore_.load();
  } catch (...) {
    problems.settings = sentenceOf(std::current_exception());
  }
  const auto settings = settingsStore_.current();
  coordinator_.setSessionPolicy(settings.sessionPolicy);
  if (!settings.persistentHistoryEnabled) return problems;
  try {
    recorder_.prepend(historyStore_.load());
  } catch (...) {
    problems.history = sentenceOf(std::current_exception());
  }
  return problems;
}

void BridgeHost::startServing() {
  if (localServer_) localServer_->start();
}

void BridgeHost::endServing() noexcept {
  if (!localServer_) return;
  localServer_->stop();
  terminal_->cancel();  // a terminal that hangs holds up no one's exit
  localServer_.reset();
}

void BridgeHost::prepareForTermination() {
  endServing();  // first, so that no request writes the history again
  if (!settingsStore_.current().deleteOnAppExit) return;
  try {
    recorder_.clear(historyStore_);
  } catch (const StructuredError& error) {
    spdlog::warn("{}", error.message);
  }
}

}  // namespace velmora
