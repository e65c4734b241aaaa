// Every allocation of every public operation fails once: for k = 1, 2, ...
// the k-th allocation (operator new, and so the XML library's memory manager,
// and ICU's) of the calls of one row fails, until the calls run through
// without reaching it. At each point: no exception leaves the library, the
// call gives its documented failure code (or, where the library got over the
// failure, exactly the normal result), the same call made again without a
// failure gives the normal result, and nothing is left allocated once the
// objects are gone.
//
// A row is a list of calls on the objects that `make` builds; after a failed
// call the harness makes that call again and goes on with the rest. Rows with
// many points run in shards (point k in shard k mod shards), each a test.
#include "FailingAllocator.h"

#include "../combiner/CombinerTestSupport.h"
#include "../pmml/PMMLTestSupport.h"
#include "ZRXTestDom.h"

#include <zrparsexmlr/ExtNameStr.h>
#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRMem.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>
#include <zrcommonr/ZRStatusCodes.h>

#include <unicode/ucnv.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace {

using failtest::Uncounted;
using ZRCommon::ZRStatus;
using ZRMTD_NAMESPACE::ZRVarList;

// What a call without a status gives when it fails.
const long kNull = -1;

// One public call: its code (0 OK) and the codes that a failed allocation may
// give it.
struct Call {
    std::function<long()> run;
    std::vector<long> failure;
};

// The objects of a row and its calls; `result` tells, as text, what the
// calls made, once they have all succeeded.
struct Case {
    std::vector<Call> calls;
    std::function<std::string()> result;
    std::vector<std::shared_ptr<void>> objects;
    std::size_t next = 0;      // the call to make next
    std::vector<long> failure; // the codes that the last failed call may give
};

struct Row {
    const char* name;
    std::function<void(Case&)> make;
    int shards = 1;
    bool startsLibrary = false; // no other object holds the XML library
    std::unique_ptr<Case> Make() const
    {
        auto c = std::make_unique<Case>();
        make(*c);
        return c;
    }
};

template <class T>
T& Hold(Case& c, T* object)
{
    c.objects.emplace_back(std::shared_ptr<T>(object));
    return *object;
}

long Code(const ZRStatus& status)
{
    return status.GetCode();
}

std::string Describe(ZRVarList& list)
{
    std::string text;
    for (int i = 0; i < static_cast<int>(list.Size()); ++i)
        text += pmmltest::Describe(*list.GetVarAt(i), *list.GetEncoderAt(i)) + "\n";
    return text;
}

// What a parse gives when memory runs out: 104, or 103 where the parser
// could not be made.
const std::vector<long> kParse = {ZRCommon::eCannotStart, ZRCommon::eCannotParse};

std::string Data(const std::string& path)
{
    return std::string(ZRX_TEST_DATA_DIR) + "/" + path;
}
const std::string kSettings = ZRX_EXAMPLES_DIR "/data/job.settings.xml";

// A reader of type T that has parsed `path`, in `c`.
template <class T>
T& Parsed(Case& c, const std::string& path)
{
    T& reader = Hold(c, new T());
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(reader.ParseToDOM(in).IsOK()) << path;
    return reader;
}

// The call that parses `path` with `reader`.
template <class T>
Call ParseCall(T& reader, const std::string& path, std::vector<long> failure)
{
    return {[&reader, path] {
                std::unique_ptr<std::ifstream> in;
                {
                    Uncounted own;
                    in = std::make_unique<std::ifstream>(path, std::ios::binary);
                }
                return Code(reader.ParseToDOM(*in));
            },
            failure};
}

// A variable list made anew for each call, described as the result.
struct Vars {
    std::unique_ptr<ZRVarList> list;
    ZRVarList& Fresh()
    {
        Uncounted own;
        list.reset(new ZRVarList());
        return *list;
    }
};

// The dictionary read as DOM, or with its fields streamed into records.
void PMMLDictionary(Case& c, bool fieldsInDOM)
{
    auto& reader = Hold(c, new ZRXPrsUtil::ZRPMMLParser());
    reader.SetFieldsInDOM(fieldsInDOM);
    auto& vars = Hold(c, new Vars());
    c.calls = {ParseCall(reader, Data("pmml/dictionary.pmml"), kParse),
               {[&] { return Code(reader.FillVarList(vars.Fresh(), {}, false)); },
                {ZRCommon::eOutOfMemory}}};
    c.result = [&] { return Describe(*vars.list); };
}

