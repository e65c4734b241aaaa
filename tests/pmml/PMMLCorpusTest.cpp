// ZRPMMLParser on the public PMML documents of the corpus, one test per
// folder: every document reads the same whole, without its model bodies and
// with its fields out of the DOM, and a table of hand-checked expectations
// pins down a few of them. Entries for documents of the extra corpus are
// checked when the build names it.
#include "PMMLTestSupport.h"
#include "ZRXCorpus.h"
#include "ZRXTestDom.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <map>

using pmmltest::Join;
using pmmltest::Parser;
using ZRMetadata::ZRVarList;

namespace {

// Files whose outcome is not the plain one (OK, one variable per DataField
// element), and variable counts checked by hand.
struct FileOutcome {
    long parse;
    long fill;
    std::size_t variables;
};
const std::map<std::string, FileOutcome> kOutcomes = {
    // Every tag carries the "ns1:" prefix, so the root is no "PMML".
    {"sklearn-pmml-model/sklearn-pmml.pmml", {105, 105, 0}},
    {"sklearn-pmml-ns1/DecisionTreeClassifier.pmml", {105, 105, 0}},
    {"sklearn-pmml-ns1/DecisionTreeRegression.pmml", {105, 105, 0}},
    {"sklearn-pmml-ns1/GradientBoostingClassifier.pmml", {105, 105, 0}},
    {"sklearn-pmml-ns1/RandomForestClassifier.pmml", {105, 105, 0}},
    // The first DataField has dataType "boolean", which is not read.
    {"jpmml-evaluator-dmg/TransformationDictionaryTest.pmml", {0, 109, 0}},
    {"jpmml-evaluator-dmg/PMMLEvaluationContextTest.pmml", {0, 109, 0}},
    {"gopmml/cash_out_fraud_0.1.0.xml", {0, 109, 0}},
    // Counts checked by hand.
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml", {0, 0, 8}},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", {0, 0, 8}},
    {"pmml4s/dmg_general_multinomial_logistic.xml", {0, 0, 5}},
    {"sklearn-pmml-model/tree-digits.pmml", {0, 0, 46}},
    {"jpmml-evaluator-bigml/ModelIris.pmml", {0, 0, 5}},
};

// The status of each UnivariateStats of the model that holds the ModelStats,
// with one ZRUniStats object kept through the walk. No continuous field of the
// corpus passes: the BigML files give one frequency more than their Intervals
// make bins (115), and give NumericInfo with DiscrStats but no ContStats,
// which passes only while the object still holds an earlier field (116 after
// a failure); the sklearn2pmml files put a "string" Array of categories first
// in DiscrStats (109) and have no ContStats.
const std::map<std::string, std::string> kWalks = {
    {"jpmml-evaluator-bigml/ModelIris.pmml", "115|116|115|116"},
    {"jpmml-evaluator-bigml/ModelAudit.pmml", "115|0|0|0|0|115|0|115|115|0|115"},
    {"jpmml-evaluator-bigml/ClusterDiabetes.pmml", "116|115|115|115|115|115|115|115"},
    {"jpmml-evaluator-bigml/LogisticregressionIris.pmml", "115|116|115|116"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMIris.pmml", "116|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/LogisticRegressionAudit.pmml",
     "109|109|109|109|109|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/XGBoostAuto.pmml", "109|109|109|116|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/SelectFirstAudit.pmml", "109|109|109|109|109|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/DecisionTreeAuto.pmml", "109|109|109|116|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAudit.pmml", "109|109|109|109|109|116|116|116"},
    {"gopmml/logreg_pca_1.0.xml", "116|116|116|116"},
    {"gopmml/xgb_preprocessed_regressor.xml", "109|109|116"},
};

// Fields checked by hand against their file, in the form of pmmltest::Describe.
const std::multimap<std::string, std::string> kFields = {
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml",
     "RACA_6A 3;1|2;Yes|No;6=not applicable|7=don't know (7)|8=refusal (8)|9=not stated (9);;"},
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml",
     "ALCA_5A1 1;;;996=not applicable|997=don't know (997)|998=refusal (998)|999=not stated "
     "(999);;"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", "cylinders 3;3|4|5|6|8;;;;"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", "weight 1;;;M=;;"},
    {"pmml4s/dmg_general_multinomial_logistic.xml", "minority 2;0|1;Non-Minority|Minority;;;"},
    {"big-life-lab-pmml/model-csv-to-pmml/test-files/linear-regression/expected-pmml.xml",
     "DHHGAGE 3;1|2|3;12 to 14 years|15 to 19 years|20 To 24 Years;"
     "96=not applicable|97=don't know (97)|98=refusal (98)|99=not stated (99);;"},
    {"sklearn-pmml-model/nb-cat-pima.pmml", "age 3;(20,30]|(30,40]|(40,50]|(50,60]|(60,70];;;;"},
    // A list of wanted fields passes over the boolean field that stops a full walk.
    {"gopmml/cash_out_fraud_0.1.0.xml", "amount 1;;;;;"},
};

