// Combines real models of several kinds and checks the result against the
// PMML schema of the models' namespace with xmllint.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include "ZRXCorpus.h"
#include "ZRXTestDom.h"
#include "CombinerTestSupport.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <tuple>

using namespace combinertest;
using ZRXPrsUtil::ZRXMLReadWrite;
using ZRXPrsUtil::ZRXSplitPMMLCombiner;

namespace {

const std::string kPmml = ZRX_CORPUS_DIR "/";
const std::string kXsd = ZRX_SCHEMA_DIR "/";

class CombinerCorpus : public ::testing::Test {
protected:
    // The schema check needs xmllint (package libxml2-utils, which ./build.sh installs).
    void SetUp() override
    {
        ASSERT_EQ(std::system("xmllint --version > /dev/null 2>&1"), 0) << "xmllint missing";
    }

    // Combines `files` over one or two split variables, one value set per file.
    std::string Combine(const std::vector<std::string>& files, bool twoSplitVars,
                        const std::string& name, bool strict = false) const
    {
        ZRMTD_NAMESPACE::ZRVarList list;
        AddSplitVars(list, twoSplitVars);
        ZRXSplitPMMLCombiner combiner(list);
        combiner.SetStrictPMML(strict);
        for (std::size_t i = 0; i < files.size(); ++i) {
            Texts values{i % 2 == 0 ? "north" : "south"};
            if (twoSplitVars)
                values.push_back(i < 2 ? "2021" : "2022");
            EXPECT_TRUE(combiner.AddModel(files[i], values).IsOK()) << files[i];
        }
        EXPECT_EQ(combiner.GetNModels(), static_cast<int>(files.size()));
        EXPECT_TRUE(combiner.ExportMiningModel(dir.Path(name)).IsOK());
        return dir.Path(name);
    }

    // The files that xmllint finds valid against `xsd`, with its report.
    Texts ValidOnes(const std::string& xsd, const Texts& files, std::string& report) const
    {
        std::string command = "xmllint --noout --nonet --schema '" + xsd + "'";
        for (const std::string& file : files)
            command += " '" + file + "'";
        if (files.empty())
            return {};
        std::system((command + " > " + dir.Path("log") + " 2>&1").c_str());
        report = "\n" + zrxtest::ReadFile(dir.Path("log"));
        Texts valid;
        for (const std::string& file : files)
            if (report.find("\n" + file + " validates\n") != std::string::npos)
                valid.push_back(file);
        return valid;
    }

    // xmllint's verdict on `path` against the schema, with its report on failure.
    ::testing::AssertionResult ValidatesAgainst(const std::string& path,
                                                const std::string& xsd) const
    {
        std::string report;
        if (ValidOnes(xsd, {path}, report).size() == 1)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << path << " is not valid:" << report;
    }

    TempDir dir;
};

} // namespace

// Models of several kinds over one and two split variables: the models of an
// example job, and (only in the extra corpus) a regression, a support vector
// machine and a rule set.
TEST_F(CombinerCorpus, ModelsOfSeveralKindsGiveValidPMML)
{
    const std::string split = std::string(ZRX_EXAMPLES_DIR) + "/data/split/churn_";
    const std::vector<std::pair<Texts, std::string>> rows = {
        {{split + "N.pmml", split + "S.pmml", split + "E.pmml", split + "W.pmml"}, "pmml-4-4.xsd"},
        {{"jpmml-evaluator-knime/GeneralRegressionAudit.pmml",
          "jpmml-evaluator-knime/SupportVectorMachineIris.pmml",
          "jpmml-evaluator-knime/RuleSetIris.pmml"},
         "pmml-4-2.xsd"}};
    for (auto [files, xsd] : rows) {
        for (std::string& file : files)
            file = file[0] == '/' ? file : zrxtest::CorpusPath(file).string();
        if (std::count(files.begin(), files.end(), "") > 0)
            continue; // not in the corpus of this build
        for (const bool two : {false, true}) {
            SCOPED_TRACE(files[0] + (two ? ", two split variables" : ", one split variable"));
            const std::string out = Combine(files, two, "out.pmml");
            EXPECT_TRUE(ValidatesAgainst(out, kXsd + xsd));
            EXPECT_EQ(Combined(out).Segments().size(), files.size());
        }
    }
}

