// The exported handle of the DataModel reader.
#include <zrparsexmlr/ZRDataModelParser.h>

#include "ZRDataModelParserImp.h"

namespace ZRXPrsUtil {

ZRDataModelParser::ZRDataModelParser() : m_imp(new ZRDataModelParserImp()) {}

ZRDataModelParser::~ZRDataModelParser()
{
    delete m_imp;
}

ZRCommon::ZRStatus ZRDataModelParser::GetStatus() const
{
    return m_imp->GetStatus();
}

ZRCommon::ZRStatus ZRDataModelParser::ParseToDOM(const std::string& text)
{
    return m_imp->ParseToDOM(text);
}

void ZRDataModelParser::SetFieldsInDOM(bool fieldsInDOM)
{
    m_imp->SetFieldsInDOM(fieldsInDOM);
}

bool ZRDataModelParser::GetFieldsInDOM() const
{
    return m_imp->GetFieldsInDOM();
}

ZRCommon::ZRStatus ZRDataModelParser::FillVarList(ZRMTD_NAMESPACE::ZRVarList& varList,
                                                  bool alternateInputRole, bool useBins,
                                                  int binCount) const
{
    return m_imp->FillVarList(varList, alternateInputRole, useBins, binCount);
}

} // namespace ZRXPrsUtil
