// examples/snippets/pmml.cpp
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOMElement.hpp> // the DOM element type, not only its name

#include <fstream>
#include <iostream>

void ReadPMML(const char* path)
{
    ZRXPrsUtil::ZRPMMLParser reader;
    std::ifstream in(path, std::ios::binary); // a stream, not a path
    if (!reader.ParseToDOM(in).IsOK())
        std::cerr << reader.GetXercesMessage() << '\n';
    ZRMTD_NAMESPACE::ZRVarList vars;
    ZRCommon::ZRStatus st = reader.FillVarList(vars, /*all fields*/ {}, /*useBins*/ false);

    // univariate statistics of a model, one field per call
    const xercesc::DOMElement* root = reader.GetRootElement(); // null after a failed parse
    const xercesc::DOMElement* tree =
        root ? ZRXPrsUtil::GetFirstChildElmt(*root, "TreeModel") : nullptr;
    if (tree && reader.SetModelElmt(*tree)) { // a bool, not a status
        ZRMTD_NAMESPACE::ZRUniStats stats;
        const xercesc::DOMElement* pos = nullptr;
        do {
            st = reader.FillUniStats(stats, pos); // a faulty field: a status, and pos moves on
            if (pos && st.IsOK())
                std::cout << stats.GetFieldName() << ' ' << stats.GetTotalFreq() << '\n';
        } while (pos);
    }
}
