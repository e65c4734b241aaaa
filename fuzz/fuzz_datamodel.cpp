// libFuzzer target: any bytes as a DataModel document, through ParseToDOM and
// FillVarList with each combination of the options, once with the fields in
// the DOM and once out of it, which must give the same statuses and lists.
// The same bytes also go through the UTF-8 conversions, which must agree with
// the XML library's own UTF-8 transcoder.
#include "FuzzVarList.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // One object for the whole run: it keeps the XML library started, and
    // every input re-parses on top of the previous one.
    static ZRXPrsUtil::ZRDataModelParser parser;
    static ZRXPrsUtil::ZRDataModelParser streamed;
    streamed.SetFieldsInDOM(false);
    const std::string text(reinterpret_cast<const char*>(data), size);

    const ZRCommon::ZRStatus parsed = parser.ParseToDOM(text);
    if (streamed.ParseToDOM(text) != parsed)
        __builtin_trap();
    for (int options = 0; options < 4; ++options) {
        ZRMTD_NAMESPACE::ZRVarList list;
        const ZRCommon::ZRStatus filled =
            parser.FillVarList(list, options & 1, options & 2, int(size % 7) - 1);
        if (!parsed.IsOK() && (filled != parsed || list.Size() != 0))
            __builtin_trap();
        ZRMTD_NAMESPACE::ZRVarList same;
        if (streamed.FillVarList(same, options & 1, options & 2, int(size % 7) - 1) != filled ||
            VarListText(same) != VarListText(list))
            __builtin_trap();
    }

    const std::string bytes = text.substr(0, text.find('\0'));
    const ZRXPrsUtil::ZRXTranscoder reference;
    const std::vector<XMLCh> units = ZRXPrsUtil::ToUTF16(bytes.c_str());
    if (units != reference.TranscodeFrom(bytes.c_str()))
        __builtin_trap();
    if (ZRXPrsUtil::ToUTF8(units.data()) != reference.TranscodeTo(units.data()))
        __builtin_trap();
    return 0;
}
