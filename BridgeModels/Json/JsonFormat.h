// The two forms of JSON that the bridge writes and reads.
#pragma once

namespace velmora {

enum class JsonFormat {
  wire,   ///< Compact, keys in field order, dates as seconds since 2001-01-01T00:00:00Z.
  store,  ///< Pretty-printed, keys sorted, dates as ISO 8601 text: the settings and history files.
};

}  // namespace velmora
