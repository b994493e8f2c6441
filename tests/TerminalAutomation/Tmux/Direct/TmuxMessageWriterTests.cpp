#include <gtest/gtest.h>

#include <stdexcept>

#include "TerminalAutomation/Tmux/Direct/TmuxMessageWriter.h"
#include "tests/TerminalAutomation/Tmux/Direct/ServerBytes.h"

namespace velmora {
namespace {

using namespace std::string_literals;

constexpr pid_t process = 0x01020304;

/// A header as it lies on the wire: type, length and protocol, each of four bytes, lowest first.
std::string header(unsigned char type, unsigned char typeHigh, unsigned char length,
                   unsigned char lengthHigh = 0) {
  const auto byte = [](unsigned char value) { return std::string(1, static_cast<char>(value)); };
  return byte(type) + byte(typeHigh) + "\0\0"s + byte(length) + byte(lengthHigh) + "\0\0"s + "\x08\0\0\0"s +
         "\x04\x03\x02\x01"s;
}

TEST(TmuxMessageWriter, IdentifiesAClientWithoutATerminalByteForByte) {
  TmuxMessageWriter writer(process);
  writer.identify({.process = process, .terminal = "xterm", .folder = "/home/a"});
  EXPECT_EQ(writer.unsent(), header(111, 0, 24) + "\0\0\x01\0\0\0\0\0"s +    // takes UTF-8
                                 header(101, 0, 22) + "xterm\0"s +           // terminal
                                 header(109, 0, 20) + "\0\0\0\0"s +          // features: none
                                 header(102, 0, 17) + "\0"s +                // tty: none, but said
                                 header(108, 0, 24) + "/home/a\0"s +         // folder
                                 header(107, 0, 20) + "\x04\x03\x02\x01"s +  // process
                                 header(106, 0, 16));                        // done
}

TEST(TmuxMessageWriter, WritesACommandByteForByte) {
  TmuxMessageWriter writer(process);
  writer.command({"list-panes", "-a", ";", "", "한"});
  EXPECT_EQ(writer.unsent(), header(200, 0, 41) + "\5\0\0\0list-panes\0-a\0;\0\0한\0"s);
}

TEST(TmuxMessageWriter, WritesTheAnswersToStreamsByteForByte) {
  TmuxMessageWriter writer(process);
  writer.writeReady(1, 0);
  writer.readDone(3, 13);
  writer.input(4, "ab");
  EXPECT_EQ(writer.unsent(), header(0x31, 1, 24) + "\1\0\0\0\0\0\0\0"s + header(0x2e, 1, 24) +
                                 "\3\0\0\0\x0d\0\0\0"s + header(0x2d, 1, 22) + "\4\0\0\0ab"s +
                                 header(0x2e, 1, 24) + "\4\0\0\0\0\0\0\0"s);
}

TEST(TmuxMessageWriter, CutsInputIntoFullMessages) {
  constexpr std::size_t most = 16'384 - 16 - 4;
  for (const auto& [size, full, rest] : {std::tuple<std::size_t, std::size_t, std::size_t>{0, 0, 0},
                                         {1, 0, 1},
                                         {most, 1, 0},
                                         {most + 1, 1, 1},
                                         {3 * most - 1, 2, most - 1}}) {
    TmuxMessageWriter writer(process);
    writer.input(1, std::string(size, 'x'));
    std::string expected;
    for (std::size_t count = 0; count < full; ++count)
      expected += header(0x2d, 1, 0, 0x40) + "\1\0\0\0"s + std::string(most, 'x');
    if (rest > 0) {
      const std::size_t length = rest + 20;
      expected += header(0x2d, 1, static_cast<unsigned char>(length & 0xff),
                         static_cast<unsigned char>(length >> 8)) +
                  "\1\0\0\0"s + std::string(rest, 'x');
    }
    EXPECT_TRUE(writer.unsent() == expected + header(0x2e, 1, 24) + "\1\0\0\0\0\0\0\0"s) << size;
  }
}

TEST(TmuxMessageWriter, EndsAnArgumentAtItsFirstNulAsAProgramsDoes) {
  TmuxMessageWriter writer(process);
  writer.command({"a\0b"s, "c"});
  EXPECT_EQ(writer.unsent(), header(200, 0, 24) + "\2\0\0\0a\0c\0"s) << "as many strings as are announced";
}

TEST(TmuxMessageWriter, KeepsItsShapeWhateverTheTerminalAndTheFolderAre) {
  TmuxMessageWriter writer(process);
  writer.identify({.process = process, .terminal = std::string(40'000, 't'), .folder = "/a\0b"s});
  const std::string terminal = std::string(16'384 - 16 - 1, 't') + "\0"s;
  EXPECT_TRUE(writer.unsent() == header(111, 0, 24) + "\0\0\x01\0\0\0\0\0"s + header(101, 0, 0, 0x40) +
                                     terminal + header(109, 0, 20) + "\0\0\0\0"s + header(102, 0, 17) +
                                     "\0"s + header(108, 0, 19) + "/a\0"s + header(107, 0, 20) +
                                     "\x04\x03\x02\x01"s + header(106, 0, 16));
}

TEST(TmuxMessageWriter, TakesACommandUpToAFullMessage) {
  const std::size_t most = 16'384 - 16 - 4 - 1;
  EXPECT_TRUE(TmuxMessageWriter::commandFits({std::string(most, 'x')}));
  EXPECT_FALSE(TmuxMessageWriter::commandFits({std::string(most + 1, 'x')}));
  EXPECT_FALSE(TmuxMessageWriter::commandFits({std::string(most, 'x'), ""}));
  TmuxMessageWriter writer(process);
  writer.command({std::string(most, 'x')});
  EXPECT_EQ(writer.unsent().size(), 16'384u);
  EXPECT_THROW(writer.command({std::string(most + 1, 'x')}), std::length_error);
}

TEST(TmuxMessageWriter, KeepsWhatWasNotSent) {
  TmuxMessageWriter writer(process);
  writer.writeReady(1, 0);
  const std::string all(writer.unsent());
  writer.sent(5);
  EXPECT_EQ(writer.unsent(), all.substr(5));
  writer.writeReady(2, 0);
  EXPECT_EQ(writer.unsent().size(), 24u - 5 + 24);
  writer.sent(43);
  EXPECT_EQ(writer.unsent(), "");
}

}  // namespace
}  // namespace velmora
