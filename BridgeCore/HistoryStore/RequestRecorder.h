// The history of this run in memory: one record a tool call, from the moment the call arrives.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "BridgeCore/HistoryStore/HistoryStore.h"
#include "BridgeCore/HistoryStore/PrivacySettingsStore.h"
#include "BridgeModels/Date.h"
#include "BridgeModels/MCPRequestRecord.h"
#include "BridgeModels/PrivacyRetentionSettings.h"
#include "System/Mutex.h"

namespace velmora {

/// A monitor. The list is ordered oldest first; between two persists it grows by one record a call, up to the
/// largest number that a setting keeps, from which on the oldest go. What names an unknown request does
/// nothing, and of two records with the same id the first is meant. The operations that use a store run one
/// after the other, so an older list never replaces a newer one on disk; the others do not wait for them.
/// They throw the store's errors; the list in memory stays changed.
class RequestRecorder {
 public:
  explicit RequestRecorder(Clock now) : now_(std::move(now)) {}

  /// Appends a record in processing, received now, and returns it.
  MCPRequestRecord begin(const Uuid& requestId, const ClientIdentitySummary& client, ToolName tool,
                         const std::optional<SessionReference>& session);

  /// Closes the record, now.
  void complete(const Uuid& requestId, RequestStatus status, std::optional<std::int64_t> outputCharacterCount,
                std::optional<bool> outputTruncated, const std::optional<StructuredError>& error);

  /// Fills in the command and the output as far as the settings allow it. Nothing is masked.
  void setSensitiveContent(const Uuid& requestId, const std::optional<std::string>& command,
                           const std::optional<std::string>& output,
                           const PrivacyRetentionSettings& settings);

  /// Drops what retention does not keep, also an unreadable history, and saves the rest when the history is
  /// kept. When it is not, what a store still holds is deleted the first time; after that no file is looked
  /// at. With a settings store, the settings count that hold when this save's turn has come: one that had to
  /// wait while the user switched the history off writes nothing.
  void persist(HistoryStore& store, const PrivacyRetentionSettings& settings);
  void persist(HistoryStore& store, const PrivacySettingsStore& settings);

  /// Whether the list has changed since it was last saved or restored.
  bool hasUnsavedChanges() const;

  /// Removes what the settings no longer allow to be stored, and saves.
  void scrub(HistoryStore& store, const PrivacyRetentionSettings& settings);

  /// Empties the list and deletes the store's file.
  void clear(HistoryStore& store);

  std::vector<MCPRequestRecord> snapshot() const;

  /// Grows with every change of the list. Whoever asked before taking a snapshot knows later whether the
  /// snapshot is still good.
  std::uint64_t revision() const;

  void replace(std::vector<MCPRequestRecord> records);

  /// Puts the records of earlier runs, newest first as a store returns them, before those of this run. One
  /// that was still in processing when its run ended is cancelled: nobody will ever complete it.
  void restore(std::vector<MCPRequestRecord> loaded);

 private:
  MCPRequestRecord* findForChange(const Uuid& requestId) VELMORA_REQUIRES(mutex_);
  void persistInOrder(HistoryStore& store, const PrivacyRetentionSettings& settings)
      VELMORA_REQUIRES(storeOrder_);
  void save(HistoryStore& store, const PrivacyRetentionSettings& settings) VELMORA_REQUIRES(storeOrder_);
  void retain(const PrivacyRetentionSettings& settings, Date now) VELMORA_REQUIRES(mutex_);
  void add(MCPRequestRecord record) VELMORA_REQUIRES(mutex_);
  void dropOldest() VELMORA_REQUIRES(mutex_);
  template <class Records>
  void setRecords(Records records) VELMORA_REQUIRES(mutex_);

  const Clock now_;

  Mutex storeOrder_;  // taken before mutex_; the only one held while a store works
  const HistoryStore* emptyStore_ VELMORA_GUARDED_BY(storeOrder_) = nullptr;  // known to hold no file

  mutable Mutex mutex_;
  std::deque<MCPRequestRecord> records_ VELMORA_GUARDED_BY(mutex_);
  // Records are numbered from the first one on, so that a number stays good when older ones are dropped.
  std::uint64_t numberOfOldest_ VELMORA_GUARDED_BY(mutex_) = 0;
  std::unordered_map<Uuid, std::uint64_t> firstWithId_ VELMORA_GUARDED_BY(mutex_);
  bool idsRepeat_ VELMORA_GUARDED_BY(mutex_) = false;
  bool timesAscend_ VELMORA_GUARDED_BY(mutex_) = true;  // no record was received before the one it follows
  std::uint64_t revision_ VELMORA_GUARDED_BY(mutex_) = 0;
  std::uint64_t savedRevision_ VELMORA_GUARDED_BY(mutex_) = 0;
};

}  // namespace velmora
