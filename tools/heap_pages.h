// How the command line's heap is laid out.
#pragma once

namespace vexor_tool {

// Lets the heap grow in one range that the system may back by huge pages. To be called first in main.
void ask_for_huge_pages();

} // namespace vexor_tool
