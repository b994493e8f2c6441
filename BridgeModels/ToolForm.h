// The two forms in which the tools are offered. A header alone: everything that knows tools shares it.
#pragma once

namespace velmora {

/// The plain form is the one every client gets. The extended form is for those who choose it: the same tools
/// with further optional arguments, keys and members of answers. Leaving them out means what it means in the
/// plain form.
enum class ToolForm { plain, extended };

/// What `velmora` is given on its command line to serve the extended form.
inline constexpr const char* extendedOption = "--extended";

}  // namespace velmora
