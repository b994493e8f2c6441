#include "VelmoraApp/Navigation/OtherBridgeViewModel.h"

#include "VelmoraApp/AppModel/Texts.h"

namespace velmora {

QString OtherBridgeViewModel::title() const {
  const auto& other = model_.serving().otherBridge();
  if (!other) return {};
  QStringList known;
  if (!other->about.name.empty()) known.append(velmora::text(other->about.name));
  if (other->process) known.append(tr("process %1").arg(*other->process));
  if (other->about.startedAt) {
    const auto start = Date::fromUnixSeconds(*other->about.startedAt);
    known.append(tr("since %1").arg(timeText(start, model_.clock()(), TimeDetail::minutes)));
  }
  const auto title = tr("Another bridge of yours is serving");
  return known.isEmpty() ? title : title + ": " + known.join(", ");
}

QString OtherBridgeViewModel::text() const {
  return tr("MCP clients reach that bridge. This window can neither pause it nor show what it does.");
}

QString OtherBridgeViewModel::takeOverText() const {
  return isUnderWay() ? tr("Ending it…") : tr("End it and take over");
}

QString OtherBridgeViewModel::problem() const { return serves() ? model_.serving().problem() : QString(); }

}  // namespace velmora
