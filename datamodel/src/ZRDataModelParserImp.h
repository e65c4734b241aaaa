// The implementation behind ZRDataModelParser; not exported.
#ifndef ZRPARSEXMLR_ZRDATAMODELPARSERIMP_H
#define ZRPARSEXMLR_ZRDATAMODELPARSERIMP_H

// The XML library's classes come declared with the library's internal helpers.
#include "ZRXPrsUtilInternal.h"

#include <zrparsexmlr/ZRXPlatformShare.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRVarList.h>

#include <string>

namespace ZRXPrsUtil {

// Reads a DataModel document:
//
//   <DataModel>
//     <Fields>                       first one used; required (else 113)
//       <Field name= displayLabel= storage= measure= role=>
//         <Values><Value value= displayLabel=/>...</Values>...
//         <Range minValue= maxValue=/>...
//       </Field>...
//
// Each Field becomes one variable of a ZRVarList. The object holds one share
// of the XML library's start (ZRXPlatformShare) and owns its parser, made by
// NewDOMParser, for its whole life.
class ZRDataModelParserImp {
public:
    // Takes a share of the XML library's start and makes the parser; a
    // failure of either sets status 103 and leaves no parser. Nothing is
    // thrown.
    ZRDataModelParserImp();
    // Deletes the parser; the share is given back after it.
    virtual ~ZRDataModelParserImp();
    ZRDataModelParserImp(const ZRDataModelParserImp&) = delete;
    ZRDataModelParserImp& operator=(const ZRDataModelParserImp&) = delete;

    ZRCommon::ZRStatus GetStatus() const { return status; }

    // 103 without a parser; 104 for any failed parse (not well-formed, empty,
    // an external entity, too many entity expansions, an exception of the
    // XML library or of the stream); 105 for no or another document element
    // than "DataModel"; 113 without a Fields child. The held document is
    // dropped first, so after a failure none is held.
    ZRCommon::ZRStatus ParseToDOM(const std::string& text);

    // One variable per Field, in document order, appended to `varList`; the
    // walk stops at the first failing Field (108 a required attribute absent,
    // 109 an unknown storage, 111 refused by the list) and keeps what was
    // added before it. A failed ParseToDOM answers with its own code; with no
    // parse at all, 107.
    ZRCommon::ZRStatus FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList, bool alternateInputRole,
                                   bool useBins, int binCount) const;

    // ZRDataModelParser::SetFieldsInDOM: applied by each ParseToDOM.
    void SetFieldsInDOM(bool inDOM) { fieldsInDOM = inDOM; }
    bool GetFieldsInDOM() const { return fieldsInDOM; }

private:
    // First, so that it is given back after everything made with the XML library.
    ZRXPlatformShare share;
    ZRCommon::ZRStatus status;
    ZRXDOMParser* parser;
    xercesc::DOMDocument* document;
    const xercesc::DOMElement* rootElement;
    const xercesc::DOMElement* fieldsElement;
    bool fieldsInDOM;
};

} // namespace ZRXPrsUtil

#endif
