// Uses the installed library as an engine would: reads a DataModel document
// into a variable list.
#include <zrparsexmlr/zrparsexmlr.h>
#include <zrcommonr/zrcommonr.h>

#include <iostream>

int main()
{
    ZRXPrsUtil::ZRDataModelParser parser;
    const ZRCommon::ZRStatus parsed = parser.ParseToDOM(
        "<DataModel><Fields><Field name='age' storage='integer' measure='continuous'/>"
        "</Fields></DataModel>");
    ZRMTD_NAMESPACE::ZRVarList list;
    const ZRCommon::ZRStatus filled = parser.FillVarList(list, false, false, 0);
    if (!parsed.IsOK() || !filled.IsOK() || list.Size() != 1 ||
        list.GetVarAt(0)->GetName() != "age") {
        std::cerr << "consumer: unexpected result\n";
        return 1;
    }
    std::cout << "consumer: read " << list.Size() << " variable\n";
    return 0;
}
