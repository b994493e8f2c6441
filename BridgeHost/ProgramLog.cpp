#include "BridgeHost/ProgramLog.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

spdlog::level::level_enum levelOf(LogLevel level) {
  switch (level) {
    case LogLevel::debug:
      return spdlog::level::debug;
    case LogLevel::info:
      return spdlog::level::info;
    case LogLevel::warning:
      return spdlog::level::warn;
    case LogLevel::error:
      break;
  }
  return spdlog::level::err;
}

// The priorities of syslog, as sd-daemon(3) has them at the start of a line.
class JournalPriority final : public spdlog::custom_flag_formatter {
 public:
  void format(const spdlog::details::log_msg& message, const std::tm&, spdlog::memory_buf_t& line) override {
    const std::string_view priority = message.level >= spdlog::level::critical ? "<2>"
                                      : message.level == spdlog::level::err    ? "<3>"
                                      : message.level == spdlog::level::warn   ? "<4>"
                                      : message.level == spdlog::level::info   ? "<6>"
                                                                               : "<7>";
    line.append(priority.data(), priority.data() + priority.size());
  }
  std::unique_ptr<custom_flag_formatter> clone() const override {
    return std::make_unique<JournalPriority>();
  }
};

std::shared_ptr<spdlog::logger> journalLogger() {
  auto logger = std::make_shared<spdlog::logger>("", std::make_shared<spdlog::sinks::stderr_sink_mt>());
  auto formatter = std::make_unique<spdlog::pattern_formatter>();
  formatter->add_flag<JournalPriority>('*').set_pattern("%*%v");
  logger->set_formatter(std::move(formatter));
  return logger;
}

std::shared_ptr<spdlog::logger> plainLogger() {
  auto logger = std::make_shared<spdlog::logger>("", std::make_shared<spdlog::sinks::stderr_color_sink_mt>());
  logger->set_pattern("%Y-%m-%d %H:%M:%S.%e %^%l%$ %v");
  return logger;
}

}  // namespace

Log programLog(const Environment& environment) {
  auto logger = isJournal(environment, STDERR_FILENO) ? journalLogger() : plainLogger();
  spdlog::set_default_logger(logger);
  return Log([logger](LogLevel level, std::string_view area, std::string_view words) {
    logger->log(levelOf(level), "{}: {}", area, words);
  });
}

bool isJournal(const Environment& environment, int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 &&
         environmentValue(environment, "JOURNAL_STREAM") ==
             std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

}  // namespace velmora