TEST_F(CombinerCorpus, TransformationDictionaryBecomesTheModelsLastChild)
{
    const std::string digits = kPmml + "sklearn-pmml-model/tree-digits.pmml";
    ZRXMLReadWrite source;
    ASSERT_TRUE(source.ParseToDOM(digits).IsOK());
    auto* pmml = source.GetDocument()->getDocumentElement();
    auto* dictionary = const_cast<xercesc::DOMElement*>(Child(pmml, "TransformationDictionary"));
    const std::vector<Element> derived = Children(dictionary, "DerivedField");
    ASSERT_FALSE(derived.empty());

    // Without the dictionary the combined document of a tree between two
    // regressions is valid as it stands.
    pmml->removeChild(dictionary);
    ASSERT_TRUE(source.WriteFromDOM(dir.Path("plain_digits.pmml")).IsOK());
    const std::string regression = kPmml + "pmml4s/dmg_general_multinomial_logistic.xml";
    std::vector<std::string> files = {regression, dir.Path("plain_digits.pmml"), regression};
    for (const bool two : {false, true}) {
        SCOPED_TRACE(two ? "two split variables" : "one split variable");
        EXPECT_TRUE(ValidatesAgainst(Combine(files, two, "plain.pmml"), kXsd + "pmml-4-3.xsd"));
    }

    // With it, its model's copy ends with the same derived fields (a place
    // the schema does not allow), and the other models gain none.
    files[1] = digits;
    Combined out(Combine(files, true, "local.pmml"));
    const std::vector<Element> segments = out.Segments();
    ASSERT_EQ(segments.size(), 3u);
    for (std::size_t i = 0; i < segments.size(); ++i)
        EXPECT_EQ(ChildTags(Children(segments[i], nullptr).back()).back() == "LocalTransformations",
                  i == 1)
            << i;
    const std::vector<Element> moved = Children(
        Child(Children(segments[1], nullptr).back(), "LocalTransformations"), "DerivedField");
    ASSERT_EQ(moved.size(), derived.size());
    for (std::size_t d = 0; d < derived.size(); ++d)
        EXPECT_TRUE(moved[d]->isEqualNode(derived[d])) << Att(derived[d], "name");
}

// The strict form on two small models: the dictionary's derived fields at
// their place and joined with the model's own, one definition of a function,
// the later model's prefix declared, a split variable merged into the first
// model's field, new fields before the Taxonomy; and the later models that
// it refuses, which change nothing.
TEST_F(CombinerCorpus, StrictFormIsValidAndSelfContained)
{
    ZRMTD_NAMESPACE::ZRVarList list;
    AddSplitVars(list, true);
    ZRXSplitPMMLCombiner combiner(list);
    const std::string first = DataFile("strict_first.pmml"), later = DataFile("strict_later.pmml");
    Texts doubled;
    ASSERT_TRUE(combiner.CheckSplitModel(first, doubled).IsOK());
    EXPECT_EQ(doubled, Texts{"region"}); // the literal form would write it twice
    combiner.SetStrictPMML(true);
    EXPECT_TRUE(combiner.CheckSplitModel(first, doubled).IsOK() && doubled.empty());
    ASSERT_TRUE(combiner.AddModel(first, {"north", "2021"}).IsOK());
    combiner.SetStrictPMML(false); // not for this output any more
    ASSERT_TRUE(combiner.AddModel(later, {"south", "2022"}).IsOK());
    const std::string text = zrxtest::ReadFile(later);
    for (const auto& [from, to, code] : std::vector<std::tuple<std::string, std::string, long>>{
             {"urn:x", "urn:y", 129}, {"PMML-4_4", "PMML-4_3", 127}, {">2<", ">3<", 128}}) {
        std::ofstream(dir.Path("other.pmml"))
            << std::string(text).replace(text.find(from), from.size(), to);
        EXPECT_EQ(combiner.AddModel(dir.Path("other.pmml"), {"south", "2021"}).GetCode(), code);
    }
    ASSERT_TRUE(combiner.ExportMiningModel(dir.Path("strict.pmml")).IsOK());
    EXPECT_TRUE(ValidatesAgainst(dir.Path("strict.pmml"), kXsd + "pmml-4-4.xsd"));
    Combined out(dir.Path("strict.pmml"));
    EXPECT_EQ(Att(out.Root(), "xmlns:x"), "urn:x");
    EXPECT_EQ(ChildTags(out.Root()),
              (Texts{"Header", "DataDictionary", "TransformationDictionary", "MiningModel"}));
    EXPECT_EQ(ChildAtts(Child(out.Root(), "TransformationDictionary"), nullptr, "name"),
              Texts{"twice"});
    EXPECT_EQ(ChildAtts(out.Dictionary(), nullptr, "name"),
              (Texts{"x", "region", "year", "z", "areas"}));
    EXPECT_EQ(Att(out.Dictionary(), "numberOfFields"), "4");
    EXPECT_EQ(out.Values("region"), (Texts{"north", "east", "south"}));
    EXPECT_EQ(out.SchemaNames(), (Texts{"x", "region", "year", "z"}));
    const std::vector<Element> segments = out.Segments();
    ASSERT_EQ(segments.size(), 2u);
    Element a = Child(segments[0], "RegressionModel"), b = Child(segments[1], "RegressionModel");
    EXPECT_EQ(ChildTags(a), (Texts{"Extension", "MiningSchema", "Output", "LocalTransformations",
                                   "RegressionTable", "Extension"}));
    EXPECT_EQ(ChildAtts(Child(a, "LocalTransformations"), nullptr, "name"), (Texts{"x2", "x3"}));
    // The dictionary's fields come first; the model's own x3 stands.
    EXPECT_EQ(ChildAtts(Child(b, "LocalTransformations"), nullptr, "displayName"),
              (Texts{"<absent>", "own"}));
}

