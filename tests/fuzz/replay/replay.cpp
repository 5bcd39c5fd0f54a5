// A main function for fuzzers in ordinary builds: runs the kept inputs once each. Every argument is a file or
// a folder.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

unsigned replay(std::filesystem::path const& path) {
    if (std::filesystem::is_directory(path)) {
        unsigned count = 0;
        for (auto const& entry : std::filesystem::directory_iterator(path)) count += replay(entry.path());
        return count;
    }
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    std::string const text = bytes.str();
    // The name stays visible when the input ends the process.
    std::cout << path.filename().string() << std::endl;
    LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(text.data()), text.size());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    unsigned count = 0;
    for (int i = 1; i < argc; ++i) count += replay(argv[i]);
    std::cout << count << " inputs\n";
    return count > 0 ? 0 : 1;
}
