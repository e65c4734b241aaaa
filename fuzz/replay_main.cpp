// Replays saved inputs through a fuzz target without libFuzzer, so that the
// ordinary test run (any compiler, with or without sanitizers) keeps every
// seed and every input that once crashed, hung or ran out of memory working.
//
//   replay_<target> [-runs=N] [-max_growth_mb=M] FILE|FOLDER...
//
// Every file named, and every regular file of a folder named (in name order),
// goes through LLVMFuzzerTestOneInput N times (1 by default). With a limit,
// the replay fails when the peak resident size of the process grows by more
// than M megabytes over the second half of an input's runs: a target that
// keeps something of every input grows without end over many runs of one
// ordinary document, while the first half leaves room for what the process
// sets up once (and for the quarantine of freed memory of AddressSanitizer,
// at most 256 MB by default). Exits 0 when every input was
// replayed; 1 when there is none, on an unreadable input or a passed limit.
// A crash ends the process as it would end the fuzzer.
#include <sys/resource.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

long PeakRssMb()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

// Reads the number of "-name=value" into `value`; false if `arg` is not that flag.
bool Flag(const char* arg, const char* name, long& value)
{
    const std::size_t length = std::strlen(name);
    if (std::strncmp(arg, name, length) != 0 || arg[length] != '=')
        return false;
    value = std::strtol(arg + length + 1, nullptr, 10);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    long runs = 1;
    long maxGrowthMb = 0;
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        if (Flag(argv[i], "-runs", runs) || Flag(argv[i], "-max_growth_mb", maxGrowthMb))
            continue;
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
        long halfwayMb = PeakRssMb();
        for (long run = 0; run < runs; ++run) {
            if (run == runs / 2)
                halfwayMb = PeakRssMb();
            // A copy of exactly the input's size, so that a read past its end
            // is caught under AddressSanitizer, as in the fuzzer; never null,
            // even for an empty input.
            std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
            std::copy(bytes.begin(), bytes.end(), copy.get());
            LLVMFuzzerTestOneInput(copy.get(), bytes.size());
        }
        const long growthMb = PeakRssMb() - halfwayMb;
        if (maxGrowthMb > 0 && growthMb > maxGrowthMb) {
            std::fprintf(stderr,
                         "replay: %s: peak resident size grew by %ld MB over the last %ld of %ld "
                         "runs (limit %ld MB)\n",
                         input.c_str(), growthMb, runs - runs / 2, runs, maxGrowthMb);
            return 1;
        }
    }
    std::printf("replay: %zu inputs, %ld runs each, peak resident size %ld MB\n", inputs.size(),
                runs, PeakRssMb());
    return 0;
}
