// Fuzz target for ZRSettingsParser: parse, fill a variable list from both
// dictionaries (with and without bins), then every role, parameter, array and
// matrix query on the names that the document itself carries, in the
// Parameters scope and in every group that those names open. A second reader
// keeps the fields out of the DOM and must fill the same lists with the same
// statuses, through its own FillVarList and the PMML reader's.
#include "FuzzVarList.h"

#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include "ZRXWalk.h"

#include <xercesc/dom/DOMElement.hpp>

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ZRXPrsUtil::ZRSettingsParser;

const std::size_t kMaxNames = 16;
const std::size_t kMaxScopes = 6;

// Where the names to ask for are taken: the settings if the document has
// them, else the whole document.
const xercesc::DOMElement* NameSource(const xercesc::DOMElement& root)
{
    const xercesc::DOMElement* element = &root;
    for (const char* tag : {"MiningBuildTask", "Extension", "Parameters"}) {
        element = ZRXPrsUtil::GetFirstChildElmt(*element, tag);
        if (element == nullptr)
            return &root;
    }
    return element;
}

// The "name" attributes of the document's elements, in document order.
std::vector<std::string> NamesOf(const xercesc::DOMElement& root)
{
    std::vector<std::string> names;
    if (const XMLCh* name = ZRXPrsUtil::GetAttribute(root, "name"))
        names.push_back(ZRXPrsUtil::ToUTF8(name));
    for (ZRXPrsUtil::ZRXNodeWalk walk(&root); walk.Node() != nullptr && names.size() < kMaxNames;) {
        const bool element = walk.Node()->getNodeType() == xercesc::DOMNode::ELEMENT_NODE;
        if (element) {
            const auto& child = static_cast<const xercesc::DOMElement&>(*walk.Node());
            if (const XMLCh* name = ZRXPrsUtil::GetAttribute(child, "name"))
                names.push_back(ZRXPrsUtil::ToUTF8(name));
        }
        walk.Next(element);
    }
    return names;
}

void QueryAll(ZRSettingsParser& parser, const char* name, void* context)
{
    std::string text;
    int integer = 0;
    double real = 0.0;
    bool flag = false;
    parser.GetParameter(name, text, context);
    parser.GetParameter(name, integer, context);
    parser.GetParameter(name, real, context);
    parser.GetParameter(name, flag, context);
    parser.GetParameterType(name, context);
    std::vector<std::string> texts;
    std::vector<int> integers;
    std::vector<double> reals;
    parser.GetArray(name, texts, context);
    parser.GetArray(name, integers, context);
    parser.GetArray(name, reals, context);
    std::vector<std::vector<std::string>> textRows;
    std::vector<std::vector<int>> integerRows;
    std::vector<std::vector<double>> realRows;
    parser.GetMatrix(name, textRows, context);
    parser.GetMatrix(name, integerRows, context);
    parser.GetMatrix(name, realRows, context);
    if (context == nullptr) {
        parser.GetVariables(name, texts);
        parser.GetVariables(name, text);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // One parser for the whole run keeps the XML library started; every
    // ParseToDOM starts afresh.
    static ZRSettingsParser parser;
    static ZRSettingsParser streamed;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream stream(text);
    std::istringstream again(text);
    streamed.SetFieldsInDOM(false);
    if (parser.ParseToDOM(stream) != streamed.ParseToDOM(again))
        __builtin_trap();

    for (bool useBins : {false, true}) {
        ZRMetadata::ZRVarList list;
        ZRMetadata::ZRVarList same;
        if (parser.FillVarList(list, useBins) != streamed.FillVarList(same, useBins))
            __builtin_trap();
        parser.FillTransDict(list);
        streamed.FillTransDict(same);
        ZRXPrsUtil::ZRPMMLParser& pmml = parser;
        ZRXPrsUtil::ZRPMMLParser& pmmlStreamed = streamed;
        if (pmml.FillVarList(list, {}, useBins) != pmmlStreamed.FillVarList(same, {}, useBins) ||
            VarListText(list) != VarListText(same))
            __builtin_trap();
    }
    std::vector<std::string> names;
    std::string weight;
    parser.GetTargetVars(names);
    parser.GetCatResponseVars(names);
    parser.GetContResponseVars(names);
    parser.GetPredictors(names);
    parser.GetCatPredictors(names);
    parser.GetContPredictors(names);
    parser.GetFrequencyWeight(weight);

    const xercesc::DOMElement* root = parser.GetRootElement();
    if (root == nullptr) {
        QueryAll(parser, "p", nullptr);
        return 0;
    }
    names = NamesOf(*NameSource(*root));
    std::vector<void*> scopes{nullptr};
    for (std::size_t i = 0; i < scopes.size(); ++i) {
        for (const std::string& name : names) {
            QueryAll(parser, name.c_str(), scopes[i]);
            void* group = parser.GetComplexParameter(name.c_str(), scopes[i]);
            if (group != nullptr && scopes.size() < kMaxScopes)
                scopes.push_back(group);
        }
    }
    return 0;
}
