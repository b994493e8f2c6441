#include "BridgeHost/BridgeHost.h"

#include "BridgeCore/HistoryStore/StoreFiles.h"
#include "BridgeCore/StructuredErrorMapper.h"
#include "LocalControl/UnixSocketEndpoint.h"
#include "System/StagedFile.h"
#include "TerminalAutomation/SerialTerminal.h"
#include "TerminalAutomation/Unavailable/UnavailableTerminalAutomation.h"

namespace velmora {

namespace {

// Nobody else replaces files while the folder is ours.
void removeLeftovers(FileSystem& files, const Environment& environment, const Log& log) {
  for (const auto& file : {defaultSettingsFile(environment), defaultPermissionFile(environment),
                           defaultHistoryFile(environment)}) {
    try {
      StagedFile::removeLeftovers(files, file);
    } catch (const std::system_error& error) {
      log.warning("start", std::string("what a crash left of a save stays: ") + error.what());
    }
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
    : environment_(options.environment),
      socketURL_(UnixSocketEndpoint::defaultURL(environment_)),
      acceptingEnded_(options.acceptingEnded),
      log_(options.log),
      folder_(defaultSettingsFile(options.environment).parent_path(), log_),
      terminal_(terminalOf(options, socketURL_.parent_path().parent_path())),
      registry_(options.uuid(), options.uuid),
      operationState_(MCPState::active),
      recorder_(options.now),
      historyStore_(folder_.files(), defaultHistoryFile(options.environment), log_),
      settingsStore_(folder_.files(), defaultSettingsFile(options.environment), PrivacyRetentionSettings{},
                     log_),
      permissionStore_(folder_.files(), defaultPermissionFile(options.environment)),
      pauseStore_(folder_.files(), defaultPauseFile(options.environment)),
      coordinator_(*terminal_, registry_, operationState_, recorder_, settingsStore_, historyStore_,
                   options.now, log_, &permissionStore_, &pauseStore_),
      router_(coordinator_),
      personRouter_(coordinator_, log_, options.changedByUser) {
  renewServer();
}

BridgeHost::~BridgeHost() { endServing(); }

LocalStateProblems BridgeHost::loadLocalState() {
  auto problems = coordinator_.loadLocalState(folder_.formerRunWasCutShort());
  folder_.beginRun();
  return problems;
}

void BridgeHost::startServing() {
  if (!localServer_) return;
  localServer_->start();
  personServer_->start();
  log_.info("socket", "serving at " + socketURL_.string());
}

void BridgeHost::renewServer() {
  coordinator_.feed().close();
  personServer_.reset();
  coordinator_.feed().open();
  localServer_.reset();  // first, since it would be found answering
  serverProblem_.clear();
  try {
    auto server = makeServer();
    personServer_ = makePersonServer();
    localServer_ = std::move(server);
  } catch (const UnixSocketError& error) {
    serverProblem_ = error.inWords();
  } catch (const std::exception& error) {
    serverProblem_ = error.what();
  }
}

// Another bridge that serves there keeps its socket, and one that has the folder its files.
std::unique_ptr<LocalControlServer> BridgeHost::makeServer() {
  otherBridge_ = otherBridgeAt(socketURL_);
  if (otherBridge_) throw std::runtime_error("Velmora is already running there");
  if (!folder_.claim()) {
    otherBridge_ = folder_.holder();
    throw std::runtime_error(folder_.problem());
  }
  removeLeftovers(folder_.files(), environment_, log_);
  return std::make_unique<LocalControlServer>(
      [this](auto request, const auto& caller) { return router_.answer(request, caller); }, socketURL_,
      LocalControlServerOptions{
          .log = log_, .acceptingEnded = acceptingEnded_, .place = [environment = environment_] {
            return UnixSocketEndpoint::defaultURL(environment);
          }});
}

std::unique_ptr<LocalControlServer> BridgeHost::makePersonServer() {
  constexpr std::size_t mostUsers = 16;  // these connections come out of what is kept for everything else
  static_assert(2 * RequestFeed::mostWatchers < mostUsers - 2, "whoever pauses must find a place");
  const auto handlerFor = [this](std::optional<pid_t> process) {
    const auto peer = std::make_shared<PersonPeer>(PersonPeer{.process = process.value_or(0)});
    return [this, peer](auto request, const auto& caller) {
      return personRouter_.answer(request, caller, *peer);
    };
  };
  return std::make_unique<LocalControlServer>(
      LocalControlHandlerMaker(handlerFor), UnixSocketEndpoint::personURL(socketURL_),
      LocalControlServerOptions{.log = log_,
                                .acceptingEnded = acceptingEnded_,
                                .place =
                                    [environment = environment_] {
                                      return UnixSocketEndpoint::personURL(
                                          UnixSocketEndpoint::defaultURL(environment));
                                    },
                                .mostConnections = mostUsers});
}

void BridgeHost::endOther(std::optional<pid_t> process) {
  const auto find = [this] {
    auto other = otherBridgeAt(socketURL_);
    return other || folder_.claim() ? other : folder_.holder();
  };
  endOtherBridge(find, process);
}

void BridgeHost::endServing() noexcept {
  // What is under way may well end by itself; what a terminal that hangs holds up is cut short, and answered.
  constexpr std::chrono::milliseconds grace{500};
  if (personServer_) personServer_->stop();
  coordinator_.feed().close();
  if (localServer_) localServer_->finish(grace);
  coordinator_.marker().end();  // while the terminal still listens
  terminal_->cancel();
  personRouter_.cancel();
  personServer_.reset();
  localServer_.reset();
}

void BridgeHost::prepareForTermination(const std::optional<PrivacyRetentionSettings>& shown) {
  endServing();  // first, so that no request writes the history again
  if (!folder_.isOurs()) return;
  try {
    coordinator_.leaveHistory(shown);
    folder_.endRun();
  } catch (const StructuredError& error) {
    log_.warning("history", error.message);
  }
}

}  // namespace velmora
