#include "VelmoraApp/AppModel/Serving.h"

#include <exception>
#include <utility>

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

Serving::Serving(BridgeHost& host, Worker& worker) : host_(host), worker_(worker) {
  auto state = stateOfHost();
  otherBridge_ = state.otherBridge;
  problem_ = state.problem;
}

Problem Serving::cannotConnect(const std::string& reason, const std::string& socket) {
  return {QT_TRANSLATE_NOOP("Problem", "MCP clients cannot connect."), text(reason) + ".", text(socket)};
}

Serving::State Serving::stateOfHost() const {
  if (host_.otherBridge()) return {host_.otherBridge(), {}};
  if (host_.localServer() != nullptr) return {};
  return {{}, cannotConnect(host_.serverProblem(), host_.socketURL().string())};
}

void Serving::fail(const std::string& reason) { show({otherBridge_, cannotConnect(reason)}); }

void Serving::restart() {
  run([this] {
    host_.renewServer();
    host_.startServing();
  });
}

void Serving::takeOver() {
  if (!otherBridge_) return;
  run([this, process = otherBridge_->process] {
    host_.endOther(process);
    host_.renewServer();
  });
}

void Serving::run(std::function<void()> work) {
  if (std::exchange(isUnderWay_, true)) return;
  Q_EMIT changed();
  worker_.run(
      this,
      [this, work = std::move(work)] {
        try {
          work();
          return stateOfHost();
        } catch (const std::exception& error) {
          return State{host_.otherBridge(), {.why = text(error.what())}};
        }
      },
      [this](State state) {
        isUnderWay_ = false;
        show(std::move(state));
      });
}

void Serving::show(State state) {
  const bool another = otherBridge_ && !state.otherBridge;
  otherBridge_ = std::move(state.otherBridge);
  problem_ = std::move(state.problem);
  Q_EMIT changed();
  if (another) Q_EMIT tookOver();
}

}  // namespace velmora
