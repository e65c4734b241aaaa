// zrx validate: checks PMML documents against the bundled schema of their
// PMML version with the XML library's own schema validation.
//
// The three bundled grammars are loaded once into the reader's grammar pool;
// each document is then parsed with validation on, with the cached grammars
// only: schema locations named by a document are not loaded, nor DTDs or
// external entities, and entity expansion stops at the library's limit, as in
// the library's own parsers. The grammar is picked by the namespace of the
// document element. Problems found before the document element is seen are
// held back until its namespace is known: a document whose namespace has no
// bundled schema gets the verdict "no schema" and none of them.
//
// Decisions:
//  - A file that can't be read, or that is not well-formed, is invalid.
//  - Warnings of the XML library are not problems; errors and fatal errors
//    are, and only the first fatal error is reported (the parse stops there).
//  - Several files: 1 if any is invalid, else 3 if any has no schema, else 0.
#include "zrx.h"

#include <zrparsexmlr/ZRXPlatformShare.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

#ifndef ZRX_SCHEMA_BUILD_DIR
#define ZRX_SCHEMA_BUILD_DIR ""
#endif
#ifndef ZRX_SCHEMA_INSTALL_DIR
#define ZRX_SCHEMA_INSTALL_DIR "../share/zrparsexmlr/schemas"
#endif

namespace zrx {
namespace {

namespace fs = std::filesystem;

struct Schema {
    const char* space;
    const char* file;
};
const Schema kSchemas[] = {
    {"http://www.dmg.org/PMML-4_2", "pmml-4-2.xsd"},
    {"http://www.dmg.org/PMML-4_3", "pmml-4-3.xsd"},
    {"http://www.dmg.org/PMML-4_4", "pmml-4-4.xsd"},
};

// The bundle: --schema-dir, else next to the program as installed, else the
// source tree of a build.
std::string SchemaDir(const std::string& given)
{
    if (!given.empty())
        return given;
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        const fs::path installed = self.parent_path() / ZRX_SCHEMA_INSTALL_DIR;
        if (fs::is_directory(installed, error))
            return installed.string();
    }
    return ZRX_SCHEMA_BUILD_DIR;
}

struct Problem {
    XMLFileLoc line;
    XMLFileLoc column;
    std::string message;
};

// Collects the problems of one parse and the namespace of its document
// element.
class Collector : public xercesc::DefaultHandler {
public:
    void Reset()
    {
        problems.clear();
        rootSeen = false;
        rootSpace.clear();
    }
    void startElement(const XMLCh* const uri, const XMLCh* const, const XMLCh* const,
                      const xercesc::Attributes&) override
    {
        if (!rootSeen) {
            rootSeen = true;
            rootSpace = ZRXPrsUtil::ToUTF8(uri);
        }
    }
    void error(const xercesc::SAXParseException& problem) override { Add(problem); }
    void fatalError(const xercesc::SAXParseException& problem) override { Add(problem); }
    void warning(const xercesc::SAXParseException&) override {}

    std::vector<Problem> problems;
    bool rootSeen = false;
    std::string rootSpace;

private:
    void Add(const xercesc::SAXParseException& problem)
    {
        problems.push_back({problem.getLineNumber(), problem.getColumnNumber(),
                            ZRXPrsUtil::ToUTF8(problem.getMessage())});
    }
};

enum Verdict { kValid, kInvalid, kNoSchema };

class Validator {
public:
    explicit Validator(const std::string& schemaDir)
        : reader(xercesc::XMLReaderFactory::createXMLReader())
    {
        using xercesc::XMLUni;
        reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
        reader->setFeature(XMLUni::fgSAX2CoreValidation, true);
        reader->setFeature(XMLUni::fgXercesDynamic, false);
        reader->setFeature(XMLUni::fgXercesSchema, true);
        reader->setFeature(XMLUni::fgXercesSchemaFullChecking, false);
        reader->setFeature(XMLUni::fgXercesLoadSchema, false);
        reader->setFeature(XMLUni::fgXercesUseCachedGrammarInParse, true);
        reader->setFeature(XMLUni::fgXercesCacheGrammarFromParse, false);
        reader->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
        reader->setErrorHandler(&collector);
        reader->setContentHandler(&collector);
        for (const Schema& schema : kSchemas) {
            const fs::path path = fs::path(schemaDir) / schema.file;
            std::error_code error;
            if (!fs::is_regular_file(path, error))
                continue;
            collector.Reset();
            bool ok = false;
            try {
                const std::vector<XMLCh> name = ZRXPrsUtil::ToUTF16(path.string().c_str());
                xercesc::LocalFileInputSource source(name.data());
                ok = reader->loadGrammar(source, xercesc::Grammar::SchemaGrammarType, true) &&
                     collector.problems.empty();
            } catch (const xercesc::XMLException&) {
            } catch (const xercesc::SAXException&) {
            } catch (const xercesc::OutOfMemoryException&) {
            }
            if (ok)
                loaded.push_back(schema.space);
            else
                std::cerr << "zrx validate: " << path.string() << ": schema can't be loaded\n";
        }
        // From here on nothing is read but the documents themselves.
        reader->setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
        // The readers' limit of entity expansions: a document they refuse for
        // its expansions is not valid here either.
        security.setEntityExpansionLimit(1000);
        reader->setProperty(XMLUni::fgXercesSecurityManager, &security);
    }

