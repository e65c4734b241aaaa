// Uses only the encoding services of the installed library, as an engine
// would: opens a converter of its own, converts, and closes it with ICU's
// ucnv_close. Linked with --as-needed it does not itself load libzrcommonr,
// which the library must then find on its own.
#include <zrparsexmlr/ZRMem.h>

#include <unicode/ucnv.h>

#include <iostream>
#include <string>

int main()
{
    void* cp1252 = ZRMem::VORKMBConverterNew_C("1252");
    if (!cp1252) {
        std::cerr << "encoding consumer: no converter for code page 1252\n";
        return 1;
    }
    std::string latin;
    const int code = ZRMem::VORKMBU8ToCodePage(cp1252, latin, "caf\xC3\xA9");
    ucnv_close(static_cast<UConverter*>(cp1252));
    if (code != 0 || latin != "caf\xE9") {
        std::cerr << "encoding consumer: unexpected result\n";
        return 1;
    }
    std::cout << "encoding consumer: converted " << latin.size() << " bytes\n";
    return 0;
}
