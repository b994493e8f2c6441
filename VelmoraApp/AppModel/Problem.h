// What does not work, for the screens.
#pragma once

#include <QtCore/QCoreApplication>
#include <exception>

#include "BridgeCore/StructuredErrorMapper.h"
#include "VelmoraApp/AppModel/BridgeTexts.h"
#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

/// Becomes a sentence when it is shown, because the user may change the language while it stands.
struct Problem {
  const char* what =
      nullptr;      ///< English, marked with QT_TRANSLATE_NOOP("Problem", ...); null for `why` alone.
  QString why{};    ///< In the words of the bridge or of the system. Goes to "%1", else to the end.
  QString where{};  ///< The file that `why` is about, unless `why` names it.

  bool isEmpty() const { return what == nullptr && why.isEmpty(); }
  /// In the language of now.
  QString text() const {
    auto reason = (where.isEmpty() ? where : where + ": ") + bridgeText(why.toStdString());
    if (what == nullptr) return reason;
    const auto sentence = QCoreApplication::translate("Problem", what);
    if (sentence.contains("%1")) return sentence.arg(reason);
    return reason.isEmpty() ? sentence : sentence + " " + reason;
  }
};

/// What went wrong and what helps against it.
inline Problem asProblem(const StructuredError& error) {
  return {.why = text(error.message + " " + error.recoverySuggestion)};
}

/// Runs `work`; what it throws comes back as English sentences for `Problem::why`, empty when all went well.
/// Any thread.
template <class Work>
QString problemOf(const Work& work) {
  try {
    work();
    return {};
  } catch (...) {
    return text(problemSentence(std::current_exception()));
  }
}

}  // namespace velmora
