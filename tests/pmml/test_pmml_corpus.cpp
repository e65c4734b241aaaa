// ZRPMMLParser on the public PMML documents of the corpus: every file is read,
// and a table of hand-checked expectations pins down a few of them.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRMV.h>
#include <zrcommonr/ZRVarList.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

using pmmltest::Parser;
using ZRMetadata::IZREncoder;
using ZRMetadata::IZRVariable;
using ZRMetadata::ZRVarList;
using Strings = std::vector<std::string>;
namespace fs = std::filesystem;

namespace {

const fs::path kCorpus = fs::path(ZRX_CORPUS_DIR) / "pmml";

// Files whose outcome is not the plain one (OK, one variable per DataField).
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
    // Empty DataDictionary.
    {"pmml4net/Segmentation.xml", {0, 0, 0}},
    {"jpmml-model-versions/pmml-3_0.pmml", {0, 0, 0}},
    {"jpmml-model-versions/pmml-3_1.pmml", {0, 0, 0}},
    // Counts checked by hand.
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml", {0, 0, 8}},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", {0, 0, 8}},
    {"pmml4s/dmg_general_multinomial_logistic.xml", {0, 0, 5}},
    {"jpmml-evaluator-bigml/ModelIris.pmml", {0, 0, 5}},
};

// Statuses of the walk over the ModelStats of the files that have one: the
// count of UnivariateStats read, and of those that fail. The sklearn2pmml
// files put a "string" Array of categories first in DiscrStats (109), and
// give NumericInfo without ContStats, which passes only while the object
// still holds an earlier field.
struct WalkOutcome {
    int read;
    int failed;
};
const std::map<std::string, WalkOutcome> kWalks = {
    {"jpmml-evaluator-bigml/ModelIris.pmml", {4, 0}},
    {"jpmml-evaluator-bigml/ModelAudit.pmml", {11, 0}},
    {"jpmml-evaluator-bigml/ClusterDiabetes.pmml", {8, 0}},
    {"jpmml-evaluator-bigml/LogisticregressionIris.pmml", {4, 0}},
    {"jpmml-transpiler-sklearn2pmml/LightGBMIris.pmml", {4, 4}},
    {"jpmml-transpiler-sklearn2pmml/LogisticRegressionAudit.pmml", {8, 5}},
    {"jpmml-transpiler-sklearn2pmml/XGBoostAuto.pmml", {7, 3}},
    {"jpmml-transpiler-sklearn2pmml/SelectFirstAudit.pmml", {8, 5}},
    {"jpmml-transpiler-sklearn2pmml/DecisionTreeAuto.pmml", {7, 3}},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAudit.pmml", {8, 5}},
    {"gopmml/logreg_pca_1.0.xml", {4, 4}},
    {"gopmml/xgb_preprocessed_regressor.xml", {3, 2}},
};

// Fields checked by hand against their file.
struct FieldCheck {
    std::string file;
    std::string field;
    int varType;
    Strings values;  // value texts
    Strings labels;
    std::vector<std::pair<double, std::string>> numericMissing;
    std::vector<std::pair<std::string, std::string>> stringMissing;
};
const FieldCheck kFields[] = {
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml", "RACA_6A",
     IZRVariable::eCategoricalString, {"1", "2"}, {"Yes", "No"}, {},
     {{"6", "not applicable"}, {"7", "don't know (7)"}, {"8", "refusal (8)"},
      {"9", "not stated (9)"}}},
    {"big-life-lab-pmml/tests/integration/expected-pmml.xml", "ALCA_5A1",
     IZRVariable::eContinuous, {}, {},
     {{996, "not applicable"}, {997, "don't know (997)"}, {998, "refusal (998)"},
      {999, "not stated (999)"}}, {}},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", "cylinders",
     IZRVariable::eCategoricalString, {"3", "4", "5", "6", "8"}, {}, {}, {}},
    {"jpmml-transpiler-sklearn2pmml/LightGBMAutoNA.pmml", "weight", IZRVariable::eContinuous,
     {}, {}, {{ZRMV::gMissingValue, ""}}, {}},
    {"pmml4s/dmg_general_multinomial_logistic.xml", "minority",
     IZRVariable::eCategoricalNumeric, {"0", "1"}, {"Non-Minority", "Minority"}, {}, {}},
    {"jpmml-evaluator-bigml/ModelIris.pmml", "Species", IZRVariable::eCategoricalString,
     {"setosa", "versicolor", "virginica"}, {}, {}, {}},
};

std::string ReadText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::size_t Count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++n;
    return n;
}

