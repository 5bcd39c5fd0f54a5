// The version of the build.
#pragma once

namespace vexor {

// For example "0.1.0"; set by the build from the project's version.
extern char const* const version_text;

} // namespace vexor
