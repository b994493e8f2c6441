// Looks at a call's arguments before they are sent, because only the helper can say to an agent what it got
// wrong and what it may have meant: the application answers every such call with the same sentence.
#pragma once

#include <boost/json/object.hpp>
#include <optional>
#include <string>

#include "BridgeModels/ToolForm.h"
#include "BridgeModels/ToolName.h"

namespace velmora {

/// What is wrong with the first argument that the application could not decode, and what was meant, in a
/// sentence or two; nothing when it can decode them all. Unknown arguments are ignored, as the application
/// does; so are those of the extended form in the plain one. Ranges are the application's: it names them
/// itself, and keeps a record of the call.
std::optional<std::string> argumentFault(ToolName tool, const boost::json::object& arguments,
                                         ToolForm form = ToolForm::plain);

/// Whether the arguments mean something else to an application that knows only the plain form.
bool usesExtendedForm(ToolName tool, const boost::json::object& arguments);

}  // namespace velmora
