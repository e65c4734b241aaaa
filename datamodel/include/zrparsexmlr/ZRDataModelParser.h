// ZRDataModelParser: reads a DataModel document, the product's own small
// description of a data set, into a variable list.
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
    // Parses `text`, the text of a document (not a file name).
    ZRCommon::ZRStatus ParseToDOM(const std::string& text);
    // Adds one variable per Field of the held document to `varList`.
    ZRCommon::ZRStatus FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList, bool alternateInputRole,
                                   bool useBins, int binCount) const;

private:
    ZRDataModelParserImp* m_imp;
};

} // namespace ZRXPrsUtil

#endif
