// The help as the page shows it: sections, each a column of texts and of snippets to copy.
#pragma once

#include <string>
#include <vector>

#include "VelmoraApp/Help/HelpCopy.h"
#include "VelmoraApp/Platform/Desktop.h"

namespace velmora {

/// A text, or something to copy.
struct HelpPassage {
  enum class Kind { instruction, note, code };

  Kind kind;
  std::string text;
  std::string name{};      ///< Of code: what it is called, the same in every language.
  std::string copyHelp{};  ///< Of code: what its copy button does.
};

struct HelpSection {
  std::string title;
  std::vector<HelpPassage> passages;
};

/// In the order of HelpCopy. The shape, and all code, is the same in every language.
std::vector<HelpSection> helpSections(const HelpCopy& copy, const GuideContext& context);

}  // namespace velmora