// The names of the corpus documents, one test each, so that each test stays
// short in every build.
std::vector<std::string> Names()
{
    std::vector<std::string> names;
    for (const zrxtest::CorpusFile& document : zrxtest::CorpusFiles())
        names.push_back(document.name);
    return names;
}

// The statuses of the statistics of the model that holds the first
// ModelStats, one object kept through the walk; "" without ModelStats.
std::string WalkStats(Parser& parser)
{
    const xercesc::DOMElement* modelStats = parser.Find(u"ModelStats");
    if (!modelStats)
        return "";
    std::vector<ZRMetadata::ZRUniStats> kept;
    const auto& model = *static_cast<const xercesc::DOMElement*>(modelStats->getParentNode());
    const std::vector<long> codes = pmmltest::Walk(
        parser, model, [&] { return kept.empty() ? ZRMetadata::ZRUniStats() : kept.back(); },
        &kept);
    return Join(codes, [](long code) { return std::to_string(code); });
}

class PMMLCorpus : public ::testing::TestWithParam<std::string> {};

TEST_P(PMMLCorpus, EveryDocumentReadsTheSameInEveryWay)
{
    const std::string& name = GetParam();
    const std::string text = zrxtest::ReadFile(zrxtest::CorpusPath(name).string());
    Parser whole;
    Parser skipped;
    skipped.SetReadModelBodies(false);
    const long parsed = whole.Parse(text);
    skipped.Parse(text);
    const auto known = kOutcomes.find(name);
    const FileOutcome expected =
        known != kOutcomes.end() ? known->second : FileOutcome{0, 0, whole.Count(u"DataField")};
    EXPECT_EQ(parsed, expected.parse);
    ZRVarList list;
    EXPECT_EQ(whole.FillVarList(list, {}, false).GetCode(), expected.fill);
    EXPECT_EQ(list.Size(), expected.variables);
    for (auto [at, end] = kFields.equal_range(name); at != end; ++at) {
        ZRVarList one;
        EXPECT_TRUE(
            whole.FillVarList(one, {at->second.substr(0, at->second.find(' '))}, false).IsOK());
        ASSERT_EQ(one.Size(), 1u) << at->second;
        EXPECT_EQ(pmmltest::Describe(*one.GetVarAt(0), *one.GetEncoderAt(0)), at->second);
    }
    const auto walk = kWalks.find(name);
    EXPECT_EQ(parsed == 0 ? WalkStats(whole) : "", walk == kWalks.end() ? "" : walk->second);
    EXPECT_EQ(pmmltest::BodiesReading(skipped), pmmltest::BodiesReading(whole));
    EXPECT_LE(skipped.Count(u"*"), whole.Count(u"*"));
    EXPECT_EQ(pmmltest::FieldsReading(text, false), pmmltest::FieldsReading(text, true));
}
INSTANTIATE_TEST_SUITE_P(Documents, PMMLCorpus, ::testing::ValuesIn(Names()), [](const auto& test) {
    std::string name = test.param; // of letters, digits and "_" only
    for (char& c : name)
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
});

// The tree holds its 33 documents, and every table entry names a document
// that is read, or one of a folder of the extra corpus when the build names
// none.
TEST(PMMLCorpusTables, NameDocumentsThatAreRead)
{
    const std::vector<zrxtest::CorpusFile> files = zrxtest::CorpusFiles();
    EXPECT_EQ(std::count_if(files.begin(), files.end(), [](auto& file) { return file.inTree; }),
              33);
    const auto read = [&](const auto& table) {
        for (const auto& entry : table) {
            const std::string folder = entry.first.substr(0, entry.first.find('/'));
            EXPECT_TRUE(!zrxtest::CorpusPath(entry.first).empty() ||
                        (zrxtest::ExtraCorpusDir().empty() &&
                         !std::filesystem::is_directory(zrxtest::CorpusDir() / folder)))
                << entry.first;
        }
    };
    read(kOutcomes);
    read(kWalks);
    read(kFields);
}

} // namespace
