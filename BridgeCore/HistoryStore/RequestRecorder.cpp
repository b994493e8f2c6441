#include "BridgeCore/HistoryStore/RequestRecorder.h"

#include <algorithm>

#include "BridgeCore/HistoryStore/HistoryQuery.h"
#include "BridgeModels/Calendar.h"
#include "BridgeModels/Text.h"

namespace velmora {

namespace {

constexpr std::int64_t summaryCharacters = 256;
// No setting keeps more, and some clients only ever make calls that are not followed by a save.
constexpr auto mostRecords =
    static_cast<std::size_t>(PrivacyRetentionSettings::maximumRecordCountRange.maximum);

// Cut towards zero, and never negative: clocks are set back now and then.
std::int64_t millisecondsBetween(Date start, Date end) {
  const double milliseconds = (end.secondsSinceReferenceDate - start.secondsSinceReferenceDate) * 1000;
  return milliseconds > 0 ? static_cast<std::int64_t>(milliseconds) : 0;
}

// Turns oldest first into newest first and back. Files keep whole seconds only, so sorting by time would mix
// up the records of a second.
template <class Records>
std::vector<MCPRequestRecord> reversed(const Records& records) {
  return {records.rbegin(), records.rend()};
}

}  // namespace

MCPRequestRecord RequestRecorder::begin(const Uuid& requestId, const ClientIdentitySummary& client,
                                        ToolName tool, const std::optional<SessionReference>& session) {
  const MutexLock lock(mutex_);
  MCPRequestRecord record{.requestId = requestId,
                          .receivedAt = now_(),  // under the lock, so that times ascend along the list
                          .client = client,
                          .toolName = tool,
                          .sessionSnapshot = session,
                          .status = RequestStatus::processing};
  ++revision_;
  add(record);
  if (records_.size() > mostRecords) {
    dropOldest();
    if (idsRepeat_) setRecords(std::move(records_));
  }
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
  persistInOrder(store, settings);
}

void RequestRecorder::persist(HistoryStore& store, const PrivacySettingsStore& settings) {
  const MutexLock order(storeOrder_);
  persistInOrder(store, settings.current());
}

void RequestRecorder::persistInOrder(HistoryStore& store, const PrivacyRetentionSettings& settings) {
  const auto now = now_();
  {
    const MutexLock lock(mutex_);
    retain(settings, now);
  }
  if (settings.persistentHistoryEnabled || emptyStore_ != &store) save(store, settings);
  if (settings.persistentHistoryEnabled) store.forgetUnreadable(daysBefore(now, settings.retentionDays));
}

bool RequestRecorder::hasUnsavedChanges() const {
  const MutexLock lock(mutex_);
  return revision_ != savedRevision_;
}

void RequestRecorder::scrub(HistoryStore& store, const PrivacyRetentionSettings& settings) {
  const MutexLock order(storeOrder_);
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
  }
  save(store, settings);
}

void RequestRecorder::save(HistoryStore& store, const PrivacyRetentionSettings& settings) {
  emptyStore_ = nullptr;
  if (!settings.persistentHistoryEnabled) {
    store.save({}, settings);
    emptyStore_ = &store;
    return;
  }
  std::vector<MCPRequestRecord> newestFirst;
  std::uint64_t revision = 0;
  {
    const MutexLock lock(mutex_);
    newestFirst = reversed(records_);
    revision = revision_;
  }
  store.save(std::move(newestFirst), settings);
  const MutexLock lock(mutex_);
  savedRevision_ = revision;
}

void RequestRecorder::clear(HistoryStore& store) {
  const MutexLock order(storeOrder_);
  std::uint64_t revision = 0;
  {
    const MutexLock lock(mutex_);
    setRecords(std::vector<MCPRequestRecord>());
    revision = revision_;
  }
  store.delete_();
  emptyStore_ = &store;
  const MutexLock lock(mutex_);
  savedRevision_ = revision;
}

std::vector<MCPRequestRecord> RequestRecorder::snapshot() const {
  const MutexLock lock(mutex_);
  return {records_.begin(), records_.end()};
}

void RequestRecorder::replace(std::vector<MCPRequestRecord> records) {
  const MutexLock lock(mutex_);
  setRecords(std::move(records));
}

void RequestRecorder::restore(std::vector<MCPRequestRecord> loaded) {
  const MutexLock lock(mutex_);
  bool isAsSaved = revision_ == savedRevision_;
  for (auto& record : loaded) {
    if (record.status != RequestStatus::processing) continue;
    record.status = RequestStatus::cancelled;
    isAsSaved = false;
  }
  auto records = reversed(loaded);
  records.insert(records.end(), records_.begin(), records_.end());
  setRecords(std::move(records));
  if (isAsSaved) savedRevision_ = revision_;
}

std::uint64_t RequestRecorder::revision() const {
  const MutexLock lock(mutex_);
  return revision_;
}

MCPRequestRecord* RequestRecorder::findForChange(const Uuid& requestId) {
  const auto found = firstWithId_.find(requestId);
  if (found == firstWithId_.end()) return nullptr;
  ++revision_;
  return &records_[static_cast<std::size_t>(found->second - numberOfOldest_)];
}

// What HistoryQueryService::retain keeps. As long as times ascend, that is the end of the list.
void RequestRecorder::retain(const PrivacyRetentionSettings& settings, Date now) {
  if (!timesAscend_)
    return setRecords(reversed(HistoryQueryService::retain(reversed(records_), settings, now)));
  const auto most = static_cast<std::size_t>(std::max<std::int64_t>(settings.maximumRecordCount, 0));
  const auto cutoff = daysBefore(now, settings.retentionDays);
  const auto before = records_.size();
  while (!records_.empty() && (records_.size() > most || records_.front().receivedAt < cutoff)) dropOldest();
  if (records_.size() == before) return;
  if (idsRepeat_) return setRecords(std::move(records_));
  ++revision_;
}

void RequestRecorder::add(MCPRequestRecord record) {
  if (!firstWithId_.try_emplace(record.requestId, numberOfOldest_ + records_.size()).second)
    idsRepeat_ = true;
  if (!records_.empty() && record.receivedAt < records_.back().receivedAt) timesAscend_ = false;
  records_.push_back(std::move(record));
}

void RequestRecorder::dropOldest() {
  firstWithId_.erase(records_.front().requestId);
  records_.pop_front();
  ++numberOfOldest_;
}

template <class Records>
void RequestRecorder::setRecords(Records records) {
  ++revision_;
  records_.clear();
  firstWithId_.clear();
  numberOfOldest_ = 0;
  idsRepeat_ = false;
  timesAscend_ = true;
  for (auto& record : records) add(std::move(record));
}

}  // namespace velmora
