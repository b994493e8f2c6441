// `velmora config [CLIENT]`: what connects an MCP client, printed or put where it belongs.
#pragma once

#include <optional>
#include <string>

#include "BridgeModels/ToolForm.h"
#include "VelmoraHelper/Commands/CommandContext.h"

namespace velmora {

/// Prints the client's snippet with this program's own path, and on `err` where it goes; the clients when
/// `client` is empty. With a `host`, what launches the helper of that machine over SSH.
ExitStatus printConfig(const CommandContext& context, const std::string& client,
                       ToolForm form = ToolForm::plain, const std::optional<std::string>& host = {});

/// What `--apply` and `--remove` ask for, and `--dry-run`.
struct ConfigAction {
  bool removes = false;
  bool isRehearsal = false;
};

/// Puts the entry that printConfig prints into the client's own configuration, or takes it out.
ExitStatus changeConfig(const CommandContext& context, const std::string& client, ConfigAction action,
                        ToolForm form = ToolForm::plain, const std::optional<std::string>& host = {});

}  // namespace velmora
