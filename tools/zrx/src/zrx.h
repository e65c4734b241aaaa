// zrx: the shell's view of the library. One entry point per subcommand, and
// the few helpers that they share.
#ifndef ZRX_TOOL_ZRX_H
#define ZRX_TOOL_ZRX_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace zrx {

// Exit statuses of the tool, the same for every subcommand.
enum ExitStatus {
    kExitOK = 0,       // done; every file valid
    kExitFailed = 1,   // a read failed, a file is invalid, or a model or the output was refused
    kExitUsage = 2,    // bad arguments or a bad manifest line; nothing done
    kExitNoSchema = 3, // validate: no bundled schema for a document's PMML version
    kExitPartial = 4,  // combine --keep-going: written without the refused models, or invalid
    kExitOutput = 5    // combine: the output file can't be written
};

// The meaning of a ZRStatus code in a few words, "unknown status" for a code
// that the library does not give.
const char* StatusMeaning(long code);

// Reads the whole file at `path`, or standard input for "-", into `text`.
// False, with `error` set, when it can't be read (a folder included).
bool ReadInput(const std::string& path, std::string& text, std::string& error);

// The shortest text that reads back as `value`.
std::string NumberText(double value);

struct InspectOptions {
    std::string file;
    bool json = false;
};
int RunInspect(const InspectOptions& options);

struct ValidateOptions {
    std::vector<std::string> files;
    std::string schemaDir; // empty: next to the program, then the source tree
    bool quiet = false;    // no "FILE: valid" lines
};
int RunValidate(const ValidateOptions& options);
// RunValidate with its report (problems, verdicts) on `out` instead of
// standard output; combine checks the file it wrote with it.
int ValidateFiles(const ValidateOptions& options, std::ostream& out);

struct CombineOptions {
    std::vector<std::string> splits; // NAME[:string|integer|double]
    std::string manifest;
    std::string output;
    bool keepGoing = false;
    bool literal = false;    // the combiner's literal form instead of strict PMML
    bool noValidate = false; // no check of the output against its schema
    bool progress = false;   // the bar even when standard error is no terminal
    bool quiet = false;      // no bar, no summary
};
int RunCombine(const CombineOptions& options);

} // namespace zrx

#endif
