// examples/snippets/combiner.cpp
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <iostream>
#include <string>
#include <vector>

ZRCommon::ZRStatus CombineByRegion()
{
    ZRMTD_NAMESPACE::ZRVarList splitVars; // the split variables
    splitVars.AddCatVar("region", "Sales region", std::vector<std::string>{"N", "S"},
                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    combiner.SetStrictPMML(true); // schema-valid, self-contained output
    for (const char* region : {"N", "S"}) {
        const std::string path = std::string("split/churn_") + region + ".pmml";
        std::vector<std::string> doubled;
        ZRCommon::ZRStatus st = combiner.CheckSplitModel(path, doubled); // 105, 113 ...
        if (st.IsOK())
            st = combiner.AddModel(path, {region}); // one model per combination
        if (!st.IsOK())
            std::cerr << path << ": status " << st.GetCode() << '\n';
    }
    ZRCommon::ZRStatus st = combiner.ExportMiningModel("churn_by_region.pmml"); // 118
    if (!st.IsOK())
        return st;

    // read the result back, and write it elsewhere
    ZRXPrsUtil::ZRXMLReadWrite io;              // 103: GetInitStatus()
    st = io.ParseToDOM("churn_by_region.pmml"); // a path, or a stream; 104
    if (st.IsOK())
        st = io.WriteFromDOM("copy/churn.pmml"); // replaced whole or not at all; 118
    else
        std::cerr << io.GetXercesMessage() << '\n';
    return st;
}