void PMMLBins(Case& c)
{
    auto& reader = Parsed<ZRXPrsUtil::ZRPMMLParser>(c, Data("pmml/dictionary.pmml"));
    auto& vars = Hold(c, new Vars());
    auto& wanted = Hold(c, new std::vector<std::string>{"cont", "cont_one", "cat_str"});
    c.calls = {{[&] { return Code(reader.FillVarList(vars.Fresh(), wanted, true)); },
                {ZRCommon::eOutOfMemory}}};
    c.result = [&] { return Describe(*vars.list); };
}

// The statistics walks of a continuous and a discrete model: a failed
// allocation leaves the position where it was, so the walk goes on there.
void PMMLStatistics(Case& c)
{
    auto& text = Hold(c, new std::string());
    const std::pair<const char*, const char16_t*> models[] = {
        {"pmml/stats_intervals.pmml", u"ClusteringModel"},
        {"pmml/stats_faults.pmml", u"TreeModel"}};
    for (const auto& model : models) {
        auto& reader = Parsed<pmmltest::Parser>(c, Data(model.first));
        auto& position = Hold(c, new const xercesc::DOMElement*(nullptr));
        EXPECT_TRUE(reader.SetModelElmt(*reader.Find(model.second)));
        c.calls.push_back({[&] {
                               do {
                                   ZRMTD_NAMESPACE::ZRUniStats stats;
                                   const long code = Code(reader.FillUniStats(stats, position));
                                   if (code == ZRCommon::eOutOfMemory)
                                       return code;
                                   Uncounted own;
                                   if (position)
                                       text += std::to_string(code) + " " + stats.GetFieldName() +
                                               " " + std::to_string(stats.GetTotalFreq()) + "\n";
                               } while (position);
                               return 0L;
                           },
                           {ZRCommon::eOutOfMemory}});
    }
    c.result = [&] { return text; };
}

void DataModel(Case& c, bool fieldsInDOM)
{
    auto& reader = Hold(c, new ZRXPrsUtil::ZRDataModelParser());
    reader.SetFieldsInDOM(fieldsInDOM);
    auto& vars = Hold(c, new Vars());
    auto& text = Hold(c, new std::string(zrxtest::ReadFile(Data("datamodel/fields.xml"))));
    c.calls = {{[&] { return Code(reader.ParseToDOM(text)); }, kParse},
               {[&] { return Code(reader.FillVarList(vars.Fresh(), false, true, 10)); },
                {ZRCommon::eOutOfMemory}}};
    c.result = [&] { return Describe(*vars.list); };
}

void SettingsFields(Case& c)
{
    auto& reader = Hold(c, new ZRXPrsUtil::ZRSettingsParser());
    auto& vars = Hold(c, new Vars());
    c.calls = {ParseCall(reader, kSettings, kParse),
               {[&] {
                    ZRVarList& list = vars.Fresh();
                    const long code = Code(reader.FillVarList(list, false));
                    return code != 0 ? code : Code(reader.FillTransDict(list));
                },
                {ZRCommon::eOutOfMemory}}};
    c.result = [&] { return Describe(*vars.list); };
}

