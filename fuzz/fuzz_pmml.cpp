// Fuzz target for ZRPMMLParser: parse (with the model bodies for inputs of
// even length, without them for the others), fill a variable list with and
// without bins, choose the first model and walk its univariate statistics.
// A second reader keeps the fields out of the DOM and must fill the same
// lists with the same statuses.
#include "FuzzVarList.h"

#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOM.hpp>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

namespace {

// The first child element of the root whose tag ends in "Model".
const xercesc::DOMElement* FirstModel(const xercesc::DOMElement& root)
{
    for (const xercesc::DOMNode* node = root.getFirstChild(); node; node = node->getNextSibling()) {
        const xercesc::DOMElement* element = ZRXPrsUtil::AsElement(*node, nullptr);
        if (!element)
            continue;
        const std::string tag = ZRXPrsUtil::ToUTF8(element->getTagName());
        if (tag.size() >= 5 && tag.compare(tag.size() - 5, 5, "Model") == 0)
            return element;
    }
    return nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // One parser for the whole run keeps the XML library started; every
    // ParseToDOM starts afresh.
    static ZRXPrsUtil::ZRPMMLParser parser;
    static ZRXPrsUtil::ZRPMMLParser streamed;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream stream(text);
    std::istringstream again(text);
    parser.SetReadModelBodies(size % 2 == 0);
    streamed.SetFieldsInDOM(false);
    const ZRCommon::ZRStatus parsed = parser.ParseToDOM(stream);
    if (streamed.ParseToDOM(again) != parsed)
        __builtin_trap();
    if (!parsed.IsOK())
        return 0;
    for (bool useBins : {false, true}) {
        ZRMetadata::ZRVarList list;
        ZRMetadata::ZRVarList same;
        if (parser.FillVarList(list, {}, useBins) != streamed.FillVarList(same, {}, useBins) ||
            VarListText(list) != VarListText(same))
            __builtin_trap();
    }
    const xercesc::DOMElement* model = FirstModel(*parser.GetRootElement());
    if (!model || !parser.SetModelElmt(*model))
        return 0;
    ZRMetadata::ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    do {
        parser.FillUniStats(stats, position);
    } while (position);
    return 0;
}
