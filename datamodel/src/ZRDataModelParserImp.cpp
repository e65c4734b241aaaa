// The DataModel reader: parses the document and turns each Field into one
// variable of a ZRVarList.
#include "ZRDataModelParserImp.h"

#include "ZRXFieldReader.h"
#include "ZRXPrsUtilInternal.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <memory>

namespace ZRXPrsUtil {

using ZRCommon::ZRStatus;

namespace {

// The library's DOM parser, set to record the Fields of a DataModel when they
// are kept out of the DOM.
ZRXDOMParser* NewDataModelParser()
{
    std::unique_ptr<ZRXDOMParser> parser(NewDOMParser());
    parser->SetFieldRecording(kDataModelFieldRecording);
    return parser.release();
}

} // namespace

ZRDataModelParserImp::ZRDataModelParserImp()
    : share(), status(), parser(nullptr), document(nullptr), rootElement(nullptr),
      fieldsElement(nullptr), fieldsInDOM(true)
{
    try {
        if (share.IsHeld())
            parser = NewDataModelParser();
    } catch (...) {
        parser = nullptr;
    }
    if (!parser)
        status = ZRStatus(ZRCommon::eCannotStart, false);
}

ZRDataModelParserImp::~ZRDataModelParserImp()
{
    delete parser;
}

ZRStatus ZRDataModelParserImp::ParseToDOM(const std::string& text)
try {
    document = nullptr;
    rootElement = nullptr;
    fieldsElement = nullptr;
    if (!parser)
        return status;
    if (!RenewSpentParser(parser, NewDataModelParser))
        return status = ZRStatus(ZRCommon::eCannotStart, false);

    parser->SetFieldsInDOM(fieldsInDOM);
    // The parser reads the caller's text in place: a copy of a wide data
    // set's text would double the memory that its reading takes. The source
    // allocates from the parser's own memory, as every source of a parse.
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                            text.size(), "text", false, ParserMemory(*parser));
    std::string message;
    status = ParseWithParser(*parser, &source, nullptr, message);
    if (status.IsOK()) {
        document = parser->getDocument();
        const xercesc::DOMElement* root = document->getDocumentElement();
        if (!root || !TagNameEquals(*root, "DataModel"))
            status = ZRStatus(ZRCommon::eWrongRoot, false);
        else
            rootElement = root;
    }
    if (status.IsOK()) {
        fieldsElement = GetFirstChildElmt(*rootElement, "Fields");
        if (!fieldsElement)
            status = ZRStatus(ZRCommon::eChildAbsent, false);
    }
    if (!status.IsOK()) {
        document = nullptr;
        rootElement = nullptr;
        fieldsElement = nullptr;
        // Frees what a failed parse left behind; nothing points into it.
        parser->resetDocumentPool();
        parser->SetFieldsInDOM(true);
    }
    return status;
} catch (...) {
    document = nullptr;
    rootElement = nullptr;
    fieldsElement = nullptr;
    return status = ZRStatus(ZRCommon::eCannotParse, false);
}

ZRStatus ZRDataModelParserImp::FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList,
                                           bool alternateInputRole, bool useBins,
                                           int binCount) const
try {
    if (!status.IsOK())
        return status;
    if (!document)
        return ZRStatus(ZRCommon::eNoDocument, false);
    DictionaryOptions options;
    options.alternateInput = alternateInputRole;
    options.useBins = useBins && binCount > 1;
    options.binCount = options.useBins ? binCount : -1;
    if (const FieldStore* fields = parser->RecordedFields())
        return ReadFieldStore(varList, *fields, kDataModelFieldRules, options);
    return ReadFieldDictionary(varList, *fieldsElement, "Field", kDataModelFieldRules, options);
} catch (...) {
    return ZRStatus(ZRCommon::eOutOfMemory, false);
}

} // namespace ZRXPrsUtil
