// examples/snippets/encoding.cpp
#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRMem.h>

#include <unicode/ucnv.h>

#include <cstddef>
#include <string>

std::size_t Convert()
{
    void* cp1252 = ZRMem::VORKMBConverterNew_C("1252"); // code-page number or name
    std::string latin;
    int code = ZRMem::VORKMBU8ToCodePage(cp1252, latin, "caf\xC3\xA9 \xE4\xB8\xAD");
    // latin == "caf\xE9 ?", code == 3: a character was replaced by "?"
    ucnv_close(static_cast<UConverter*>(cp1252)); // the caller closes what it opens
    ZRMem::ExtNameStr name;
    name.SetU8("caf\xC3\xA9");                                    // one name in every encoding
    return name.GetU16().size() + static_cast<std::size_t>(code); // 4 + 3
}
