// zrx: inspect, validate and combine the documents of the library from the
// shell. Arguments are read by CLI11; each subcommand lives in its own file.
#include "zrx.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>

#ifndef ZRX_VERSION
#define ZRX_VERSION "0"
#endif

namespace {

const char* const kExitStatuses =
    "Exit status:\n"
    "  0  success; inspect: the document was read, problems or not; validate:\n"
    "     every file is valid\n"
    "  1  inspect: the document can't be read; validate: a file is invalid or\n"
    "     can't be read; combine: a model or the output was refused and nothing\n"
    "     was written\n"
    "  2  bad arguments or a bad manifest line; nothing was done\n"
    "  3  validate: no bundled schema for a document's PMML version\n"
    "  4  combine --keep-going: written without the refused models, or invalid\n"
    "  5  the output can't be written: combine's output file, or standard output\n";

int Run(int argc, char** argv)
{
    CLI::App app{"zrx - inspect, validate and combine DataModel, PMML and settings documents"};
    app.name("zrx");
    app.set_version_flag("--version", std::string("zrx ") + ZRX_VERSION);
    app.require_subcommand(1);
    app.footer(kExitStatuses);

    zrx::InspectOptions inspect;
    CLI::App* inspectCmd = app.add_subcommand(
        "inspect", "Show what the library reads from a DataModel, PMML or settings document");
    inspectCmd->add_option("FILE", inspect.file, "The document; - reads standard input")
        ->required();
    inspectCmd->add_flag("--json", inspect.json, "One JSON document instead of tables");
    inspectCmd->footer(
        "The kind comes from the document element: DataModel, or PMML; a PMML document\n"
        "with MiningBuildTask/Extension/Parameters is a settings document. Statistics are\n"
        "those of the models directly under PMML. Status codes and their meaning go to\n"
        "standard error.\n\n"
        "Exit status:\n"
        "  0  the document was read; the parts the reader refused, if any, are listed\n"
        "     under problems and on standard error\n"
        "  1  it can't be read\n"
        "  2  bad arguments\n");

    zrx::ValidateOptions validate;
    CLI::App* validateCmd = app.add_subcommand(
        "validate", "Check PMML documents against the bundled schema of their version");
    validateCmd->add_option("FILE", validate.files, "The documents; - reads standard input")
        ->required();
    validateCmd->add_option("--schema-dir", validate.schemaDir,
                            "The folder of pmml-4-2.xsd, pmml-4-3.xsd, pmml-4-4.xsd");
    validateCmd->add_flag("-q,--quiet", validate.quiet, "Print problems only, no verdicts");
    validateCmd->footer(
        "The schema is chosen by the namespace of the document element\n"
        "(http://www.dmg.org/PMML-4_2, -4_3, -4_4) and only ever read from the bundle:\n"
        "schema locations in documents, DTDs and external entities are not loaded.\n"
        "Each problem is printed as FILE:LINE:COLUMN: message, then one verdict\n"
        "line per file: FILE: valid, FILE: invalid, or FILE: no schema for ...\n\n"
        "Exit status:\n"
        "  0  every file is valid\n"
        "  1  a file is invalid or can't be read\n"
        "  2  bad arguments, or no bundled schema can be loaded\n"
        "  3  no file is invalid, but one has no bundled schema for its version\n");

    zrx::CombineOptions combine;
    CLI::App* combineCmd = app.add_subcommand(
        "combine", "Combine the models of a split analysis into one PMML MiningModel");
    combineCmd
        ->add_option("--split", combine.splits,
                     "A split variable NAME[:string|integer|double] (string if no type), "
                     "in the order of the manifest's columns")
        ->required();
    combineCmd
        ->add_option("-m,--manifest", combine.manifest,
                     "Tab-separated lines: model path, then its split values; "
                     "- reads standard input")
        ->required();
    combineCmd->add_option("-o,--output", combine.output, "The combined PMML file")->required();
    combineCmd->add_flag("-k,--keep-going", combine.keepGoing,
                         "Write the accepted models even if some are refused");
    combineCmd->add_flag("--literal", combine.literal,
                         "The combiner's literal form instead of strict PMML");
    combineCmd->add_flag("--no-validate", combine.noValidate,
                         "Don't check the output against the bundled schema of its version");
    combineCmd->add_flag("--progress", combine.progress,
                         "Show the progress bar even when standard error is no terminal");
    combineCmd->add_flag("-q,--quiet", combine.quiet, "No progress bar and no summary");
    combineCmd->footer(
        "Each manifest line gives a model's path (relative paths are taken from the\n"
        "manifest's folder, or the current one for -), then a tab and one value per\n"
        "--split option. Empty lines and lines that start with # are skipped. The split\n"
        "variables' values are those of the manifest, in order of appearance. A refused\n"
        "model is reported as MANIFEST:LINE: PATH: status CODE: meaning. A document\n"
        "whose root is not PMML (105), or without a model of a kind the combiner nests\n"
        "(113), is refused.\n\n"
        "The output is strict PMML: valid and self-contained for valid models of one\n"
        "PMML version. A model that can't join the others is refused: 127 another PMML\n"
        "version, 128 a function defined otherwise, 129 a namespace prefix bound\n"
        "otherwise. --literal writes the combiner's literal form instead, and refuses\n"
        "a first model that has a field of a split variable's name, which that form\n"
        "would write twice. The output is then checked against the bundled schema of\n"
        "its version (not with --no-validate); its problems are printed as\n"
        "FILE:LINE:COLUMN: message and count as a refusal.\n\n"
        "Exit status:\n"
        "  0  every model was combined and written\n"
        "  1  a model or the output was refused (nothing written), or none was accepted\n"
        "  2  bad arguments or a bad manifest line; nothing written\n"
        "  4  --keep-going: written without the refused models, or not valid\n"
        "  5  the output file can't be written\n");

    // The first word that is no option names the subcommand (zrx itself has
    // flags only). An unknown one is named, rather than left to the argument
    // parser, which would only say that a subcommand is required.
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (!word.empty() && word[0] == '-')
            continue;
        if (!inspectCmd->check_name(word) && !validateCmd->check_name(word) &&
            !combineCmd->check_name(word)) {
            std::cerr << "zrx: unknown subcommand '" << word
                      << "'; the subcommands are inspect, validate and combine\n"
                         "Run with --help for more information.\n";
            return zrx::kExitUsage;
        }
        break;
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? zrx::kExitOK : zrx::kExitUsage;
    }

    try {
        if (inspectCmd->parsed())
            return zrx::RunInspect(inspect);
        if (validateCmd->parsed())
            return zrx::RunValidate(validate);
        return zrx::RunCombine(combine);
    } catch (const std::bad_alloc&) {
        std::cerr << "zrx: out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << "zrx: " << error.what() << "\n";
    } catch (...) {
        std::cerr << "zrx: unexpected error\n";
    }
    return zrx::kExitFailed;
}

} // namespace

int main(int argc, char** argv)
{
    zrx::InstallSignalHandlers();
    return zrx::FinishOutput(Run(argc, argv));
}
