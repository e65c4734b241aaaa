// zrx combine: the models of a split analysis, listed in a manifest, through
// the split-model combiner into one PMML document.
//
// Decisions:
//  - A split variable's values are the distinct values of its manifest
//    column, in order of appearance. Values of an integer or double variable
//    must read as such numbers (a bad one is a manifest error); they are
//    distinct by number, and each model's values go to the combiner as
//    written in the manifest.
//  - Every model line goes through AddModel, also one with too few or too
//    many values, which the combiner refuses (126).
//  - A manifest error (no path, no tab and value after it, a value that is no number of its type, an
//    unknown type) stops the tool before any model is read: status 2.
//  - Without --keep-going, the first refusal does not stop the run: every
//    model is tried, so that one run reports all refusals; then nothing is
//    written.
//  - The combiner writes strict PMML unless --literal asks for its literal
//    form.
//  - Each document is checked by the combiner (CheckSplitModel) before it is
//    handed on, and refused like any model the combiner refuses when its
//    root is not PMML or it has no model of a kind the combiner nests, which
//    AddModel would pass over with OK and without a Segment. With --literal,
//    a first model that already has a field of a split variable's name is
//    refused too, naming the field: the literal form would write that field
//    twice (the strict form merges the two).
//  - Unless --no-validate, the written output is checked against the bundled
//    schema of its PMML version, as zrx validate checks it (a version without
//    a bundled schema is told and not checked). An invalid output counts as
//    a refusal: its problems are reported, and it is removed unless
//    --keep-going.
#include "progress.h"
#include "zrx.h"

#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRStatusCodes.h>
#include <zrcommonr/ZRVarList.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace zrx {
namespace {

namespace fs = std::filesystem;
using ZRMTD_NAMESPACE::IZRVariable;

enum SplitType { kString, kInteger, kDouble };

struct SplitVariable {
    std::string name;
    SplitType type = kString;
    std::vector<std::string> texts; // distinct values, as first written
    std::vector<double> numbers;    // the same as numbers (integer, double)
};

struct ModelLine {
    std::size_t line;
    std::string path;    // as given to the combiner
    std::string written; // as written in the manifest
    std::vector<std::string> values;
};

bool ParseSplit(const std::string& option, SplitVariable& variable)
{
    const std::size_t colon = option.rfind(':');
    variable.name = option.substr(0, colon);
    const std::string type = colon == std::string::npos ? "string" : option.substr(colon + 1);
    if (type == "string")
        variable.type = kString;
    else if (type == "integer")
        variable.type = kInteger;
    else if (type == "double")
        variable.type = kDouble;
    else
        return false;
    return !variable.name.empty();
}

bool ParseNumber(const std::string& text, SplitType type, double& value)
{
    if (text.empty() || std::isspace(static_cast<unsigned char>(text[0])))
        return false;
    char* end = nullptr;
    errno = 0;
    if (type == kInteger) {
        const long long number = std::strtoll(text.c_str(), &end, 10);
        value = static_cast<double>(number);
    } else {
        value = std::strtod(text.c_str(), &end);
    }
    return errno == 0 && end == text.c_str() + text.size() && std::isfinite(value);
}

// Reads the manifest into `models` and the split variables' values. False
// with a message on standard error for a manifest that can't be used.
bool ReadManifest(const std::string& manifest, std::vector<SplitVariable>& splits,
                  std::vector<ModelLine>& models)
{
    std::string text;
    std::string error;
    if (!ReadInput(manifest, text, error)) {
        std::cerr << "zrx combine: " << manifest << ": " << error << "\n";
        return false;
    }
    const fs::path base = manifest == "-" ? fs::path() : fs::path(manifest).parent_path();
    std::istringstream lines(text);
    std::string line;
    std::size_t number = 0;
    while (std::getline(lines, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line[0] == '#')
            continue;
        ModelLine model{number, std::string(), std::string(), {}};
        std::size_t at = 0;
        std::size_t tab = line.find('\t');
        model.written = line.substr(0, tab);
        model.path = model.written;
        while (tab != std::string::npos) {
            at = tab + 1;
            tab = line.find('\t', at);
            model.values.push_back(line.substr(at, tab == std::string::npos ? tab : tab - at));
        }
        if (model.path.empty() || model.values.empty()) {
            std::cerr << manifest << ":" << number << ": "
                      << (model.path.empty() ? "no model path" : "no split values") << "\n";
            return false;
        }
        if (fs::path(model.path).is_relative() && !base.empty())
            model.path = (base / model.path).string();
        for (std::size_t i = 0; i < model.values.size() && i < splits.size(); ++i) {
            SplitVariable& split = splits[i];
            const std::string& value = model.values[i];
            bool known = false;
            if (split.type == kString) {
                for (const std::string& seen : split.texts)
                    known = known || seen == value;
            } else {
                double parsed = 0.0;
                if (!ParseNumber(value, split.type, parsed)) {
                    std::cerr << manifest << ":" << number << ": \"" << value << "\" of "
                              << split.name << " is not "
                              << (split.type == kInteger ? "an integer" : "a number") << "\n";
                    return false;
                }
                for (double seen : split.numbers)
                    known = known || seen == parsed;
                if (!known)
                    split.numbers.push_back(parsed);
            }
            if (!known)
                split.texts.push_back(value);
        }
        models.push_back(std::move(model));
    }
    return true;
}

// The meaning of a refusal's status in the words of combine: the statuses
// of a document's check name what the document lacks as a split model.
const char* RefusalMeaning(long code)
{
    switch (code) {
    case ZRCommon::eWrongRoot: return "the document element is not PMML";
    case ZRCommon::eChildAbsent: return "no model of a kind the combiner nests";
    default: return StatusMeaning(code);
    }
}

} // namespace

