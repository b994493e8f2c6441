#include "VelmoraHelper/Bridge/ToolCaller.h"

#include <exception>

#include "VelmoraHelper/Bridge/CallFailure.h"

namespace velmora {

LocalControlResponse ToolCaller::call(ToolName tool, JSONObject arguments, LocalClientInput client) const {
  const LocalControlRequest request{.requestId = newId_(),
                                    .client = std::move(client),
                                    .operation = tool,
                                    .arguments = std::move(arguments)};
  try {
    return explained(request, bridge_(request));
  } catch (const std::exception&) {
    return answerToFailure(request, std::current_exception());
  }
}

}  // namespace velmora
