// Compares text with a golden file in tests/data, byte for byte. VELMORA_UPDATE_GOLDEN=1 rewrites the files;
// read the difference before it is committed.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace velmora::testing {

inline std::string dataFile(const std::string& name) {
  return std::string(VELMORA_TEST_DATA "/").append(name);
}

inline std::string readDataFile(const std::string& name) {
  std::ifstream file(dataFile(name), std::ios::binary);
  EXPECT_TRUE(file) << "no file tests/data/" << name;
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

/// `text` must be the content of tests/data/`name` (which ends with one newline more).
inline void expectGolden(const std::string& name, const std::string& text) {
  if (std::getenv("VELMORA_UPDATE_GOLDEN") != nullptr) {
    std::ofstream(dataFile(name), std::ios::binary) << text << '\n';
    return;
  }
  EXPECT_EQ(readDataFile(name), text + "\n") << "differs from tests/data/" << name;
}

}  // namespace velmora::testing
