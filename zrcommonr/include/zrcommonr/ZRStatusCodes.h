// The codes a failed ZRStatus carries, by name:
//
//     if (st.GetCode() == ZRCommon::eCannotParse) ...
//
// The numbers are fixed: callers and stored results compare them, so a code
// never changes its value and a new one takes a number not used before.
#ifndef ZRCOMMONR_ZRSTATUSCODES_H
#define ZRCOMMONR_ZRSTATUSCODES_H

namespace ZRCommon {

enum StatusCode : long {
    eCannotStart = 103,          // the XML library can't be started, or a parser can't be made
    eCannotParse = 104,          // the document can't be parsed (not well-formed, empty, a
                                 // forbidden entity, an exception while reading, ...)
    eWrongRoot = 105,            // no document element, or another one than the reader's
    eNoDataDictionary = 106,     // a PMML document without DataDictionary
    eNoDocument = 107,           // no document parsed yet
    eAttributeAbsent = 108,      // a required attribute or value is absent
    eNotAccepted = 109,          // an attribute or value is there but not accepted
    eNoBins = 110,               // bins asked for, none for a continuous field
    eVariableRefused = 111,      // the variable list refused a variable
    eNoModel = 112,              // no model chosen for the statistics
    eChildAbsent = 113,          // a required child element is absent
    eBadFrequencies = 114,       // frequencies that are negative, not numbers or don't add up
    eIntervalsDontFit = 115,     // intervals that don't fit together
    eInvalidStatistics = 116,    // statistics that can't stand together
    eCannotWrite = 118,          // a document can't be written
    eNoParameters = 119,         // a settings document without MiningBuildTask/Extension/Parameters
    eNoSuchParameter = 120,      // no parameter of that name in the scope (flag set)
    eIsList = 121,               // one value asked of a parameter that holds a list
    eNoListValue = 122,          // a list parameter without ListValue
    eNoValue = 123,              // the parameter holds no value (flag set)
    eOtherFunction = 124,        // a split model with another functionName than the first
    eIsMiningModel = 125,        // a split model that is itself a MiningModel
    eSplitValuesDontMatch = 126, // split values that don't match the models
    // The split-model combiner's strict PMML form refuses a model that can't
    // stand in one schema-valid output beside the models taken before:
    eOtherPMMLNamespace = 127,       // in another PMML namespace (version) than the first model
    eFunctionDefinedOtherwise = 128, // a DefineFunction whose name the output defines otherwise
    ePrefixBoundOtherwise = 129,     // a namespace prefix that the output binds otherwise
    eOutOfMemory = 130               // memory ran out: a query could not allocate what it needed
};

} // namespace ZRCommon

#endif
