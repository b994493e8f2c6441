#include "VelmoraApp/Settings/ConnectionTest.h"

#include <utility>

namespace velmora {

ConnectionTest::ConnectionTest(QString helperPath, std::chrono::milliseconds patience)
    : helperPath_(std::move(helperPath)) {
  process_.setProgram(helperPath_);
  process_.setArguments({"status"});
  process_.setStandardInputFile(QProcess::nullDevice());
  patience_.setSingleShot(true);
  patience_.setInterval(patience);
  connect(&patience_, &QTimer::timeout, &process_, &QProcess::kill);
  connect(&process_, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
    const bool answered = status == QProcess::NormalExit && code == 0;
    end(answered ? Outcome::answered : Outcome::noAnswer);
  });
  connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) end(Outcome::notStarted);
  });
}

ConnectionTest::~ConnectionTest() {
  process_.disconnect(this);
  process_.kill();
  process_.waitForFinished();
}

void ConnectionTest::run() {
  if (isUnderWay()) return;
  outcome_ = Outcome::none;
  answer_.clear();
  process_.start();
  patience_.start();
  Q_EMIT changed();
}

QString ConnectionTest::result() const {
  switch (outcome_) {
    case Outcome::none:
      return {};
    case Outcome::answered:
      return tr("The helper reached Velmora. This is the answer that it got:");
    case Outcome::noAnswer:
      return tr("The helper got no answer from Velmora.");
    case Outcome::notStarted:
      break;
  }
  return tr("The helper at %1 could not be started. Install Velmora again.").arg(helperPath_);
}

Meaning ConnectionTest::meaning() const {
  if (outcome_ == Outcome::none) return Meaning::Quiet;
  return outcome_ == Outcome::answered ? Meaning::Positive : Meaning::Danger;
}

void ConnectionTest::end(Outcome outcome) {
  patience_.stop();
  outcome_ = outcome;
  const auto printed = process_.readAllStandardOutput() + process_.readAllStandardError();
  answer_ = QString::fromUtf8(printed).trimmed();
  Q_EMIT changed();
}

}  // namespace velmora
