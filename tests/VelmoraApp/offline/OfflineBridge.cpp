#include "tests/VelmoraApp/offline/OfflineBridge.h"

#include <QtCore/QLocale>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtQml/QQmlEngine>

#include "BridgeCore/ErrorCatalogue.h"
#include "VelmoraApp/AppModel/Texts.h"
#include "tests/support/FakeTime.h"
#include "tests/support/Files.h"

namespace velmora::testing {
namespace {

const ClientIdentitySummary kClient{"Coding agent", "2.1.0"};

StructuredError refusal(ErrorCode code, const std::string& message) {
  return {.code = code, .message = message, .operation = "terminal", .recoverySuggestion = "Try again."};
}

AppModelOptions optionsFor(const Scenario& scenario, const TemporaryDirectory& home,
                           FakeTerminal*& terminal) {
  AppModelOptions options;
  for (const auto* variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
    options.bridge.environment[variable] = home.path().string();
  }
  options.bridge.makeTerminal = [&scenario, &terminal](const std::filesystem::path&) {
    auto fake = std::make_unique<FakeTerminal>();
    fake->name = "tmux";
    fake->tabs = scenario.tabs;
    const auto count = static_cast<std::int64_t>(scenario.tabs.size());
    fake->runtimeStatus = {
        .running = count > 0, .windowCount = count, .permission = AutomationPermission::granted};
    if (scenario.denied) {
      fake->failWith("status", catalogue::automationPermissionDenied("status", {}));
    }
    terminal = fake.get();
    return fake;
  };
  options.bridge.now = scenarioTime;
  options.bridge.uuid = countingUuids();
  options.onboardingCompleted = !scenario.firstRun;
  options.pollInterval = std::chrono::milliseconds(20);
  return options;
}

}  // namespace

OfflineBridge::~OfflineBridge() = default;

void OfflineBridge::setScenario(const QString& name) {
  scenarioName_ = name;
  auto data = scenario(name.toStdString());
  const auto options = optionsFor(data, home_, terminal_);
  if (data.otherBridge) {
    otherBridge_ = std::make_unique<BridgeHost>(options.bridge);
    otherBridge_->startServing();
  }
  if (data.blockedSocket) writeFile(home_ / "app.velmora.Velmora/control-v1.sock", "a regular file");
  model_ = std::make_unique<AppModel>(options);
  auto& coordinator = model_->coordinator();
  const auto listed = coordinator.listSessions(Uuid::random(), kClient, {});
  for (std::size_t index = 0; index < data.permissions.size() && listed.ok; ++index) {
    coordinator.setPermission(data.permissions[index], listed.data->sessions[index].sessionId);
  }
  if (!data.otherBridge) {  // whose files these are otherwise
    auto settings = coordinator.settingsStore().current();
    settings.maximumRecordCount = 10000;
    settings.persistentHistoryEnabled = settings.storeCommandBody = settings.storeOutputPreview =
        data.keepsTexts;
    coordinator.settingsStore().save(settings);
  }
  coordinator.recorder().replace(std::move(data.records));
  if (!data.firstRun) coordinator.setPaused(data.paused);
  makeServices(data);
  desktop_.defaults.set(userDefault::onboardingCompleted, !data.firstRun);
  firstRun_ = std::make_unique<FirstRunController>(desktop_.defaults);
  viewModels_ = std::make_unique<ViewModels>(
      *model_, *firstRun_,
      GeneralSettingsSources{.desktop = desktop_,
                             .menuBar = *menuBar_,
                             .language = *language_,
                             .launchAtLogin = *launchAtLogin_,
                             .updater = [this]() -> UpdaterService& { return *updaterService_; }});
  connect(model_.get(), &AppModel::refreshingChanged, this, [this] {
    refreshed_ = refreshed_ || !model_->isRefreshing();
    noticeReady();
  });
  connect(model_.get(), &AppModel::recordsChanged, this, &OfflineBridge::noticeReady);
  connect(model_.get(), &AppModel::settingsChanged, this, &OfflineBridge::noticeReady);
  Q_EMIT scenarioChanged();
}

// The records and the settings arrive after the refresh that asked for them.
void OfflineBridge::noticeReady() {
  auto& core = model_->coordinator();
  if (ready_ || !refreshed_ || model_->records() != core.recorder().snapshot() ||
      model_->settings() != core.settingsStore().current()) {
    return;
  }
  ready_ = true;
  Q_EMIT readyChanged();
}

void OfflineBridge::makeServices(const Scenario& scenario) {
  desktop_.context.preferredLanguages = QLocale::system().uiLanguages();
  if (scenario.terminalApp) {
    desktop_.context.terminal = GuidedTerminal::terminalApp;
    desktop_.context.installPath = "/Applications/Velmora.app";
    desktop_.context.helperPath = "/Applications/Velmora.app/Contents/Helpers/velmora";
  }
  language_ = std::make_unique<LanguagePreference>(desktop_.defaults, desktop_.context.preferredLanguages);
  speak();
  connect(language_.get(), &LanguagePreference::changed, this, &OfflineBridge::speak);
  menuBar_ = std::make_unique<MenuBarPreference>(desktop_.defaults);
  menuBar_->setHasPlace(true);
  launchAtLogin_ = std::make_unique<LaunchAtLoginController>(desktop_);
  auto updater = std::make_unique<FakeUpdater>();
  updater->lastCheck = Date{scenarioTime().secondsSinceReferenceDate - 3600};
  updater_ = updater.get();
  updaterService_ = std::make_unique<UpdaterService>(std::move(updater), scenarioTime);
}

// As the application does.
void OfflineBridge::speak() {
  translation_ = Translation::installed(language_->language());
  if (!viewModels_) return;
  viewModels_->retranslate(language_->language());
  Q_EMIT languageChanged();
  if (auto* engine = qmlEngine(this)) engine->retranslate();
}

QString OfflineBridge::settingsFile() const {
  return text(contentOf(model_->coordinator().settingsStore().fileURL()));
}

void OfflineBridge::failSaves() const {
  const auto folder = model_->coordinator().settingsStore().fileURL().parent_path();
  std::filesystem::remove_all(folder);
  writeFile(folder, "a file where the folder should be");
}

void OfflineBridge::unblockSocket() const {
  std::filesystem::remove(home_ / "app.velmora.Velmora/control-v1.sock");
}

QStringList OfflineBridge::terminalCalls() const {
  QStringList calls;
  for (const auto& call : terminal_->calls()) {
    calls.append(text(call));
  }
  return calls;
}

QString OfflineBridge::firstSession() {
  return text(model_->coordinator().registry().currentSessions().at(0).sessionId.toString());
}

void OfflineBridge::forgetRequests() { model_->coordinator().recorder().replace({}); }

QString OfflineBridge::sendCommand(const QString& sessionId, const QString& command) {
  const auto id = Uuid::parse(sessionId.toStdString());
  const auto result = model_->coordinator().sendCommand(
      Uuid::random(), kClient, {.sessionId = id.value_or(Uuid{}), .command = command.toStdString()});
  return result.ok ? QString() : wireText(result.error->code);
}

QString OfflineBridge::pasteboard() const { return QGuiApplication::clipboard()->text(); }

QString OfflineBridge::userDefault(const QString& key) const { return desktop_.defaults.text(key); }

QString OfflineBridge::sessionPolicy() {
  return wireText(model_->coordinator().settingsStore().current().sessionPolicy);
}

void OfflineBridge::fail(const QString& operation) {
  terminal_->failWith(operation.toStdString(),
                      refusal(ErrorCode::appleScriptExecutionFailed, "The terminal refused."));
}

}  // namespace velmora::testing
