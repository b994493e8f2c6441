#include "BridgeHost/BridgeHost.h"

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "LocalControl/UnixSocketClient.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "TerminalAutomation/SerialTerminal.h"
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
                                             LocalControlHandler handler, const BridgeHostOptions& options) {
  try {
    if (isAnswering(socketURL)) throw std::runtime_error("Velmora is already running there");
    return std::make_unique<LocalControlServer>(std::move(handler), socketURL, options.log,
                                                options.acceptingEnded);
  } catch (const UnixSocketError& error) {
    throw std::runtime_error(error.inWords());
  }
}

std::unique_ptr<TerminalAutomating> terminalOf(const BridgeHostOptions& options,
                                               const std::filesystem::path& temporaryDirectory) {
  try {
    return options.makeTerminal(temporaryDirectory);
  } catch (...) {
    options.log.error("terminal",
                      "the adapter could not be made: " + problemSentence(std::current_exception()));
    return std::make_unique<SerialTerminal>(std::make_unique<UnavailableTerminalAutomation>());
  }
}

}  // namespace

BridgeHost::BridgeHost(const BridgeHostOptions& options)
    : socketURL_(UnixSocketEndpoint::defaultURL(options.environment)),
      log_(options.log),
      terminal_(terminalOf(options, socketURL_.parent_path().parent_path())),
      registry_(options.uuid(), options.uuid),
      operationState_(MCPState::active),
      recorder_(options.now),
      historyStore_(files_, defaultHistoryFile(options.environment), log_),
      settingsStore_(files_, defaultSettingsFile(options.environment), PrivacyRetentionSettings{}, log_),
      permissionStore_(files_, defaultPermissionFile(options.environment)),
      coordinator_(*terminal_, registry_, operationState_, recorder_, settingsStore_, historyStore_,
                   options.now, log_, &permissionStore_),
      router_(coordinator_) {
  try {
    localServer_ = serverAt(
        socketURL_, [this](std::string_view request) { return router_.answer(request); }, options);
  } catch (const std::exception& error) {
    serverProblem_ = error.what();
  }
}

BridgeHost::~BridgeHost() { endServing(); }

void BridgeHost::startServing() {
  if (!localServer_) return;
  localServer_->start();
  log_.info("socket", "serving at " + socketURL_.string());
}

void BridgeHost::endServing() noexcept {
  if (localServer_) localServer_->stop();
  terminal_->cancel();  // a terminal that hangs must not hold up the exit
  localServer_.reset();
}

void BridgeHost::prepareForTermination() {
  endServing();  // first, so that no request writes the history again
  try {
    coordinator_.leaveHistory();
  } catch (const StructuredError& error) {
    log_.warning("history", error.message);
  }
}

}  // namespace velmora
