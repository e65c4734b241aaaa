// The exported handle of the DataModel reader.
#include <zrparsexmlr/ZRDataModelParser.h>

#include "ZRDataModelParserImp.h"

#include <zrcommonr/ZRStatusCodes.h>

namespace ZRXPrsUtil {

namespace {

// Null when memory runs out: the reader then answers 103 throughout.
ZRDataModelParserImp* NewImp()
{
    try {
        return new ZRDataModelParserImp();
    } catch (...) {
        return nullptr;
    }
}

const ZRCommon::ZRStatus kNotStarted(ZRCommon::eCannotStart, false);

} // namespace

ZRDataModelParser::ZRDataModelParser() : m_imp(NewImp()) {}

ZRDataModelParser::~ZRDataModelParser()
{
    delete m_imp;
}

ZRCommon::ZRStatus ZRDataModelParser::GetStatus() const
{
    return m_imp ? m_imp->GetStatus() : kNotStarted;
}

ZRCommon::ZRStatus ZRDataModelParser::ParseToDOM(const std::string& text)
{
    return m_imp ? m_imp->ParseToDOM(text) : kNotStarted;
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
    return m_imp ? m_imp->FillVarList(varList, alternateInputRole, useBins, binCount) : kNotStarted;
}

} // namespace ZRXPrsUtil