// Every role and parameter query once.
void SettingsQueries(Case& c)
{
    auto& reader = Parsed<ZRXPrsUtil::ZRSettingsParser>(c, kSettings);
    auto& text = Hold(c, new std::string());
    c.calls = {{[&] {
                    using Names = std::vector<std::string>;
                    using P = ZRXPrsUtil::ZRSettingsParser;
                    Names names[6];
                    std::string weight, model;
                    int depth = 0;
                    double share = 0;
                    bool bonferroni = false;
                    std::vector<double> profits;
                    std::vector<std::vector<int>> costs;
                    std::vector<std::vector<std::string>> bins;
                    const long codes[] = {
                        Code(reader.GetTargetVars(names[0])),
                        Code(reader.GetPredictors(names[1])),
                        Code(reader.GetCatPredictors(names[2])),
                        Code(reader.GetContPredictors(names[3])),
                        Code(reader.GetCatResponseVars(names[4])),
                        Code(reader.GetContResponseVars(names[5])),
                        Code(reader.GetFrequencyWeight(weight)),
                        Code(reader.GetParameter("modelName", model)),
                        Code(reader.GetParameter("maxTreeDepth", depth)),
                        Code(reader.GetParameter("useBonferroni", bonferroni)),
                        Code(reader.GetArray("profitLevels", profits)),
                        Code(reader.GetMatrix("misclassificationCosts", costs)),
                        reader.GetParameterType("alphaSplit") == P::ParamTypeDouble ? 0 : kNull};
                    void* validation = reader.GetComplexParameter("validation");
                    void* holdout = reader.GetComplexParameter("holdout", validation);
                    void* output = reader.GetComplexParameter("output");
                    if (!validation || !holdout || !output)
                        return kNull;
                    for (long code : codes)
                        if (code != 0)
                            return code;
                    if (const long code = Code(reader.GetParameter("sampleShare", share, holdout)))
                        return code;
                    if (const long code = Code(reader.GetMatrix("gainsBins", bins, output)))
                        return code;
                    Uncounted own;
                    text.clear();
                    for (const Names& list : names)
                        text += pmmltest::Join(list, pmmltest::Same) + "\n";
                    text += weight + model + std::to_string(depth) + std::to_string(share) +
                            std::to_string(bonferroni) + pmmltest::Join(profits, pmmltest::Num) +
                            std::to_string(costs.size()) + std::to_string(bins.size());
                    return 0L;
                },
                {ZRCommon::eOutOfMemory, kNull}}};
    c.result = [&] { return text; };
}

// ZRXMLReadWrite: parse a file and a stream, write the document.
void ReadWrite(Case& c)
{
    auto& io = Hold(c, new ZRXPrsUtil::ZRXMLReadWrite());
    auto& dir = Hold(c, new combinertest::TempDir());
    const std::string source = Data("combiner/tree_a.pmml"), out = dir.Path("out.pmml");
    c.calls = {{[&io, source] { return Code(io.ParseToDOM(source)); }, kParse},
               ParseCall(io, source, kParse),
               {[&io, out] { return Code(io.WriteFromDOM(out)); }, {ZRCommon::eCannotWrite}}};
    c.result = [out] { return zrxtest::ReadFile(out); };
}

// The combiner: construction, a first and a later model, the export; in the
// strict form with models that bring functions, derived fields, a namespace
// prefix and new fields before a Taxonomy.
void Combiner(Case& c, const char* first, const char* later, bool strict)
{
    auto& vars = Hold(c, new ZRVarList());
    combinertest::AddSplitVars(vars, false);
    auto& dir = Hold(c, new combinertest::TempDir());
    auto& combiner = Hold(c, new std::optional<ZRXPrsUtil::ZRXSplitPMMLCombiner>());
    const std::string a = combinertest::DataFile(first), b = combinertest::DataFile(later),
                      out = dir.Path("out.pmml");
    const std::vector<std::string> north{"north"}, south{"south"};
    c.calls = {{[&, strict] {
                    combiner.emplace(vars);
                    combiner->SetStrictPMML(strict);
                    return 0L;
                },
                {}},
               {[&combiner, a, north] { return Code(combiner->AddModel(a, north)); }, kParse},
               {[&combiner, b, south] { return Code(combiner->AddModel(b, south)); }, kParse},
               {[&combiner, out] { return Code(combiner->ExportMiningModel(out)); },
                {ZRCommon::eCannotWrite}}};
    c.result = [out] { return zrxtest::ReadFile(out); };
}

