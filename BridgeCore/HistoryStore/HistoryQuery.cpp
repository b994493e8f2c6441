#include "BridgeCore/HistoryStore/HistoryQuery.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

#include "BridgeModels/Calendar.h"
#include "BridgeModels/Text.h"

namespace velmora {

namespace {

bool contains(const std::optional<std::string>& text, const std::string& part) {
  return text && containsIgnoringCase(*text, part);
}

bool sessionContains(const SessionReference& session, const std::string& part) {
  return contains(session.title, part) || containsIgnoringCase(session.sessionId.toString(), part) ||
         contains(session.tty, part);
}

bool matchesQuery(const MCPRequestRecord& record, const std::string& query) {
  return contains(record.commandSummary, query) || containsIgnoringCase(wireName(record.toolName), query) ||
         (record.sessionSnapshot && sessionContains(*record.sessionSnapshot, query)) ||
         (record.error && containsIgnoringCase(wireName(record.error->code), query)) ||
         containsIgnoringCase(record.client.name, query);
}

}  // namespace

bool HistoryQueryService::matches(const MCPRequestRecord& record, const HistoryFilter& filter) {
  const auto& session = record.sessionSnapshot;
  if (filter.tool && record.toolName != *filter.tool) return false;
  if (filter.sessionId && !(session && session->sessionId == *filter.sessionId)) return false;
  if (filter.clientName && !containsIgnoringCase(record.client.name, *filter.clientName)) return false;
  if (!filter.statuses.empty() && !filter.statuses.contains(record.status)) return false;
  if (filter.errorCode && !(record.error && record.error->code == *filter.errorCode)) return false;
  return filter.query.empty() || matchesQuery(record, filter.query);
}

std::vector<MCPRequestRecord> HistoryQueryService::filter(const std::vector<MCPRequestRecord>& records,
                                                          const HistoryFilter& filter) {
  std::vector<MCPRequestRecord> matching;
  std::copy_if(records.begin(), records.end(), std::back_inserter(matching),
               [&](const auto& record) { return matches(record, filter); });
  return matching;
}

std::vector<MCPRequestRecord> HistoryQueryService::retain(const std::vector<MCPRequestRecord>& records,
                                                          const PrivacyRetentionSettings& settings,
                                                          Date now) {
  const auto cutoff = daysBefore(now, settings.retentionDays);
  std::vector<const MCPRequestRecord*> kept;
  kept.reserve(records.size());
  for (const auto& record : records) {
    if (record.receivedAt >= cutoff) kept.push_back(&record);
  }
  std::stable_sort(kept.begin(), kept.end(),
                   [](const auto* a, const auto* b) { return a->receivedAt > b->receivedAt; });
  const auto most = static_cast<std::size_t>(std::max<std::int64_t>(settings.maximumRecordCount, 0));
  if (kept.size() > most) kept.resize(most);
  std::vector<MCPRequestRecord> retained;
  retained.reserve(kept.size());
  for (const auto* record : kept) retained.push_back(*record);
  return retained;
}

std::vector<MCPRequestRecord> HistoryQueryService::delete_(const Uuid& requestId,
                                                           std::vector<MCPRequestRecord> records) {
  std::erase_if(records, [&](const auto& record) { return record.requestId == requestId; });
  return records;
}

}  // namespace velmora
