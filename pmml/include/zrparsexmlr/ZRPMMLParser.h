// ZRPMMLParser: reads a PMML document from a stream and serves its data
// dictionary as variables, the bins of its transformation dictionary, and the
// univariate statistics of a chosen model.
#ifndef ZRPARSEXMLR_ZRPMMLPARSER_H
#define ZRPARSEXMLR_ZRPMMLPARSER_H

#include <zrparsexmlr/ZRXExport.h>
#include <zrcommonr/ZRStatus.h>
#include <zrcommonr/ZRUniStats.h>
#include <zrcommonr/ZRVarList.h>

#include <xercesc/util/XercesDefs.hpp>

#include <istream>
#include <string>
#include <vector>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace ZRXPrsUtil {

class ZRXPRS_API ZRPMMLParser {
public:
    ZRPMMLParser();
    virtual ~ZRPMMLParser();
    ZRPMMLParser(const ZRPMMLParser&) = delete;
    ZRPMMLParser& operator=(const ZRPMMLParser&) = delete;

    virtual ZRCommon::ZRStatus ParseToDOM(std::istream& stream);

    ZRCommon::ZRStatus GetStatus() const;
    std::string GetXercesMessage() const;
    const xercesc::DOMElement* GetRootElement() const;
    bool SetModelElmt(const xercesc::DOMElement& model);

    ZRCommon::ZRStatus FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList,
                                   const std::vector<std::string>& wantedFields,
                                   bool useBins) const;

    ZRCommon::ZRStatus FillUniStats(ZRMTD_NAMESPACE::ZRUniStats& stats,
                                    const xercesc::DOMElement*& position) const;

protected:
    ZRCommon::ZRStatus FillUniStatsCat(ZRMTD_NAMESPACE::ZRUniStats& stats,
                                       const std::string& fieldName, double totalFreq,
                                       const xercesc::DOMElement& uniStats) const;
    ZRCommon::ZRStatus FillUniStatsCont(ZRMTD_NAMESPACE::ZRUniStats& stats,
                                        const std::string& fieldName, double totalFreq,
                                        const xercesc::DOMElement& uniStats) const;
    ZRCommon::ZRStatus FillCutPointsFreqs(std::vector<double>& cutPoints,
                                          std::vector<double>& frequencies, bool& leftOpen,
                                          const xercesc::DOMElement& contStats) const;
    ZRCommon::ZRStatus ExtractInterval(double& leftMargin, double& rightMargin, bool& leftOpen,
                                       const xercesc::DOMElement& interval) const;
    bool SetBinsFrTransDict(const std::string& fieldName, std::vector<double>& cutPoints,
                            std::vector<std::string>& binValues) const;

    ZRCommon::ZRStatus status;
    xercesc::XercesDOMParser* parser;
    std::string xercesMessage;
    xercesc::DOMDocument* document;
    const xercesc::DOMElement* rootElement;
    const xercesc::DOMElement* dataDictionary;
    const xercesc::DOMElement* transDictionary;
    const xercesc::DOMElement* modelElement;
};

} // namespace ZRXPrsUtil

#endif