// A conversion of each family: converter, fixed buffer, string, new array,
// generic text, and a name in every encoding.
void Encoding(Case& c)
{
    namespace M = ZRMEM_NAMESPACE;
    auto& text = Hold(c, new std::string());
    auto& converter = Hold(c, new std::shared_ptr<void>());
    const std::string name = "caf\xC3\xA9 \xE4\xB8\xAD";
    c.calls = {{[&] {
                    void* made = M::VORKMBConverterNew_C("1252");
                    Uncounted own;
                    converter.reset(made, [](void* p) { ucnv_close(static_cast<UConverter*>(p)); });
                    return made ? 0 : kNull;
                },
                {kNull}},
               {[&, name] {
                    char buffer[32];
                    int code = 0;
                    const int length = M::VORKMB8toCodePage(converter.get(), buffer, sizeof buffer,
                                                            name.c_str(), -1, &code);
                    Uncounted own;
                    text = std::string(buffer, static_cast<size_t>(length));
                    return code == 3 ? 0L : code;
                },
                {2}},
               {[&, name] {
                    M::U16String wide;
                    std::string back;
                    int code = M::VORKMBU8ToU16(wide, name);
                    code = code != 0 ? code : M::VORKMBU16ToCodePage(nullptr, back, wide);
                    code = code != 0 ? code : M::VORKMBGenericToU16(wide, back);
                    Uncounted own;
                    if (code == 0)
                        text += back;
                    return static_cast<long>(code);
                },
                {2}},
               {[&, name] {
                    std::unique_ptr<unsigned short[]> wide(M::VORKMBTranscodeU8(name.c_str()));
                    std::unique_ptr<char[]> back(wide ? M::VORKMBTranscodeCodePage(wide.get())
                                                      : nullptr);
                    Uncounted own;
                    text += back ? back.get() : "";
                    return back ? 0 : kNull;
                },
                {kNull}},
               {[&, name] {
                    M::ExtNameStr ext;
                    ext.SetU8(name);
                    const long code = ext.ErrorCode();
                    Uncounted own;
                    if (code == 0)
                        text += ext.GetCP() + ext.GetSystem() + std::to_string(ext.GetU16().size());
                    return code;
                },
                {2}}};
    c.result = [&] { return text; };
}

// The first reader of a process starts the XML library.
void FirstReader(Case& c)
{
    auto& io = Hold(c, new std::optional<ZRXPrsUtil::ZRXMLReadWrite>());
    const std::string path = Data("combiner/tree_b.pmml");
    c.calls = {{[&io, path] {
                    io.emplace();
                    return Code(io->ParseToDOM(path));
                },
                kParse}};
    c.result = [] { return std::string(); };
}

const Row kRows[] = {
    {"PMMLDictionary", [](Case& c) { PMMLDictionary(c, true); }, 2},
    {"PMMLFieldsOut", [](Case& c) { PMMLDictionary(c, false); }, 2},
    {"PMMLBins", PMMLBins},
    {"PMMLStatistics", PMMLStatistics},
    {"DataModel", [](Case& c) { DataModel(c, true); }},
    {"DataModelFieldsOut", [](Case& c) { DataModel(c, false); }},
    {"SettingsFields", SettingsFields, 4},
    {"SettingsQueries", SettingsQueries},
    {"ReadWrite", ReadWrite, 3},
    {"Combiner", [](Case& c) { Combiner(c, "tree_a.pmml", "tree_b.pmml", false); }, 8},
    {"CombinerStrict", [](Case& c) { Combiner(c, "strict_first.pmml", "strict_later.pmml", true); },
     8},
    {"Encoding", Encoding},
    {"FirstReader", FirstReader, 4, true},
};

// Makes the calls of `c` from `c.next` on; a failed call stays next.
long RunCalls(Case& c)
{
    for (; c.next < c.calls.size(); ++c.next) {
        long code = 0;
        try {
            code = c.calls[c.next].run();
        } catch (...) {
            ADD_FAILURE() << "an exception left call " << c.next;
            code = -2;
        }
        if (code != 0) {
            c.failure = c.calls[c.next].failure;
            return code;
        }
    }
    return 0;
}

