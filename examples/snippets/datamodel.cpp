// examples/snippets/datamodel.cpp
#include <zrparsexmlr/ZRDataModelParser.h>

#include <string>

ZRCommon::ZRStatus ReadDataModel(const std::string& documentText, ZRMTD_NAMESPACE::ZRVarList& vars)
{
    ZRXPrsUtil::ZRDataModelParser parser;
    ZRCommon::ZRStatus st = parser.ParseToDOM(documentText); // the text, not a path
    if (st.IsOK())
        st = parser.FillVarList(vars, /*alternateInputRole*/ false, /*useBins*/ true,
                                /*binCount*/ 10);
    return st;
}
