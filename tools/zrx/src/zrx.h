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
    kExitOutput = 5    // the output can't be written: combine's file, or standard output
};

// The one policy of every subcommand on signals and standard output.
//
// InstallSignalHandlers: on SIGINT, SIGTERM, SIGHUP, SIGPIPE and SIGXFSZ
// (the file size limit) zrx removes the temporary file of a write in
// progress (ZRXPrsUtil::RemoveUnfinishedFiles, which is async-signal-safe),
// so that an interrupted combine leaves the output file as it was and
// nothing beside it, and then ends by the same signal with its default
// action. A signal that the caller has ignored stays ignored: a write that
// meets the file size limit then fails (118, exit status 5), and a reader
// that goes away shows as a broken pipe at the end (FinishOutput).
void InstallSignalHandlers();

// Flushes standard output once the subcommand is done and gives the exit
// status: `status`, or kExitOutput with a message on standard error when
// standard output could not be written (a full disk, a closed descriptor).
// A broken pipe ends zrx quietly by SIGPIPE, as any filter ends when its
// reader goes away (zrx inspect big.pmml | head -1), also where the caller
// had SIGPIPE ignored.
int FinishOutput(int status);

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
