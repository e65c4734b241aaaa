// Two fuzzer-made documents go to the split-model combiner as two models
// (through files), and the result is exported. The input is split at its
// first zero byte; without one, the whole input is both documents.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrcommonr/ZRVarList.h>

#include "ZRXPlatform.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

std::string g_dir;

void WriteFile(const std::string& path, const uint8_t* data, size_t size)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

void RemoveDir()
{
    for (const char* name : {"/first.pmml", "/second.pmml", "/out.pmml"})
        unlink((g_dir + name).c_str());
    rmdir(g_dir.c_str());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    // Held for the whole run, so that each input does not restart the XML
    // library from nothing.
    static_cast<void>(ZRXPrsUtil::ZRXPlatform::Acquire());
    char pattern[] = "/tmp/zrx-fuzz-combiner-XXXXXX";
    const char* made = mkdtemp(pattern);
    g_dir = made != nullptr ? made : "/tmp";
    std::atexit(RemoveDir);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const void* zero = std::memchr(data, 0, size);
    const size_t firstSize = zero != nullptr ? static_cast<const uint8_t*>(zero) - data : size;
    const uint8_t* second = zero != nullptr ? data + firstSize + 1 : data;
    const size_t secondSize = zero != nullptr ? size - firstSize - 1 : size;
    const std::string first = g_dir + "/first.pmml";
    const std::string later = g_dir + "/second.pmml";
    WriteFile(first, data, firstSize);
    WriteFile(later, second, secondSize);

    ZRMTD_NAMESPACE::ZRVarList list;
    list.AddCatVar("region", "Region", std::vector<std::string>{"north", "south"},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    list.AddCatVar("band", "", std::vector<double>{1, 2}, ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(list);
    // Both forms; the strict one is checked on a document too.
    combiner.SetStrictPMML(size % 3 != 0);
    std::vector<std::string> doubled;
    combiner.CheckSplitModel(later, doubled);
    const bool two = size % 2 == 0;
    combiner.AddModel(first, {"north", two ? "1" : ""});
    combiner.AddModel(later, {"south", "2"});
    combiner.AddModel(first, {"", ""});
    combiner.ExportMiningModel(g_dir + "/out.pmml");
    // A model after the export starts a new document; the destructor
    // releases it.
    combiner.AddModel(later, {"north", "1"});
    return 0;
}
