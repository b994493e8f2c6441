// Whether MCP clients reach this application; when they do not, why, and what the user can do about it.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <functional>
#include <optional>
#include <string>

#include "BridgeHost/BridgeHost.h"
#include "VelmoraApp/AppModel/Problem.h"
#include "VelmoraApp/AppModel/Worker.h"

namespace velmora {

/// For the main thread; the work is done on the worker.
class Serving : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive it, and the worker must end first.
  Serving(BridgeHost& host, Worker& worker);

  /// The bridge that serves in place of this one. While there is one, this one must touch neither the
  /// terminal nor the files.
  const std::optional<OtherBridge>& otherBridge() const { return otherBridge_; }
  /// Why clients cannot connect, or why the other bridge could not be ended; a sentence, or empty.
  QString problem() const { return problem_.text(); }
  bool isUnderWay() const { return isUnderWay_; }  ///< A restart, or taking over.

  /// Accepting has ended by itself.
  void fail(const std::string& reason);
  /// Serves anew.
  void restart();
  /// Ends the other bridge and takes its place; `tookOver` follows, or the problem says why not.
  void takeOver();

 Q_SIGNALS:
  void changed();
  void tookOver();

 private:
  struct State {
    std::optional<OtherBridge> otherBridge;
    Problem problem;
  };

  static Problem cannotConnect(const std::string& reason, const std::string& socket = {});
  State stateOfHost() const;
  void run(std::function<void()> work);
  void show(State state);

  BridgeHost& host_;
  Worker& worker_;
  std::optional<OtherBridge> otherBridge_;
  Problem problem_;
  bool isUnderWay_ = false;
};

}  // namespace velmora
