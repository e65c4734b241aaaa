// ZRSettingsParser: reads the settings document of a modelling job, a PMML
// document whose MiningBuildTask carries the job's settings in
// MiningBuildTask/Extension/Parameters. It serves the fields of the data and
// transformation dictionaries as variables, the variable roles of the job,
// and its typed parameters, lists, matrices and nested parameter groups.
//
// Order of calls: construct, ParseToDOM, then FillVarList, FillTransDict and
// the queries in any order and any number of times. Every operation starts
// from the status of the last ParseToDOM and returns it unchanged when it is
// not OK, so one failed parse answers every later call with its own code.
// No operation but ParseToDOM changes the object.
//
// Threads: as for every object of the library (zrparsexmlr.h).
//
// Status codes of the queries: 107 nothing parsed; 108 a required attribute
// or value is absent; 109 a value is there but is no value of the type asked
// for; 119 the document has no Parameters element; 120 (flag true) no
// parameter of that name in the scope; 121 one value asked for and the
// parameter is a list; 122 isList is "true" and there is no ListValue; 123
// (flag true) the parameter, or an item of its list, holds no value; 130
// memory ran out (the lists given keep what was read before; a failed
// allocation in ParseToDOM gives 104, in GetParameterType ParamTypeInvalid,
// in GetComplexParameter null). No exception leaves any operation, and the
// same call made again works.
//
// Parameter names are UTF-8 and compared exactly, code unit by code unit. A
// null name, and a name that is not valid UTF-8, name no parameter (120, or
// the "not found" answer of the operation).
//
// The base's SetFieldsInDOM(false) serves this reader too: its DataField
// elements are then kept out of the DOM, and FillVarList, read from their
// records, gives what it gives on the whole document; so does the base's
// FillVarList called on this object, as the records hold what either reads
// of a DataField. The transformation dictionary, the task and its
// parameters are built as always.
#ifndef ZRPARSEXMLR_ZRSETTINGSPARSER_H
#define ZRPARSEXMLR_ZRSETTINGSPARSER_H

#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRXExport.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRVarList.h>

#include <istream>
#include <string>
#include <vector>

namespace ZRXPrsUtil {

class ZRXPRS_API ZRSettingsParser : public ZRPMMLParser {
public:
    // The type that a Parameter declares in its "type" attribute.
    enum ParamType {
        ParamTypeString = 0,    // "string"
        ParamTypeDouble = 1,    // "double"
        ParamTypeInteger = 2,   // "integer"
        ParamTypeBoolean = 3,   // "boolean"
        ParamTypeEnum = 4,      // "enum": read it with the string form
        ParamTypeFieldName = 5, // "fieldName": read it with the string form
        ParamTypeInvalid = 6    // any other word, no "type", or no answer to be had
    };

    // A failure of the base's construction stays in the status (103).
    ZRSettingsParser();
    // The base frees the DOM parser; nothing of this class is owned.
    ~ZRSettingsParser() override;
    ZRSettingsParser(const ZRSettingsParser&) = delete;
    ZRSettingsParser& operator=(const ZRSettingsParser&) = delete;

    // Parses the document and checks it as the base does (103 to 106), then
    // finds the first MiningBuildTask of the root, the first Extension in it
    // and the first Parameters in that; any of them absent gives 119, with
    // the DOM kept but no query served. The result is also kept as status.
    ZRCommon::ZRStatus ParseToDOM(std::istream& stream) override;

    // Whether a document without the Parameters path fails (119, true: the
    // default) or is kept as a PMML document without settings (false): then
    // ParseToDOM gives the base's outcome, the base's queries (FillVarList,
    // FillUniStats, ...) and FillVarList and FillTransDict of this class
    // serve the document, and the role and parameter queries answer 119. This departs from the reader's
    // rule that a settings document without Parameters fails as a whole, on
    // purpose and only on request: a caller that takes any PMML document and
    // its settings if it has them (zrx inspect) then parses it once, where it
    // would otherwise parse it with the PMML reader and again with this one.
    // Applies from the next ParseToDOM on.
    void SetParametersRequired(bool required);
    bool GetParametersRequired() const;
    // The Parameters element of the parsed document (MiningBuildTask, its
    // first Extension, the first Parameters in that; the first of each), or
    // null when there is none or the parse failed. Lives in the DOM.
    const xercesc::DOMElement* GetParametersElement() const;

    // Appends one variable per DataField, in document order, with role input
    // and the storage code of its dataType ("integer" 1, "double"/"float" 2,
    // "string" 3, "date" 4, "time" 5, "dateTime" 6; any other word 109).
    // Interval children of numeric fields give the range of a continuous
    // variable (109 for a margin that is no number or a left margin above the
    // right one). With `useBins`, continuous fields take their bins from the
    // Discretize of the transformation dictionary: 110 when there is no such
    // dictionary or no Discretize for the field. Stops at the first failing
    // field (108 absent name/dataType/optype, 109, 110, 111 refused by the
    // list); the variables added before it stay in the list.
    ZRCommon::ZRStatus FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList, bool useBins) const;

    // Appends one variable per DerivedField of the transformation dictionary,
    // read as FillVarList reads a DataField, with two differences: the first
    // Interval inside an Extension counts like a direct Interval child, and
    // no bins are ever used (a continuous field always gets its margins). A
    // document without a transformation dictionary gives OK and adds nothing.
    ZRCommon::ZRStatus FillTransDict(ZRMTD_NAMESPACE::ZRVarList& varList) const;

