// What went wrong, in a sentence for the person.
#pragma once

#include <exception>
#include <string>

namespace velmora {

/// In the words of whoever noticed; of a structured error also what to do about it.
std::string problemSentence(const std::exception_ptr& error);

}  // namespace velmora
