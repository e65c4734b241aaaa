// ZRPMMLParser on the public PMML documents of the corpus: every file is read,
// and a table of hand-checked expectations pins down a few of them.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRVarList.h>

#include <filesystem>
#include <map>

using pmmltest::Join;
using pmmltest::Parser;
using ZRMetadata::ZRVarList;
namespace fs = std::filesystem;

namespace {

const fs::path kCorpus = fs::path(ZRX_CORPUS_DIR) / "pmml";

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
    {"jpmml-transpiler-sklearn2pmml/LogisticRegressionAudit.pmml", "109|109|109|109|109|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/XGBoostAuto.pmml", "109|109|109|116|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/SelectFirstAudit.pmml", "109|109|109|109|109|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/DecisionTreeAuto.pmml", "109|109|109|116|116|116|116"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAudit.pmml", "109|109|109|109|109|116|116|116"},
    {"gopmml/logreg_pca_1.0.xml", "116|116|116|116"},
    {"gopmml/xgb_preprocessed_regressor.xml", "109|109|116"},
};

// Fields checked by hand against their file, in the form of pmmltest::Describe.
const std::pair<const char*, const char*> kFields[] = {
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml",
     "RACA_6A 3;1|2;Yes|No;6=not applicable|7=don't know (7)|8=refusal (8)|9=not stated (9);;"},
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml",
     "ALCA_5A1 1;;;996=not applicable|997=don't know (997)|998=refusal (998)|999=not stated (999);;"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", "cylinders 3;3|4|5|6|8;;;;"},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", "weight 1;;;M=;;"},
    {"pmml4s/dmg_general_multinomial_logistic.xml", "minority 2;0|1;Non-Minority|Minority;;;"},
};

// The statuses of the statistics of the model that holds the first
// ModelStats, one object kept through the walk; "" without ModelStats.
std::string WalkStats(Parser& parser) {
    const xercesc::DOMElement* modelStats = parser.Find(u"ModelStats");
    if (!modelStats)
        return "";
    std::vector<ZRMetadata::ZRUniStats> kept;
    const auto& model = *static_cast<const xercesc::DOMElement*>(modelStats->getParentNode());
    const std::vector<long> codes = pmmltest::Walk(
        parser, model, [&] { return kept.empty() ? ZRMetadata::ZRUniStats() : kept.back(); }, &kept);
    return Join(codes, [](long code) { return std::to_string(code); });
}

// A missing corpus fails the tests where it is required, else skips them.
class PMMLCorpus : public ::testing::Test {
protected:
    void SetUp() override {
        if (fs::is_directory(kCorpus))
            return;
        if (ZRX_REQUIRE_CORPUS)
            FAIL() << "corpus missing: " << kCorpus;
        GTEST_SKIP() << "corpus missing: " << kCorpus;
    }
};

TEST_F(PMMLCorpus, EveryFileIsRead) {
    std::size_t files = 0;
    std::size_t walks = 0;
    for (const auto& entry : fs::recursive_directory_iterator(kCorpus)) {
        if (!entry.is_regular_file())
            continue;
        ++files;
        const std::string name = entry.path().lexically_relative(kCorpus).generic_string();
        Parser parser;
        const long parsed = parser.ParseFile(entry.path().string());
        const auto known = kOutcomes.find(name);
        const FileOutcome expected = known != kOutcomes.end()
                                         ? known->second
                                         : FileOutcome{0, 0, parser.Count(u"DataField")};
        EXPECT_EQ(parsed, expected.parse) << name;
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), expected.fill) << name;
        EXPECT_EQ(list.Size(), expected.variables) << name;
        if (expected.parse != 0)
            continue;
        const auto walk = kWalks.find(name);
        EXPECT_EQ(WalkStats(parser), walk == kWalks.end() ? "" : walk->second) << name;
        walks += walk == kWalks.end() ? 0 : 1;
    }
    EXPECT_EQ(files, 69u);
    EXPECT_EQ(walks, kWalks.size());
}

TEST_F(PMMLCorpus, HandCheckedFields) {
    for (const auto& [file, expected] : kFields) {
        const std::string field = std::string(expected).substr(0, std::string(expected).find(' '));
        Parser parser;
        ASSERT_EQ(parser.ParseFile((kCorpus / file).string()), 0) << file;
        ZRVarList list;
        ASSERT_TRUE(parser.FillVarList(list, {field}, false).IsOK()) << file;
        ASSERT_EQ(list.Size(), 1u) << field;
        EXPECT_EQ(pmmltest::Describe(*list.GetVarAt(0), *list.GetEncoderAt(0)), expected);
    }
    // A list of wanted fields passes over the boolean field that stops a full walk.
    Parser parser;
    ASSERT_EQ(parser.ParseFile((kCorpus / "jpmml-evaluator-dmg/TransformationDictionaryTest.pmml").string()), 0);
    ZRVarList list;
    EXPECT_TRUE(parser.FillVarList(list, {"Exponent", "State"}, false).IsOK());
    EXPECT_EQ(list.Size(), 2u);
}

} // namespace
