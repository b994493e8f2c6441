#include "VelmoraHelper/Commands/CallCommand.h"
#include "tests/VelmoraHelper/Commands/CommandFixture.h"

namespace velmora {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class CallCommand : public testing::CommandFixture {
 protected:
  ExitStatus call(const std::string& tool, const std::string& json = "{}") {
    return callTool(context(), tool, json);
  }
};

TEST_F(CallCommand, PrintsThePayloadWithDatesForPeopleAndNothingElse) {
  answer = [](const auto& request) { return success(request, StatusPayload{}); };
  EXPECT_EQ(call("terminal_status"), ExitStatus::success);
  EXPECT_TRUE(out.str().ends_with("}\n"));
  EXPECT_NE(out.str().find(R"("updatedAt": "2001-01-01T00:00:00.000Z")"), std::string::npos) << out.str();
  EXPECT_EQ(decodeJson<StatusPayload>(out.str(), JsonFormat::store), StatusPayload{});
  EXPECT_EQ(err.str(), "");
}

TEST_F(CallCommand, SendsTheArgumentsAndWhoCalls) {
  answer = [](const auto& request) { return success(request, FocusPayload{}); };
  EXPECT_EQ(call("terminal_send_command", R"({"command": "ls\n", "sessionId": "x", "other": [1, null]})"),
            ExitStatus::success);
  ASSERT_EQ(requests.size(), 1u);
  EXPECT_EQ(requests[0].operation, ToolName::sendCommand);
  EXPECT_EQ(requests[0].arguments,
            (JSONObject{{"command", "ls\n"}, {"sessionId", "x"}, {"other", JSONArray{1, nullptr}}}));
  EXPECT_EQ(requests[0].client.name, "velmora command line");
  EXPECT_EQ(requests[0].client.version, "1.2.3");
}

TEST_F(CallCommand, ReadsTheArgumentsFromItsInputWhenToldSo) {
  answer = [](const auto& request) { return success(request, FocusPayload{}); };
  in.str("{\n  \"command\": \"" + std::string(200000, 'x') + "\"\n}\n");
  EXPECT_EQ(call("terminal_send_command", "-"), ExitStatus::success);
  EXPECT_EQ(requests.at(0).arguments, (JSONObject{{"command", std::string(200000, 'x')}}));
}

TEST_F(CallCommand, SaysThatArgumentsFitNoRequest) {
  in.str("{\"command\": \"" + std::string(std::size_t{1} << 20, 'x') + "\"}");
  EXPECT_EQ(call("terminal_send_command", "-"), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("larger than a request may be, which is 1 MiB"));
  EXPECT_TRUE(requests.empty());
}

TEST_F(CallCommand, ExplainsARefusalOnTheErrorStream) {
  answer = [](const auto& request) {
    return failure(request, ErrorCode::sessionBusy, "Someone is typing.", "Wait, then retry.");
  };
  EXPECT_EQ(call("terminal_send_key"), ExitStatus::failure);
  EXPECT_EQ(out.str(), "");
  EXPECT_EQ(err.str(), "velmora: Someone is typing. (SESSION_BUSY)\nWait, then retry.\n");
}

TEST_F(CallCommand, ShowsWarningsBesideThePayload) {
  answer = [](const auto& request) {
    auto response = success(request, OutputPayload{});
    response.warnings = {*failure(request, ErrorCode::outputTruncated, "It was cut.").error};
    return response;
  };
  EXPECT_EQ(call("terminal_read_output"), ExitStatus::success);
  EXPECT_EQ(
      err.str(),
      "velmora: Only the end is shown. (OUTPUT_TRUNCATED)\nRaise maxCharacters, up to 50000, for more.\n");
  EXPECT_THAT(out.str(), StartsWith("{"));
}

TEST_F(CallCommand, SaysWhichArgumentTheApplicationCouldNotDecode) {
  answer = [](const auto& request) {
    return failure(request, ErrorCode::invalidArgument, "They could not be decoded.");
  };
  EXPECT_EQ(call("terminal_send_command", R"({"command":"ls"})"), ExitStatus::failure);
  EXPECT_THAT(err.str(), HasSubstr("\nsessionId is missing. "));
  err.str("");
  call("terminal_create_session", R"({"kind":"pane"})");
  EXPECT_THAT(err.str(), HasSubstr("\nkind: \"pane\" is none of window, tab.\n"));
  err.str("");
  call("terminal_read_output", R"({"sessionId":7})");
  EXPECT_THAT(err.str(), HasSubstr("\nsessionId: 7 is not a UUID. "));
  err.str("");
  call("terminal_list_sessions");
  EXPECT_EQ(err.str(), "velmora: They could not be decoded. (INVALID_ARGUMENT)\nRetry.\n");
}

TEST_F(CallCommand, SaysThatTheApplicationIsAbsent) {
  EXPECT_EQ(call("terminal_status"), ExitStatus::failure);
  EXPECT_EQ(err.str(),
            "velmora: Velmora is not running. (BRIDGE_UNAVAILABLE)\n"
            "Open Velmora (or start velmora-headless), then retry.\n");
}

TEST_F(CallCommand, GivesUpOnAnApplicationThatHangs) {
  answer = [this](const auto&) {
    return testing::recordOf(answerToSilence(testing::bridgeRequest(requests.back()), deadlines.back()));
  };
  EXPECT_EQ(call("terminal_status"), ExitStatus::failure);
  EXPECT_THAT(err.str(),
              StartsWith("velmora: Velmora did not answer within 60 seconds. (BRIDGE_UNAVAILABLE)\n"));
}

TEST_F(CallCommand, NamesTheToolThatWasMeant) {
  EXPECT_EQ(call("terminal_sned_key"), ExitStatus::usage);
  EXPECT_EQ(err.str(), "velmora: there is no tool \"terminal_sned_key\"; did you mean terminal_send_key?\n");
  err.str("");
  EXPECT_EQ(call("capture_screen"), ExitStatus::usage);
  EXPECT_THAT(err.str(), HasSubstr("did you mean terminal_capture_screen?"));
  EXPECT_TRUE(requests.empty());
}

TEST_F(CallCommand, ListsTheToolsWhenNoneIsLikeTheOneAskedFor) {
  EXPECT_EQ(call("frobnicate\x1B[2J"), ExitStatus::usage);
  EXPECT_THAT(err.str(), StartsWith("velmora: there is no tool \"frobnicate?[2J\"; the tools are:\n"));
  for (const auto& tool : enumCases<ToolName>) {
    EXPECT_THAT(err.str(), HasSubstr("\n  " + std::string(tool.wireName)));
  }
}

TEST_F(CallCommand, RefusesArgumentsThatAreNoJsonObject) {
  for (const auto* json : {"", "{", "{'a': 1}", "{} {}", "\xFF"}) {
    err.str("");
    EXPECT_EQ(call("terminal_status", json), ExitStatus::usage) << json;
    EXPECT_THAT(err.str(), StartsWith("velmora: the arguments: no valid JSON")) << json;
  }
  for (const auto* json : {"[]", "null", "1", "\"text\""}) {
    err.str("");
    EXPECT_EQ(call("terminal_status", json), ExitStatus::usage) << json;
    EXPECT_THAT(err.str(), HasSubstr("must be a JSON object")) << json;
  }
  EXPECT_EQ(out.str(), "");
  EXPECT_TRUE(requests.empty());
}

TEST_F(CallCommand, RefusesEndlessInput) {
  in.str("{\"command\": \"" + std::string(3 << 20, 'x') + "\"}");
  EXPECT_EQ(call("terminal_send_command", "-"), ExitStatus::usage);
  EXPECT_LT(in.tellg(), 2 << 20);
}

}  // namespace
}  // namespace velmora
