// Replays saved inputs through a fuzz target without libFuzzer, so that the
// ordinary test run (any compiler, with or without sanitizers) keeps every
// seed and every input that once crashed or hung the fuzzer working.
//
//   replay_<target> FILE|FOLDER...
//
// Every file named, and every regular file of a folder named (in name order),
// goes through LLVMFuzzerTestOneInput once. Exits 0 when every input was
// replayed; 1 when there is none or an input can't be read. A crash ends the
// process as it would end the fuzzer. (An input that once made the fuzzer run
// out of memory by growth over many runs is kept for the fuzzer; the test
// suite checks that growth directly, see tests/host/ReuseTest.cpp.)
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

namespace fs = std::filesystem;

bool ReadFile(const fs::path& path, std::vector<std::uint8_t>& bytes)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

} // namespace

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        if (fs::is_directory(argv[i], error)) {
            std::vector<fs::path> files;
            for (const auto& entry : fs::directory_iterator(argv[i], error))
                if (entry.is_regular_file())
                    files.push_back(entry.path());
            std::sort(files.begin(), files.end());
            inputs.insert(inputs.end(), files.begin(), files.end());
        } else {
            inputs.emplace_back(argv[i]);
        }
    }

    if (inputs.empty()) {
        std::fprintf(stderr, "replay: no inputs\n");
        return 1;
    }
    std::vector<std::uint8_t> bytes;
    for (const fs::path& input : inputs) {
        if (!ReadFile(input, bytes)) {
            std::fprintf(stderr, "replay: cannot read %s\n", input.c_str());
            return 1;
        }
        // A copy of exactly the input's size, so that a read past its end is
        // caught under AddressSanitizer, as in the fuzzer; never null, even
        // for an empty input.
        std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), copy.get());
        LLVMFuzzerTestOneInput(copy.get(), bytes.size());
    }
    std::printf("replay: %zu inputs\n", inputs.size());
    return 0;
}