// Walks the statistics of the model that holds the first ModelStats.
WalkOutcome WalkStats(Parser& parser) {
    WalkOutcome outcome{0, 0};
    const xercesc::DOMElement* modelStats = parser.Find(u"ModelStats");
    if (!modelStats)
        return outcome;
    EXPECT_TRUE(parser.SetModelElmt(
        *static_cast<const xercesc::DOMElement*>(modelStats->getParentNode())));
    ZRMetadata::ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    while (true) {
        const bool ok = parser.FillUniStats(stats, position).IsOK();
        if (!position)
            break;
        ++outcome.read;
        outcome.failed += ok ? 0 : 1;
    }
    return outcome;
}

bool CorpusPresent() {
    return fs::is_directory(kCorpus);
}

TEST(PMMLCorpus, EveryFileIsRead) {
    if (!CorpusPresent()) {
        if (ZRX_REQUIRE_CORPUS)
            FAIL() << "corpus missing: " << kCorpus;
        GTEST_SKIP() << "corpus missing: " << kCorpus;
    }
    std::size_t files = 0;
    std::size_t walks = 0;
    for (const auto& entry : fs::recursive_directory_iterator(kCorpus)) {
        if (!entry.is_regular_file())
            continue;
        ++files;
        const std::string name = entry.path().lexically_relative(kCorpus).generic_string();
        const std::string text = ReadText(entry.path());
        const auto known = kOutcomes.find(name);
        const FileOutcome expected =
            known != kOutcomes.end() ? known->second : FileOutcome{0, 0, Count(text, "<DataField ")};

        Parser parser;
        std::ifstream stream(entry.path(), std::ios::binary);
        EXPECT_EQ(parser.ParseToDOM(stream).GetCode(), expected.parse) << name;
        ZRVarList list;
        EXPECT_EQ(parser.FillVarList(list, {}, false).GetCode(), expected.fill) << name;
        EXPECT_EQ(list.Size(), expected.variables) << name;
        if (expected.parse != 0)
            continue;
        const WalkOutcome walk = WalkStats(parser);
        const auto known_walk = kWalks.find(name);
        if (known_walk == kWalks.end()) {
            EXPECT_EQ(walk.read, 0) << name;
            continue;
        }
        ++walks;
        EXPECT_EQ(walk.read, known_walk->second.read) << name;
        EXPECT_EQ(walk.failed, known_walk->second.failed) << name;
    }
    EXPECT_EQ(files, 69u);
    EXPECT_EQ(walks, kWalks.size());
}

TEST(PMMLCorpus, HandCheckedFields) {
    if (!CorpusPresent()) {
        if (ZRX_REQUIRE_CORPUS)
            FAIL() << "corpus missing: " << kCorpus;
        GTEST_SKIP() << "corpus missing: " << kCorpus;
    }
    for (const FieldCheck& check : kFields) {
        Parser parser;
        std::ifstream stream(kCorpus / check.file, std::ios::binary);
        ASSERT_TRUE(parser.ParseToDOM(stream).IsOK()) << check.file;
        ZRVarList list;
        ASSERT_TRUE(parser.FillVarList(list, {check.field}, false).IsOK()) << check.file;
        ASSERT_EQ(list.Size(), 1u) << check.field;
        EXPECT_EQ(list.GetVarAt(0)->GetVarType(), check.varType) << check.field;
        const IZREncoder& encoder = *list.GetEncoderAt(0);
        Strings values;
        for (int i = 0; i < encoder.GetNValues(); ++i)
            values.push_back(encoder.GetValueText(i));
        EXPECT_EQ(values, check.values) << check.field;
        EXPECT_EQ(encoder.GetValueLabels(), check.labels) << check.field;
        EXPECT_EQ(encoder.GetNumericMissing(), check.numericMissing) << check.field;
        EXPECT_EQ(encoder.GetStringMissing(), check.stringMissing) << check.field;
        EXPECT_FALSE(encoder.HasMissingRange()) << check.field;
    }

    // A list of wanted fields passes over the boolean field that stops a full walk.
    Parser parser;
    std::ifstream stream(kCorpus / "jpmml-evaluator-dmg/TransformationDictionaryTest.pmml",
                         std::ios::binary);
    ASSERT_TRUE(parser.ParseToDOM(stream).IsOK());
    ZRVarList list;
    EXPECT_TRUE(parser.FillVarList(list, {"Exponent", "State"}, false).IsOK());
    EXPECT_EQ(list.Size(), 2u);
    EXPECT_EQ(parser.FillVarList(list, {}, true).GetCode(), 109);
}

} // namespace
