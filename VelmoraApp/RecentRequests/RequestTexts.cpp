#include "VelmoraApp/RecentRequests/RequestTexts.h"

#include <QtCore/QCoreApplication>
#include <algorithm>
#include <array>

#include "VelmoraApp/AppModel/Texts.h"
#include "VelmoraApp/RecentRequests/SessionTitles.h"

namespace velmora {

namespace {

/// "%1" stands for the client, "%2" for the session.
struct Deed {
  ToolName tool;
  const char* underWay;
  const char* done;
  const char* tried;
};

constexpr auto deeds = std::to_array<Deed>({
    {ToolName::status, QT_TRANSLATE_NOOP("RequestTexts", "%1 is asking for the status"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 asked for the status"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to read the status")},
    {ToolName::listSessions, QT_TRANSLATE_NOOP("RequestTexts", "%1 is listing your sessions"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 listed your sessions"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to list your sessions")},
    {ToolName::getActiveSession, QT_TRANSLATE_NOOP("RequestTexts", "%1 is looking which session is in front"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 looked which session is in front"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to find the session in front")},
    {ToolName::createSession, QT_TRANSLATE_NOOP("RequestTexts", "%1 is opening a window"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 opened a window"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to open a window")},
    {ToolName::sendCommand, QT_TRANSLATE_NOOP("RequestTexts", "%1 is sending a command to %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 sent a command to %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to send a command to %2")},
    {ToolName::sendKey, QT_TRANSLATE_NOOP("RequestTexts", "%1 is pressing a key in %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 pressed a key in %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to press a key in %2")},
    {ToolName::readOutput, QT_TRANSLATE_NOOP("RequestTexts", "%1 is reading %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 read %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to read %2")},
    {ToolName::captureScreen, QT_TRANSLATE_NOOP("RequestTexts", "%1 is taking a picture of %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 took a picture of %2"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to take a picture of %2")},
    {ToolName::focusSession, QT_TRANSLATE_NOOP("RequestTexts", "%1 is bringing %2 to the front"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 brought %2 to the front"),
     QT_TRANSLATE_NOOP("RequestTexts", "%1 tried to bring %2 to the front")},
});

QString translated(const char* text) { return QCoreApplication::translate("RequestTexts", text); }

const char* wordsFor(const MCPRequestRecord& record) {
  const auto* deed = std::find_if(deeds.begin(), deeds.end(),
                                  [&](const auto& each) { return each.tool == record.toolName; });
  switch (record.status) {
    case RequestStatus::received:
    case RequestStatus::processing:
      return deed->underWay;
    case RequestStatus::delivered:
    case RequestStatus::readComplete:
      return deed->done;
    case RequestStatus::rejected:
    case RequestStatus::failed:
    case RequestStatus::cancelled:
      break;
  }
  return deed->tried;
}

// A client chooses its name; what it did must stay in sight.
QString shortName(const ClientIdentitySummary& client) {
  constexpr qsizetype most = 40;
  auto name = clientText({client.name, {}});
  if (name.size() <= most) return name;
  name.truncate(most - 1);
  if (name.back().isHighSurrogate()) name.chop(1);
  return name + "…";
}

}  // namespace

QString clientText(const ClientIdentitySummary& client) {
  if (client.name.empty()) return translated(QT_TRANSLATE_NOOP("RequestTexts", "An agent"));
  return text(client.version ? client.name + " " + *client.version : client.name);
}

QString deedText(const MCPRequestRecord& record) {
  const auto words = translated(wordsFor(record));
  const auto client = shortName(record.client);
  // Both at once: a name or a title may hold "%2" itself.
  return words.contains("%2") ? words.arg(client, sessionText(record)) : words.arg(client);
}

QString statusText(RequestStatus status) {
  switch (status) {
    case RequestStatus::received:
      return translated(QT_TRANSLATE_NOOP("RequestTexts", "Velmora has it."));
    case RequestStatus::processing:
      return translated(QT_TRANSLATE_NOOP("RequestTexts", "It is under way."));
    case RequestStatus::delivered:
      return translated(
          QT_TRANSLATE_NOOP("RequestTexts", "It reached the terminal. What came of it is not tracked."));
    case RequestStatus::readComplete:
      return translated(QT_TRANSLATE_NOOP("RequestTexts", "The agent got what it asked to read."));
    case RequestStatus::rejected:
      return translated(QT_TRANSLATE_NOOP("RequestTexts", "Velmora refused it."));
    case RequestStatus::failed:
      return translated(QT_TRANSLATE_NOOP("RequestTexts", "It was allowed, but did not work."));
    case RequestStatus::cancelled:
      break;
  }
  return translated(QT_TRANSLATE_NOOP("RequestTexts", "Velmora ended before it was done."));
}

// What went well is quiet, so that the little that did not is seen.
Meaning statusMeaning(RequestStatus status) {
  switch (status) {
    case RequestStatus::rejected:
    case RequestStatus::cancelled:
      return Meaning::Caution;
    case RequestStatus::failed:
      return Meaning::Danger;
    case RequestStatus::received:
    case RequestStatus::processing:
    case RequestStatus::delivered:
    case RequestStatus::readComplete:
      break;
  }
  return Meaning::Quiet;
}

}  // namespace velmora
