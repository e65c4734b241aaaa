// Helpers shared by the subcommands.
#include "zrx.h"

#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrcommonr/ZRFormat.h>
#include <zrcommonr/ZRStatusCodes.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>
#include <system_error>

namespace zrx {

const char* StatusMeaning(long code)
{
    switch (code) {
    case 0: return "OK";
    case ZRCommon::eCannotStart:
        return "the XML library can't be started, or a parser can't be made";
    case ZRCommon::eCannotParse: return "the document can't be parsed";
    case ZRCommon::eWrongRoot: return "no document element, or the wrong one";
    case ZRCommon::eNoDataDictionary: return "a PMML document without DataDictionary";
    case ZRCommon::eNoDocument: return "no document parsed yet";
    case ZRCommon::eAttributeAbsent: return "a required attribute or value is absent";
    case ZRCommon::eNotAccepted: return "an attribute or value is not accepted";
    case ZRCommon::eNoBins: return "bins asked for, none for a continuous field";
    case ZRCommon::eVariableRefused: return "the variable list refused a variable";
    case ZRCommon::eNoModel: return "no model chosen for the statistics";
    case ZRCommon::eChildAbsent: return "a required child element is absent";
    case ZRCommon::eBadFrequencies: return "bad frequencies";
    case ZRCommon::eIntervalsDontFit: return "intervals that don't fit";
    case ZRCommon::eInvalidStatistics: return "invalid statistics";
    case ZRCommon::eCannotWrite: return "a document can't be written";
    case ZRCommon::eNoParameters:
        return "a settings document without MiningBuildTask/Extension/Parameters";
    case ZRCommon::eNoSuchParameter: return "no parameter of that name in the scope";
    case ZRCommon::eIsList: return "one value asked of a list";
    case ZRCommon::eNoListValue: return "a list without ListValue";
    case ZRCommon::eNoValue: return "the parameter holds no value";
    case ZRCommon::eOtherFunction: return "split model with another functionName";
    case ZRCommon::eIsMiningModel: return "split model that is a MiningModel";
    case ZRCommon::eSplitValuesDontMatch:
        return "split values that don't match the split variables";
    case ZRCommon::eOtherPMMLNamespace:
        return "split model in another PMML namespace than the first";
    case ZRCommon::eFunctionDefinedOtherwise:
        return "split model with a DefineFunction that the output defines otherwise";
    case ZRCommon::ePrefixBoundOtherwise:
        return "split model with a namespace prefix that the output binds otherwise";
    case ZRCommon::eOutOfMemory: return "memory ran out";
    default: return "unknown status";
    }
}

bool ReadInput(const std::string& path, std::string& text, std::string& error)
{
    if (path == "-") {
        std::ostringstream buffer;
        buffer << std::cin.rdbuf();
        if (std::cin.bad()) {
            error = "can't read standard input";
            return false;
        }
        text = buffer.str();
        return true;
    }
    std::error_code code;
    if (std::filesystem::is_directory(path, code)) {
        error = "is a folder";
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "can't open";
        return false;
    }
    text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) {
        error = "can't read";
        return false;
    }
    return true;
}

std::string NumberText(double value)
{
    return ZRXML_NAMESPACE::Format(value, false, nullptr);
}

namespace {

const int kCleanedSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ};

// Async-signal-safe: removes the unfinished files, then lets the signal end
// the process as it would have without zrx's handler.
extern "C" void EndOnSignal(int signal)
{
    ZRXPrsUtil::RemoveUnfinishedFiles();
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    raise(signal);
}

} // namespace

void InstallSignalHandlers()
{
    struct sigaction action {};
    action.sa_handler = EndOnSignal;
    sigemptyset(&action.sa_mask);
    for (int signal : kCleanedSignals) {
        // A signal that the caller has zrx ignore stays ignored.
        struct sigaction before {};
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

int FinishOutput(int status)
{
    errno = 0;
    std::cout.flush();
    const bool failed = !std::cout || std::fflush(stdout) != 0 || std::ferror(stdout);
    if (!failed)
        return status;
    // A pipe whose reader went away; the write's errno may be gone by now.
    pollfd out = {STDOUT_FILENO, POLLOUT, 0};
    if (errno == EPIPE || (poll(&out, 1, 0) == 1 && (out.revents & POLLERR) != 0))
        EndOnSignal(SIGPIPE);
    std::cerr << "zrx: can't write standard output" << (errno != 0 ? ": " : "")
              << (errno != 0 ? std::strerror(errno) : "") << "\n";
    return kExitOutput;
}

} // namespace zrx