// A row that starts the XML library: each point runs in a child process of
// its own, as a start that fails leaves the XML library unusable for the rest
// of the process (ZRXPlatform.h). The child exits 0 when the point was not
// reached and the calls worked, 1 when the start failed with 103 and so does
// every later start, 2 when a later failure gave its code and the same call
// then worked, 3 for anything else. A child per point costs some tens of
// milliseconds, and the start has some thousands of points, all in the XML
// library, so only every FAILTEST_STRIDE-th point is tried (40 unless set;
// FAILTEST_STRIDE=1 tries them all).
void StartingPoints(const Row& row, int shard)
{
    const char* given = std::getenv("FAILTEST_STRIDE");
    const long stride = given != nullptr && std::atol(given) > 0 ? std::atol(given) : 40;
    long inStart = 0, after = 0;
    for (long k = shard + 1;; k += row.shards * stride) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            auto c = row.Make();
            failtest::FailAllocation(k);
            const long code = RunCalls(*c);
            failtest::FailAllocation(0);
            if (!failtest::Failed())
                _exit(code == 0 && c->result() == row.Make()->result() ? 0 : 3);
            if (code == ZRCommon::eCannotStart && !ZRXPrsUtil::ZRXPlatform::Acquire())
                _exit(RunCalls(*c) == ZRCommon::eCannotStart ? 1 : 3);
            const bool documented =
                std::find(c->failure.begin(), c->failure.end(), code) != c->failure.end();
            _exit(documented && RunCalls(*c) == 0 ? 2 : 3);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status)) << "point " << k << " ended the process";
        const int verdict = WEXITSTATUS(status);
        if (verdict == 0)
            break;
        ASSERT_NE(verdict, 3) << "point " << k;
        ++(verdict == 1 ? inStart : after);
    }
    std::printf("%s shard %d: %ld points in the start, %ld after it\n", row.name, shard, inStart,
                after);
}

using Shard = std::pair<std::size_t, int>; // row, shard

class EveryAllocation : public ::testing::TestWithParam<Shard> {};

TEST_P(EveryAllocation, FailsCleanly)
{
    const Row& row = kRows[GetParam().first];
    const int shard = GetParam().second;
    if (row.startsLibrary)
        return StartingPoints(row, shard);
    zrxtest::XercesSession keeper;

    std::string reference;
    {
        auto c = row.Make();
        ASSERT_EQ(RunCalls(*c), 0);
        reference = c->result();
    }
    long points = 0, recovered = 0, grownAt = 0;
    long live = failtest::LiveBlocks();
    const auto start = std::chrono::steady_clock::now();
    for (long k = shard + 1;; k += row.shards) {
        auto c = row.Make();
        failtest::FailAllocation(k);
        long code = RunCalls(*c);
        failtest::FailAllocation(0);
        if (!failtest::Failed()) {
            EXPECT_EQ(code, 0) << k;
            EXPECT_EQ(c->result(), reference) << k;
            break;
        }
        ++points;
        if (code == 0) {
            ++recovered;
            EXPECT_EQ(c->result(), reference) << "point " << k;
        } else {
            EXPECT_NE(std::find(c->failure.begin(), c->failure.end(), code), c->failure.end())
                << "point " << k << " call " << c->next << " gave " << code;
            code = RunCalls(*c);
            EXPECT_EQ(code, 0) << "again after point " << k;
            if (code == 0) {
                EXPECT_EQ(c->result(), reference) << "again after point " << k;
            }
        }
        c.reset();
        if (failtest::LiveBlocks() > live) {
            // The XML library makes some things once, on first need: a
            // point after which more memory is held is tried again, and
            // leaks if it grows again.
            EXPECT_NE(grownAt, k) << "point " << k << " leaks";
            live = failtest::LiveBlocks();
            if (grownAt != k) {
                grownAt = k;
                k -= row.shards;
                --points;
            }
        }
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%s shard %d: %ld points, %ld overcome, %.1f s\n", row.name, shard, points,
                recovered, seconds);
}

std::vector<Shard> Shards()
{
    std::vector<Shard> shards;
    for (std::size_t i = 0; i < sizeof kRows / sizeof kRows[0]; ++i)
        for (int s = 0; s < kRows[i].shards; ++s)
            shards.emplace_back(i, s);
    return shards;
}

INSTANTIATE_TEST_SUITE_P(Rows, EveryAllocation, ::testing::ValuesIn(Shards()),
                         [](const ::testing::TestParamInfo<Shard>& shard) {
                             return std::string(kRows[shard.param.first].name) + "_" +
                                    std::to_string(shard.param.second);
                         });

} // namespace
