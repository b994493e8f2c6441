// A program that runs beside this one and is spoken to over its standard input and output.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

#include "System/FileDescriptor.h"

namespace velmora {

/// Destruction kills the program and waits for nothing but that. Its standard error is this program's own.
/// Belongs to one thread at a time.
class LastingChild {
 public:
  /// Starts `program`; `environment` is "NAME=value". Throws std::system_error.
  LastingChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const std::vector<std::string>& environment);
  ~LastingChild();
  LastingChild(const LastingChild&) = delete;
  LastingChild& operator=(const LastingChild&) = delete;

  pid_t process() const { return process_; }

  /// This program's ends of the child's streams, non-blocking. A write raises SIGPIPE once the child has
  /// gone (SigpipeBlock).
  const FileDescriptor& input() const { return input_; }
  const FileDescriptor& output() const { return output_; }

 private:
  FileDescriptor input_;
  FileDescriptor output_;
  pid_t process_ = -1;
};

}  // namespace velmora
