// ZRDataModelParser: reads a DataModel document, the product's own small
// description of a data set, into a variable list.
//
//   <DataModel><Fields>
//     <Field name="age" displayLabel="Age" storage="integer" measure="continuous" role="input">
//       <Range minValue="18" maxValue="99"/>
//     </Field>
//     <Field name="region" storage="string" measure="nominal">
//       <Values><Value value="N" displayLabel="North"/>...</Values>
//     </Field>
//   </Fields></DataModel>
//
// "storage" is one of integer, real, string, date, time, timestamp (storage
// codes 1 to 6); "measure" "continuous" makes a continuous variable and any
// other text a categorical one; "role" input, target or freqWeight (roles 4,
// 2, 3; any other text or none gives 0). A continuous freqWeight field
// becomes the list's weight variable.
//
// Status codes: 103 the XML library can't be started or no parser made;
// 104 the document can't be parsed (not well-formed, empty, or refused for
// safety: it uses an external entity or expands entities beyond the XML
// library's limit; external DTDs are not loaded); 105 the document element
// is not "DataModel"; 113 it has no "Fields" child; 107 FillVarList without a
// parsed document; 108 a Field lacks "name", "storage" or "measure"; 109 its
// "storage" is unknown; 111 the ZRVarList refused the variable. A failed
// allocation gives 103 in the constructor, 104 in ParseToDOM (no document is
// held) and 130 in FillVarList (what was added before stays); no exception
// leaves any operation, and the object stays usable.
//
// Each object takes a share of the XML library's start in its constructor and
// gives it back in its destructor. One object reads any number of documents
// one after the other and holds the memory of the last one only. A document
// nested deeper than 2,000 elements is refused with 104.
//
// Threads: as for every object of the library (zrparsexmlr.h).
#ifndef ZRPARSEXMLR_ZRDATAMODELPARSER_H
#define ZRPARSEXMLR_ZRDATAMODELPARSER_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRVarList.h>

#include <string>

namespace ZRXPrsUtil {

class ZRDataModelParserImp;

class ZRXPRS_API ZRDataModelParser {
public:
    ZRDataModelParser();
    virtual ~ZRDataModelParser();
    ZRDataModelParser(const ZRDataModelParser&) = delete;
    ZRDataModelParser& operator=(const ZRDataModelParser&) = delete;

    // The status of construction, then of the last ParseToDOM.
    ZRCommon::ZRStatus GetStatus() const;
    // Parses `text`, the text of a document (not a file name), replacing the
    // document held before; after a failure no document is held.
    ZRCommon::ZRStatus ParseToDOM(const std::string& text);
    // Adds one variable per Field of the held document to `varList`, in
    // document order, and stops at the first Field that fails; what was added
    // before stays. `alternateInputRole` gives "input" fields role 5 in place
    // of 4. Continuous variables are asked for `binCount` bins when `useBins`
    // is true and `binCount` is more than 1. After a failed ParseToDOM this
    // answers with that failure's code.
    ZRCommon::ZRStatus FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList, bool alternateInputRole,
                                   bool useBins, int binCount) const;

    // Whether the next ParseToDOM builds the Field elements of Fields as DOM
    // nodes; true, as the whole document, unless set otherwise. With false,
    // each Field child of the first Fields of the DataModel root is read as
    // the text is parsed into a compact record (its name, label, storage,
    // measure, role, values and their labels, and range, with numbers as
    // doubles and texts once), and no node is made of it or of anything
    // inside it; Fields keeps its attributes and every other child, and Field
    // elements anywhere else are built. FillVarList then gives exactly what
    // it gives on the whole document: the same calls on the list in the same
    // order and the same status (also 104 for a document that is not
    // well-formed, or nested too deep inside a Field: the fields count for
    // the nesting limit). A wide data set so takes a fraction of the time and
    // memory of its DOM. The records live until the next ParseToDOM (which
    // frees them first, whatever its outcome) or the object's destruction.
    // The setting applies from the next ParseToDOM on, until set again.
    void SetFieldsInDOM(bool fieldsInDOM);
    bool GetFieldsInDOM() const;

private:
    ZRDataModelParserImp* m_imp;
};

} // namespace ZRXPrsUtil

#endif