    // ---------------------------------------------------------------- roles
    // The Parameter of each role is searched among the direct children of
    // Parameters only. GetTargetVars ("target") and GetPredictors ("inputs")
    // read it as GetArray does; the other list queries read it as the list
    // form of GetVariables, and GetFrequencyWeight ("FrequencyWeightVar") as
    // its single form. Names are not checked against the dictionaries.
    ZRCommon::ZRStatus GetTargetVars(std::vector<std::string>& out) const;
    ZRCommon::ZRStatus GetCatResponseVars(std::vector<std::string>& out) const;  // "CatResponses"
    ZRCommon::ZRStatus GetContResponseVars(std::vector<std::string>& out) const; // "ContResponses"
    ZRCommon::ZRStatus GetPredictors(std::vector<std::string>& out) const;
    ZRCommon::ZRStatus GetCatPredictors(std::vector<std::string>& out) const;  // "CatPredictors"
    ZRCommon::ZRStatus GetContPredictors(std::vector<std::string>& out) const; // "ContPredictors"
    ZRCommon::ZRStatus GetFrequencyWeight(std::string& out) const;

    // List form: with isList exactly "true", the `value` of each Value of the
    // first ListValue (122 without ListValue; 108 at a Value without `value`,
    // keeping the names before it); otherwise the Parameter's own `value` as
    // a list of one (108 if absent). Empty names are left out.
    ZRCommon::ZRStatus GetVariables(const char* name, std::vector<std::string>& out) const;
    // Single form: the Parameter's `value`, an empty one too; without it,
    // 121 if isList is "true", else 108.
    ZRCommon::ZRStatus GetVariables(const char* name, std::string& out) const;

    // ---------------------------------------------------------- parameters
    // `context` selects the scope searched: null is the Parameters element,
    // otherwise it must be a result of GetComplexParameter of this object
    // since its last ParseToDOM (it is taken on trust). Only direct children
    // of the scope are searched; of several of one name the first counts.
    //
    // GetParameter reads the `value` of a Parameter. Without `value`: 121 if
    // it has a ListValue, else 123. The string form takes any text; the int
    // form takes integers of 0 or more (a negative integer gives 109 and stays
    // in `out`); the double form takes numbers, NaN as the missing value,
    // refusing INF and -INF; the bool form takes exactly "true" and "false".
    // A refused text gives 109 and leaves `out` untouched. The declared
    // "type" is not compared with the form.
    ZRCommon::ZRStatus GetParameter(const char* name, std::string& out,
                                    void* context = nullptr) const;
    ZRCommon::ZRStatus GetParameter(const char* name, int& out, void* context = nullptr) const;
    ZRCommon::ZRStatus GetParameter(const char* name, double& out, void* context = nullptr) const;
    ZRCommon::ZRStatus GetParameter(const char* name, bool& out, void* context = nullptr) const;

    // The declared "type" of a Parameter; ParamTypeInvalid for every failure.
    ParamType GetParameterType(const char* name, void* context = nullptr);
    // The scope of the ComplexParameter of that name, to be passed as
    // `context`; null for every failure. Groups nest to any depth: pass the
    // outer group's context to open an inner one. The pointer belongs to the
    // DOM and is good until the next ParseToDOM or the object's destruction.
    void* GetComplexParameter(const char* name, void* context = nullptr);

    // ------------------------------------------------------ arrays, matrices
    // GetArray reads the Values of the Parameter's first ListValue, or, with
    // no ListValue, its `value` as an array of one. 123 (flag true) when
    // there is nothing to read or a Value has no `value`; 109 for an item
    // that the int or double form refuses (negative ints included). Both end
    // the walk and keep the items before. Empty strings are left out.
    ZRCommon::ZRStatus GetArray(const char* name, std::vector<std::string>& out,
                                void* context = nullptr) const;
    ZRCommon::ZRStatus GetArray(const char* name, std::vector<int>& out,
                                void* context = nullptr) const;
    ZRCommon::ZRStatus GetArray(const char* name, std::vector<double>& out,
                                void* context = nullptr) const;

    // GetMatrix reads a "MatrixParmeter" element: one row per ArrayParameter
    // child, of the `value`s of its Value children. It is lenient where
    // GetArray is strict: a Value without `value` and an item that the form
    // refuses are left out of their row, an empty string is kept, and no
    // row at all is OK. Only 107, 119 and 120 (and a failed parse) arise.
    ZRCommon::ZRStatus GetMatrix(const char* name, std::vector<std::vector<std::string>>& out,
                                 void* context = nullptr);
    ZRCommon::ZRStatus GetMatrix(const char* name, std::vector<std::vector<int>>& out,
                                 void* context = nullptr);
    ZRCommon::ZRStatus GetMatrix(const char* name, std::vector<std::vector<double>>& out,
                                 void* context = nullptr);

protected:
    // The Parameters element of the parsed document; null unless the last
    // ParseToDOM ended OK. Lives in the DOM owned by the base's parser.
    const xercesc::DOMElement* parametersElement;
    // SetParametersRequired, applied by each ParseToDOM.
    bool parametersRequired;
};

} // namespace ZRXPrsUtil

#endif
