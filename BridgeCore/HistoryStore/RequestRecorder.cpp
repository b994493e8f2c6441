#include "BridgeCore/HistoryStore/RequestRecorder.h"

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "BridgeModels/Text.h"

namespace velmora {

namespace {

constexpr std::int64_t summaryCharacters = 256;

// Cut towards zero, and never negative: clocks are set back now and then.
std::int64_t millisecondsBetween(Date start, Date end) {
  const double milliseconds = (end.secondsSinceReferenceDate - start.secondsSinceReferenceDate) * 1000;
  return milliseconds > 0 ? static_cast<std::int64_t>(milliseconds) : 0;
}

// Turns oldest first into newest first and back. Files keep whole seconds only, so sorting by time would mix
// up the records of a second.
std::vector<MCPRequestRecord> reversed(const std::vector<MCPRequestRecord>& records) {
  return {records.rbegin(), records.rend()};
}

}  // namespace

MCPRequestRecord RequestRecorder::begin(const Uuid& requestId, const ClientIdentitySummary& client,
                                        ToolName tool, const std::optional<SessionReference>& session) {
  MCPRequestRecord record{.requestId = requestId,
                          .receivedAt = now_(),
                          .client = client,
                          .toolName = tool,
                          .sessionSnapshot = session,
                          .status = RequestStatus::processing};
  const MutexLock lock(mutex_);
  ++revision_;
  records_.push_back(record);
  firstWithId_.try_emplace(requestId, records_.size() - 1);
  return record;
}

void RequestRecorder::complete(const Uuid& requestId, RequestStatus status,
                               std::optional<std::int64_t> outputCharacterCount,
                               std::optional<bool> outputTruncated,
                               const std::optional<StructuredError>& error) {
  const auto completedAt = now_();
  const MutexLock lock(mutex_);
  auto* record = findForChange(requestId);
  if (record == nullptr) return;
  record->status = status;
  record->completedAt = completedAt;
  record->durationMilliseconds = millisecondsBetween(record->receivedAt, completedAt);
  record->outputCharacterCount = outputCharacterCount;
  record->outputTruncated = outputTruncated;
  record->error = error;
}

void RequestRecorder::setSensitiveContent(const Uuid& requestId, const std::optional<std::string>& command,
                                          const std::optional<std::string>& output,
                                          const PrivacyRetentionSettings& settings) {
  const MutexLock lock(mutex_);
  auto* record = findForChange(requestId);
  if (record == nullptr) return;
  if (settings.storeCommandBody && command) {
    record->commandBody = command;
    record->commandSummary = firstCharacters(*command, summaryCharacters);
  }
  if (settings.storeOutputPreview && output) {
    record->outputPreview = firstCharacters(*output, settings.outputPreviewMaxCharacters);
  }
}

void RequestRecorder::persist(HistoryStore& store, const PrivacyRetentionSettings& settings) {
  const MutexLock order(storeOrder_);
  const auto now = now_();
  std::vector<MCPRequestRecord> retained;
  {
    const MutexLock lock(mutex_);
    retained = HistoryQueryService::retain(reversed(records_), settings, now);
    setRecords(reversed(retained));
  }
  store.save(std::move(retained), settings);
}

void RequestRecorder::scrub(HistoryStore& store, const PrivacyRetentionSettings& settings) {
  const MutexLock order(storeOrder_);
  std::vector<MCPRequestRecord> scrubbed;
  {
    const MutexLock lock(mutex_);
    ++revision_;
    for (auto& record : records_) {
      if (!settings.storeCommandBody) {
        record.commandBody.reset();
        record.commandSummary.reset();
      }
      if (!settings.storeOutputPreview) record.outputPreview.reset();
    }
    scrubbed = reversed(records_);
  }
  store.save(std::move(scrubbed), settings);
}

void RequestRecorder::clear(HistoryStore& store) {
  const MutexLock order(storeOrder_);
  replace({});
  store.delete_();
}

std::vector<MCPRequestRecord> RequestRecorder::snapshot() const {
  const MutexLock lock(mutex_);
  return records_;
}

void RequestRecorder::replace(std::vector<MCPRequestRecord> records) {
  const MutexLock lock(mutex_);
  setRecords(std::move(records));
}

void RequestRecorder::prepend(const std::vector<MCPRequestRecord>& loaded) {
  auto records = reversed(loaded);
  const MutexLock lock(mutex_);
  records.insert(records.end(), records_.begin(), records_.end());
  setRecords(std::move(records));
}

std::uint64_t RequestRecorder::revision() const {
  const MutexLock lock(mutex_);
  return revision_;
}

MCPRequestRecord* RequestRecorder::findForChange(const Uuid& requestId) {
  const auto found = firstWithId_.find(requestId);
  if (found == firstWithId_.end()) return nullptr;
  ++revision_;
  return &records_[found->second];
}

void RequestRecorder::setRecords(std::vector<MCPRequestRecord> records) {
  std::unordered_map<Uuid, std::size_t> firstWithId;
  firstWithId.reserve(records.size());
  for (std::size_t index = 0; index < records.size(); ++index) {
    firstWithId.try_emplace(records[index].requestId, index);
  }
  ++revision_;
  records_ = std::move(records);
  firstWithId_ = std::move(firstWithId);
}

}  // namespace velmora