// Each corpus document of a version with a bundled schema, valid on its own
// and taken by the combiner, combined with a copy of itself: in the strict
// form every output is valid, and every function that an Apply calls is
// built in or defined in the output. The literal form's figures are shown.
// The corpus goes in slices, each a test of its own, to keep each one short.
const int kSlices = 2;
class CombinerCorpusSlice : public CombinerCorpus, public ::testing::WithParamInterface<int> {};

TEST_P(CombinerCorpusSlice, StrictFormOfEveryValidCorpusModelIsValidAndSelfContained)
{
    const std::string kBuiltIn =
        " + - * / min max sum avg median product log10 ln sqrt abs exp pow threshold floor ceil "
        "round modulo isMissing isNotMissing isValid isNotValid equal notEqual lessThan "
        "lessOrEqual greaterThan greaterOrEqual and or not isIn isNotIn if uppercase lowercase "
        "stringLength substring trimBlanks concat replace matches formatNumber formatDatetime "
        "dateDaysSinceYear dateSecondsSinceYear dateSecondsSinceMidnight normalCDF normalPDF "
        "stdNormalCDF stdNormalPDF erf normalIDF stdNormalIDF expm1 ln1p rint hypot sin cos tan "
        "asin acos atan atan2 sinh cosh tanh ";
    std::map<std::string, Texts> byXsd;
    const std::vector<zrxtest::CorpusFile> corpus = zrxtest::CorpusFiles();
    for (std::size_t i = static_cast<std::size_t>(GetParam()); i < corpus.size(); i += kSlices) {
        const zrxtest::CorpusFile& file = corpus[i];
        ZRMTD_NAMESPACE::ZRVarList none;
        Texts doubled;
        if (!ZRXSplitPMMLCombiner(none).CheckSplitModel(file.path.string(), doubled).IsOK())
            continue;
        // The namespace from the text: xmllint tells below which really are
        // of that version.
        const std::string text = zrxtest::ReadFile(file.path.string());
        for (const char* version : {"4_2", "4_3", "4_4"})
            if (text.find(std::string("\"http://www.dmg.org/PMML-") + version + "\"") !=
                std::string::npos)
                byXsd[std::string("pmml-") + version[0] + "-" + version[2] + ".xsd"].push_back(
                    file.path.string());
    }
    std::size_t pairs = 0, valid[2] = {0, 0};
    std::string report;
    for (const auto& [xsd, files] : byXsd) {
        Texts outputs[2];
        for (const std::string& path : ValidOnes(kXsd + xsd, files, report)) {
            ++pairs;
            for (const bool strict : {false, true})
                outputs[strict].push_back(Combine(
                    {path, path}, false, std::to_string(pairs) + (strict ? "s" : "l"), strict));
        }
        valid[0] += ValidOnes(kXsd + xsd, outputs[0], report).size();
        const std::size_t strictValid = ValidOnes(kXsd + xsd, outputs[1], report).size();
        valid[1] += strictValid;
        EXPECT_EQ(strictValid, outputs[1].size()) << report;
        for (const std::string& path : outputs[1]) {
            Combined out(path);
            ASSERT_TRUE(out.ok) << path;
            const Texts defined =
                ChildAtts(Child(out.Root(), "TransformationDictionary"), "DefineFunction", "name");
            const xercesc::DOMNodeList* applies =
                out.Root()->getElementsByTagName(ZRXPrsUtil::ToUTF16("Apply").data());
            for (XMLSize_t i = 0; i < applies->getLength(); ++i) {
                const std::string name = Att(static_cast<Element>(applies->item(i)), "function");
                EXPECT_TRUE(kBuiltIn.find(" " + name + " ") != std::string::npos ||
                            std::count(defined.begin(), defined.end(), name) == 1)
                    << path << ": " << name;
            }
        }
    }
    EXPECT_GT(pairs, 0u);
    std::cout << pairs << " pairs combined; valid: " << valid[0] << " in the literal form, "
              << valid[1] << " in the strict form\n";
}

INSTANTIATE_TEST_SUITE_P(Corpus, CombinerCorpusSlice, ::testing::Range(0, kSlices));
