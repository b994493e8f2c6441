// A private server of one of the tmux versions that are at hand, asked both ways.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "TerminalAutomation/Tmux/Direct/TmuxDirectClient.h"
#include "TerminalAutomation/Tmux/Direct/TmuxSocketTransport.h"
#include "tests/TerminalAutomation/Tmux/PrivateTmux.h"

namespace velmora::testing {

/// The installed program, and those that scripts/tmux-versions.sh has unpacked.
inline std::vector<std::filesystem::path> tmuxPrograms() {
  std::vector<std::filesystem::path> programs{"tmux"};
  const std::filesystem::path folder = TMUX_VERSIONS;
  if (!std::filesystem::exists(folder)) return programs;
  for (const std::string& name : namesIn(folder)) {
    if (std::filesystem::exists(folder / name / "tmux")) programs.push_back(folder / name / "tmux");
  }
  return programs;
}

/// For the names of tests: "installed", or "v3_5a".
inline std::string tmuxProgramName(const ::testing::TestParamInfo<std::filesystem::path>& program) {
  if (!program.param.has_parent_path()) return "installed";
  std::string name = "v" + program.param.parent_path().filename().string();
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

class VersionedTmux : public PrivateTmux, public ::testing::WithParamInterface<std::filesystem::path> {
 protected:
  VersionedTmux() {
    environment_["SHELL"] = "/bin/sh";
    environment_["ENV"] = "/dev/null";
    transport_ = programTransport();
  }

  static std::optional<std::filesystem::path> program() {
    return GetParam().has_parent_path() ? std::optional(GetParam()) : std::nullopt;
  }

  std::unique_ptr<TmuxProcessTransport> programTransport() const {
    return std::make_unique<TmuxProcessTransport>(environment_, std::nullopt, program());
  }

  /// What is asked here goes to the server without the program, whatever it is.
  TmuxDirectClient& directClient() {
    if (!directClient_) {
      directClient_ = std::make_unique<TmuxDirectClient>(transport_->socketPath(), environment_["TERM"],
                                                         environment_["HOME"]);
    }
    return *directClient_;
  }

  TmuxDirectResult askDirectly(std::vector<std::string> arguments,
                               std::optional<std::string> input = std::nullopt) {
    return directClient().ask({.arguments = std::move(arguments),
                               .standardInput = std::move(input),
                               .deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20)},
                              server_.value());
  }

 private:
  std::unique_ptr<TmuxDirectClient> directClient_;
};

}  // namespace velmora::testing

/// The fixture's tests run with every version.
#define VELMORA_EACH_TMUX(Fixture)                                                                 \
  INSTANTIATE_TEST_SUITE_P(Each, Fixture, ::testing::ValuesIn(::velmora::testing::tmuxPrograms()), \
                           ::velmora::testing::tmuxProgramName)
