// Every record's bytes are pinned in tests/data/records, and each reads back as it was.
#include <gtest/gtest.h>

#include "BridgeModels/Json/JsonEncoding.h"
#include "BridgeModels/Json/JsonReader.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "BridgeModels/TerminalOutput.h"
#include "tests/support/Golden.h"
#include "tests/support/SampleRecords.h"

namespace velmora {
namespace {

using testing::sampleId;

template <class Record>
void expectPinned(const std::string& name, const Record& record) {
  const auto text = encodeJson(record);
  testing::expectGolden("records/" + name + ".json", text);
  EXPECT_EQ(decodeJson<Record>(text), record);
  EXPECT_EQ(decodeJson<Record>(encodeJson(decodeJson<JSONValue>(text))), record)
      << "key order must not matter";
}

TEST(RecordJson, SessionReferenceIsPinned) {
  expectPinned("SessionReference", testing::sampleReference());
  EXPECT_EQ(encodeJson(SessionReference{.sessionId = sampleId('A')}),
            R"({"sessionId":"AAAAAAAA-0000-4000-8000-AAAAAAAAAAAA"})");
}
TEST(RecordJson, StructuredErrorIsPinned) { expectPinned("StructuredError", testing::sampleError()); }
TEST(RecordJson, ClientIdentityIsPinned) { expectPinned("ClientIdentity", testing::sampleClient()); }
TEST(RecordJson, ClientIdentitySummaryIsPinned) {
  expectPinned("ClientIdentitySummary", ClientIdentitySummary{"some client", std::nullopt});
}
TEST(RecordJson, TerminalTabSnapshotIsPinned) {
  expectPinned("TerminalTabSnapshot", testing::sampleSnapshot());
}
TEST(RecordJson, TerminalSessionIsPinned) { expectPinned("TerminalSession", testing::sampleSession()); }
TEST(RecordJson, BridgeStatusIsPinned) { expectPinned("BridgeStatus", testing::sampleStatus()); }
TEST(RecordJson, MCPRequestRecordIsPinned) { expectPinned("MCPRequestRecord", testing::sampleRecord()); }
TEST(RecordJson, PrivacyRetentionSettingsIsPinned) {
  expectPinned("PrivacyRetentionSettings", PrivacyRetentionSettings{});
}
TEST(RecordJson, TerminalOutputIsPinned) {
  expectPinned("TerminalOutput", TerminalOutput{"$ ls\n", OutputSource::history, 5});
}
TEST(RecordJson, TerminalScreenCaptureIsPinned) {
  expectPinned("TerminalScreenCapture", TerminalScreenCapture{"/tmp/a.png"});
}

TEST(RecordJson, InputsArePinned) {
  expectPinned("EmptyInput", EmptyInput{});
  expectPinned("SessionTargetInput", SessionTargetInput{sampleId('A')});
  expectPinned("ListSessionsInput", ListSessionsInput{});
  expectPinned("CreateSessionInput", CreateSessionInput{SessionCreationKind::tab, sampleId('A')});
  expectPinned("SendCommandInput", SendCommandInput{sampleId('A'), "ls"});
  expectPinned("SendKeyInput", SendKeyInput{sampleId('A'), TerminalKey::return_, 3});
  expectPinned("ReadOutputInput", ReadOutputInput{sampleId('A'), OutputSource::history, 100});
}

TEST(RecordJson, PayloadsArePinned) {
  expectPinned("StatusPayload", StatusPayload{testing::sampleStatus()});
  expectPinned("SessionsPayload", SessionsPayload{{testing::sampleSession()}});
  expectPinned("SessionPayload", SessionPayload{testing::sampleSession()});
  expectPinned("CommandPayload", CommandPayload(sampleId('A'), Date{1.5}));
  expectPinned("KeyPayload", KeyPayload(sampleId('A'), TerminalKey::delete_, 50, Date{1.5}));
  expectPinned("OutputPayload", OutputPayload{sampleId('A'), OutputSource::visible, "text", 4, true});
  expectPinned("CapturePayload", CapturePayload(sampleId('A'), "/tmp/a.png", Date{1.5}));
  expectPinned("FocusPayload", FocusPayload{sampleId('A'), Date{1.5}});
}

TEST(RecordJson, ToolResultsArePinned) {
  using Result = ToolResult<CommandPayload>;
  expectPinned("ToolResult.success", Result{.requestId = sampleId('D'),
                                            .ok = true,
                                            .data = CommandPayload(sampleId('A'), Date{1.5}),
                                            .warnings = {testing::sampleError()}});
  expectPinned("ToolResult.failure",
               Result{.requestId = sampleId('D'), .ok = false, .error = testing::sampleError()});
}

TEST(RecordJson, ASuccessHasNoErrorKeyAndAlwaysWarnings) {
  const auto text = encodeJson(ToolResult<FocusPayload>{.ok = true, .data = FocusPayload{}});
  EXPECT_EQ(text.find("\"error\""), std::string::npos);
  EXPECT_NE(text.find("\"warnings\":[]"), std::string::npos);
}

TEST(RecordJson, AnAbsentOptionalIsLeftOutAndNullReadsAsAbsent) {
  auto session = testing::sampleSession();
  session.lastRequestAt.reset();
  auto text = encodeJson(session);
  EXPECT_EQ(text.find("lastRequestAt"), std::string::npos);
  text.insert(text.size() - 1, ",\"lastRequestAt\":null");
  EXPECT_EQ(decodeJson<TerminalSession>(text), session);
}

TEST(RecordJson, TheStoreFormSortsKeysAndWritesIsoDates) {
  testing::expectGolden("records/MCPRequestRecord.store.json",
                        encodeJson(testing::sampleRecord(), JsonFormat::store));
  EXPECT_EQ(
      decodeJson<MCPRequestRecord>(encodeJson(testing::sampleRecord(), JsonFormat::store), JsonFormat::store),
      testing::sampleRecord());
}

TEST(RecordJson, ASessionPointsToItselfWithTitleAndTty) {
  EXPECT_EQ(testing::sampleSession().reference(), testing::sampleReference());
}

}  // namespace
}  // namespace velmora