int RunCombine(const CombineOptions& options)
{
    std::vector<SplitVariable> splits(options.splits.size());
    for (std::size_t i = 0; i < options.splits.size(); ++i)
        if (!ParseSplit(options.splits[i], splits[i])) {
            std::cerr << "zrx combine: --split " << options.splits[i]
                      << ": expected NAME[:string|integer|double]\n";
            return kExitUsage;
        }
    std::vector<ModelLine> models;
    if (!ReadManifest(options.manifest, splits, models))
        return kExitUsage;
    if (models.empty()) {
        std::cerr << "zrx combine: " << options.manifest << ": no model\n";
        return kExitUsage;
    }

    ZRMTD_NAMESPACE::ZRVarList splitVars;
    for (const SplitVariable& split : splits) {
        int index = -1;
        if (split.type == kString)
            index =
                splitVars.AddCatVar(split.name, split.name, split.texts, IZRVariable::eRoleInput);
        else
            index =
                splitVars.AddCatVar(split.name, split.name, split.numbers, IZRVariable::eRoleInput);
        if (index < 0) {
            std::cerr << "zrx combine: --split " << split.name << ": given twice\n";
            return kExitUsage;
        }
        if (split.type != kString)
            splitVars.GetVarAt(index)->SetStorageType(split.type == kInteger ? 1 : 2);
    }

    const bool showBar = !options.quiet && (options.progress || isatty(fileno(stderr)) == 1);
    ProgressBar bar(stderr, models.size(), showBar);
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    combiner.SetStrictPMML(!options.literal);
    std::size_t refused = 0;
    for (std::size_t i = 0; i < models.size(); ++i) {
        const ModelLine& model = models[i];
        const std::string where =
            options.manifest + ":" + std::to_string(model.line) + ": " + model.written + ": ";
        std::vector<std::string> doubled;
        ZRCommon::ZRStatus status = combiner.CheckSplitModel(model.path, doubled);
        if (status.IsOK() && doubled.empty())
            status = combiner.AddModel(model.path, model.values);
        if (!status.IsOK())
            bar.Message(where + "status " + std::to_string(status.GetCode()) + ": " +
                        RefusalMeaning(status.GetCode()));
        for (const std::string& field : doubled)
            bar.Message(where + "split variable " + field +
                        " is a field of the model already: the literal form would write it "
                        "twice (without --literal it is merged)");
        if (!status.IsOK() || !doubled.empty())
            ++refused;
        bar.Step(i + 1);
    }
    bar.Finish();

    const std::size_t accepted = models.size() - refused;
    if (accepted == 0 || (refused > 0 && !options.keepGoing)) {
        std::cerr << "zrx combine: " << refused << " of " << models.size()
                  << " models refused; nothing written\n";
        return kExitFailed;
    }
    const ZRCommon::ZRStatus written = combiner.ExportMiningModel(options.output);
    if (!written.IsOK()) {
        std::cerr << "zrx combine: " << options.output << ": status " << written.GetCode() << ": "
                  << StatusMeaning(written.GetCode()) << "\n";
        return kExitOutput;
    }
    bool invalid = false;
    if (!options.noValidate) {
        ValidateOptions check;
        check.files.push_back(options.output);
        check.quiet = true;
        invalid = ValidateFiles(check, std::cerr) == kExitFailed;
    }
    const char* const kInvalid = "not valid against the schema of its PMML version";
    if (invalid && !options.keepGoing) {
        std::error_code ignored;
        fs::remove(options.output, ignored);
        std::cerr << "zrx combine: " << options.output << ": " << kInvalid << "; nothing written\n";
        return kExitFailed;
    }
    if (!options.quiet || refused > 0 || invalid)
        std::cerr << "zrx combine: " << accepted << " of " << models.size()
                  << " models combined into " << options.output
                  << (invalid ? std::string(", ") + kInvalid : std::string()) << "\n";
    return refused > 0 || invalid ? kExitPartial : kExitOK;
}

} // namespace zrx