    bool HasSchemas() const { return !loaded.empty(); }

    Verdict Check(const std::string& file, const std::string& text, std::ostream& out)
    {
        collector.Reset();
        const std::vector<XMLCh> id = ZRXPrsUtil::ToUTF16(file.c_str());
        xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                          text.size(), id.data(), false);
        bool noSchema = false;
        try {
            xercesc::XMLPScanToken token;
            bool more = reader->parseFirst(source, token);
            while (more && !collector.rootSeen)
                more = reader->parseNext(token);
            if (collector.rootSeen && !Known(collector.rootSpace)) {
                noSchema = true;
                if (more)
                    reader->parseReset(token);
            } else {
                while (more)
                    more = reader->parseNext(token);
            }
        } catch (const xercesc::OutOfMemoryException&) {
            collector.problems.push_back({0, 0, "out of memory"});
        } catch (const xercesc::XMLException& exception) {
            collector.problems.push_back({0, 0, ZRXPrsUtil::ToUTF8(exception.getMessage())});
        } catch (const xercesc::SAXException& exception) {
            collector.problems.push_back({0, 0, ZRXPrsUtil::ToUTF8(exception.getMessage())});
        }
        if (noSchema) {
            out << file << ": no schema for namespace \"" << collector.rootSpace << "\"\n";
            return kNoSchema;
        }
        if (!collector.rootSeen && collector.problems.empty())
            collector.problems.push_back({0, 0, "no document element"});
        for (const Problem& problem : collector.problems)
            out << file << ":" << problem.line << ":" << problem.column << ": " << problem.message
                << "\n";
        return collector.problems.empty() ? kValid : kInvalid;
    }

private:
    bool Known(const std::string& space) const
    {
        for (const std::string& known : loaded)
            if (known == space)
                return true;
        return false;
    }

    std::unique_ptr<xercesc::SAX2XMLReader> reader;
    Collector collector;
    xercesc::SecurityManager security;
    std::vector<std::string> loaded;
};

} // namespace

int RunValidate(const ValidateOptions& options)
{
    return ValidateFiles(options, std::cout);
}

int ValidateFiles(const ValidateOptions& options, std::ostream& out)
{
    try {
        // The XML library's start is taken from the library's own count, so
        // that it is shared with every object of the library in the process.
        // A start that fails is reported, with status 1.
        ZRXPrsUtil::ZRXPlatformShare library;
        if (!library.IsHeld())
            throw std::runtime_error("the XML library can't be started");
        const std::string dir = SchemaDir(options.schemaDir);
        Validator validator(dir);
        if (!validator.HasSchemas()) {
            std::cerr << "zrx validate: no schema can be loaded from \"" << dir << "\"\n";
            return kExitUsage;
        }
        bool invalid = false;
        bool noSchema = false;
        for (const std::string& file : options.files) {
            std::string text;
            std::string error;
            if (!ReadInput(file, text, error)) {
                out << file << ":0:0: " << error << "\n";
                if (!options.quiet)
                    out << file << ": invalid\n";
                invalid = true;
                continue;
            }
            const Verdict verdict = validator.Check(file, text, out);
            invalid = invalid || verdict == kInvalid;
            noSchema = noSchema || verdict == kNoSchema;
            if (!options.quiet && verdict != kNoSchema)
                out << file << (verdict == kValid ? ": valid\n" : ": invalid\n");
        }
        return invalid ? kExitFailed : noSchema ? kExitNoSchema : kExitOK;
    } catch (const xercesc::XMLException& exception) {
        std::cerr << "zrx validate: " << ZRXPrsUtil::ToUTF8(exception.getMessage()) << "\n";
    }
    return kExitFailed;
}

} // namespace zrx
