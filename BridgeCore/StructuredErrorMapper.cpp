#include "BridgeCore/StructuredErrorMapper.h"

#include "BridgeCore/ErrorCatalogue.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/ToolInputs.h"
#include "TerminalAutomation/PlatformError.h"

namespace velmora {

StructuredError StructuredErrorMapper::map(const std::exception_ptr& error, std::string_view operation,
                                           const std::optional<SessionReference>& session) {
  try {
    std::rethrow_exception(error);
  } catch (const StructuredError& structured) {
    return structured;
  } catch (const ToolValidationError& validation) {
    return invalidArgument(validation.message(), operation, session);
  } catch (const JsonDecodeError&) {
    return catalogue::undecodableArguments(operation, session);
  } catch (const PlatformError& platform) {
    if (platform.code() == platformErrorCode::notPermitted) {
      return catalogue::automationPermissionDenied(operation, session);
    }
    if (platform.code() == platformErrorCode::notRunning) {
      return catalogue::terminalNotRunning(operation, session);
    }
    return catalogue::automationFailed(operation, session);
  } catch (...) {  // whatever else it is, the client hears that the operation failed
    return catalogue::automationFailed(operation, session);
  }
}

StructuredError StructuredErrorMapper::warningForTruncation(std::string_view operation,
                                                            const SessionReference& session) {
  return catalogue::outputTruncated(operation, session);
}

StructuredError StructuredErrorMapper::invalidArgument(const std::string& message, std::string_view operation,
                                                       const std::optional<SessionReference>& session) {
  return catalogue::invalidArgument(message, operation, session);
}

std::string problemSentence(const std::exception_ptr& error) {
  try {
    std::rethrow_exception(error);
  } catch (const StructuredError& structured) {
    return structured.message + " " + structured.recoverySuggestion;
  } catch (const std::exception& other) {
    return other.what();
  } catch (...) {
    return "Something went wrong that has no name.";
  }
}

}  // namespace velmora
