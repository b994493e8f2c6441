#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <future>
#include <sstream>
#include <string>
#include <system_error>

#include "BridgeHost/ProgramLog.h"
#include "System/FileDescriptor.h"

namespace velmora {
namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

Environment journalOf(int descriptor) {
  struct stat status {};
  EXPECT_EQ(::fstat(descriptor, &status), 0);
  return {{"JOURNAL_STREAM", std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino)}};
}

TEST(ProgramLog, KnowsTheJournalByItsStream) {
  EXPECT_TRUE(isJournal(journalOf(STDERR_FILENO), STDERR_FILENO));
  EXPECT_FALSE(isJournal({}, STDERR_FILENO));
  EXPECT_FALSE(isJournal({{"JOURNAL_STREAM", ""}}, STDERR_FILENO));
  EXPECT_FALSE(isJournal({{"JOURNAL_STREAM", "8:123456789"}}, STDERR_FILENO)) << "someone else's stream";
  EXPECT_FALSE(isJournal(journalOf(STDERR_FILENO), -1));
}

TEST(ProgramLog, GivesTheJournalPrioritiesAndNoTime) {
  CaptureStderr();
  const auto log = programLog(journalOf(STDERR_FILENO));
  log.error("socket", "one");
  log.warning("history", "two {}");
  log.info("calls", "three");
  log.debug("calls", "is not shown");
  EXPECT_EQ(GetCapturedStderr(), "<3>socket: one\n<4>history: two {}\n<6>calls: three\n");
}

TEST(ProgramLog, GivesAnyoneElseTheTimeAndTheLevel) {
  CaptureStderr();
  programLog({}).warning("history", "two");
  EXPECT_THAT(GetCapturedStderr(),
              ::testing::MatchesRegex("....-..-.. ..:..:..\\.... warning history: two\n"));
}

/// A pipe or a terminal in the place of standard error for the length of a scope.
class ErrorReader {
 public:
  ErrorReader(FileDescriptor reading, const FileDescriptor& writing)
      : former_(::dup(STDERR_FILENO)), reading_(std::move(reading)) {
    ::dup2(writing.get(), STDERR_FILENO);
  }
  ~ErrorReader() { ::dup2(former_.get(), STDERR_FILENO); }
  ErrorReader(const ErrorReader&) = delete;
  ErrorReader& operator=(const ErrorReader&) = delete;

  /// What there is to read by now.
  std::string content() const {
    std::string all;
    pollfd watched{.fd = reading_.get(), .events = POLLIN, .revents = 0};
    while (::poll(&watched, 1, 0) == 1) {
      std::array<char, 65536> block;
      const auto count = ::read(reading_.get(), block.data(), block.size());
      if (count <= 0) break;
      all.append(block.data(), static_cast<std::size_t>(count));
    }
    std::erase(all, '\r');  // a terminal's
    return all;
  }

 private:
  const FileDescriptor former_;
  const FileDescriptor reading_;
};

struct ErrorPipe : ErrorReader {
  explicit ErrorPipe(Pipe ends = openPipe()) : ErrorReader(std::move(ends.read), ends.write) {}
};

struct ErrorTerminal : ErrorReader {
  explicit ErrorTerminal(Pipe ends = openTerminal()) : ErrorReader(std::move(ends.read), ends.write) {}

  static Pipe openTerminal() {
    Pipe ends{.read = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)), .write = {}};
    if (::grantpt(ends.read.get()) != 0 || ::unlockpt(ends.read.get()) != 0)
      throw std::system_error(errno, std::generic_category(), "no terminal could be made");
    ends.write = openFile(::ptsname(ends.read.get()), O_RDWR | O_NOCTTY);
    return ends;
  }
};

/// Writes far more than `reader` has room for, in lines that end with so many dots, and reads only then.
void expectNoWaitAndEveryLineWholeOrCounted(const ErrorReader& reader, std::size_t dots) {
  constexpr int written = 3'000;
  const std::string words = "calls: a line that takes its room " + std::string(dots, '.');
  const auto log = programLog({});
  auto writing = std::async(std::launch::async, [&] {
    for (int i = 0; i < written; ++i) log.info("calls", words.substr(words.find(' ') + 1));
  });
  // Only a log that waits needs the reader.
  std::string read;
  bool waited = false;
  for (std::chrono::milliseconds patience{20'000}; writing.wait_for(patience) != std::future_status::ready;
       patience = std::chrono::milliseconds(10)) {
    waited = true;
    read += reader.content();
  }
  EXPECT_FALSE(waited);
  int all = written;
  for (; !read.ends_with(" info calls: one more\n"); ++all) {  // a terminal passes on in its own time
    log.info("calls", "one more");
    read += reader.content();
  }

  int whole = 0;
  int leftOut = 0;
  std::istringstream lines(read);
  for (std::string line; std::getline(lines, line);) {
    const std::string_view told = " warning log: left out since nobody read: ";
    const auto note = line.find(told);
    if (note != std::string::npos)
      leftOut += std::stoi(line.substr(note + told.size()));
    else if (line.ends_with(words) || line.ends_with("calls: one more"))
      ++whole;
    else
      ADD_FAILURE() << "no whole line: " << line;
  }
  EXPECT_GT(whole, 1);
  EXPECT_GT(leftOut, 0);
  EXPECT_EQ(whole + leftOut, all);
}

TEST(ProgramLog, NeverWaitsForAReaderOfAPipe) { expectNoWaitAndEveryLineWholeOrCounted(ErrorPipe(), 80); }

TEST(ProgramLog, NeverWaitsForATerminalWhoseOutputIsStopped) {
  expectNoWaitAndEveryLineWholeOrCounted(ErrorTerminal(), 80);
  expectNoWaitAndEveryLineWholeOrCounted(ErrorTerminal(), 2'900);
}

TEST(ProgramLog, LeavesTheFlagsOfStandardErrorAsTheyAre) {
  const ErrorPipe pipe;
  const auto flags = ::fcntl(STDERR_FILENO, F_GETFL);
  programLog({}).info("calls", "one");
  EXPECT_EQ(::fcntl(STDERR_FILENO, F_GETFL), flags);
}

TEST(ProgramLog, CutsALineThatAPipeWouldNotTakeAtOnce) {
  const ErrorPipe pipe;
  programLog({}).info("calls", std::string(100'000, 'x'));
  const auto line = pipe.content();
  EXPECT_LE(line.size(), 4'096u);
  EXPECT_TRUE(line.ends_with("x\n"));
}

}  // namespace
}  // namespace velmora
