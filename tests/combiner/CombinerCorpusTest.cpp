// Combines real models of several kinds and checks the result against the
// PMML schema of the models' namespace with xmllint.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include "ZRXCorpus.h"
#include "CombinerTestSupport.h"

#include <fstream>

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
                        const std::string& name) const
    {
        ZRMTD_NAMESPACE::ZRVarList list;
        AddSplitVars(list, twoSplitVars);
        ZRXSplitPMMLCombiner combiner(list);
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

    TempDir dir;
};

// xmllint's verdict on `path` against the schema, with its report on failure.
::testing::AssertionResult ValidatesAgainst(const std::string& path, const std::string& xsd)
{
    const std::string log = path + ".log";
    const std::string command =
        "xmllint --noout --schema '" + xsd + "' '" + path + "' > '" + log + "' 2>&1";
    if (std::system(command.c_str()) == 0)
        return ::testing::AssertionSuccess();
    std::ifstream report(log);
    return ::testing::AssertionFailure() << path << " is not valid:\n" << report.rdbuf();
}

} // namespace

// Support vector machine and rule set models are only in the extra corpus.
TEST_F(CombinerCorpus, ModelsOfThreeKindsGiveValidPMML)
{
    std::vector<std::string> files;
    for (const char* name : {"jpmml-evaluator-knime/GeneralRegressionAudit.pmml",
                             "jpmml-evaluator-knime/SupportVectorMachineIris.pmml",
                             "jpmml-evaluator-knime/RuleSetIris.pmml"}) {
        const std::filesystem::path path = zrxtest::CorpusPath(name);
        if (path.empty())
            GTEST_SKIP() << "not in the corpus of this build: " << name;
        files.push_back(path.string());
    }
    for (const bool two : {false, true}) {
        SCOPED_TRACE(two ? "two split variables" : "one split variable");
        EXPECT_TRUE(ValidatesAgainst(Combine(files, two, "out.pmml"), kXsd + "pmml-4-2.xsd"));
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

TEST_F(CombinerCorpus, ExampleJobSplitModelsGiveValidPMML)
{
    std::vector<std::string> files;
    for (const char* region : {"N", "S", "E", "W"})
        files.push_back(std::string(ZRX_EXAMPLES_DIR) + "/data/split/churn_" + region + ".pmml");
    const std::string out = Combine(files, false, "churn.pmml");
    EXPECT_TRUE(ValidatesAgainst(out, kXsd + "pmml-4-4.xsd"));
    EXPECT_EQ(Combined(out).Segments().size(), 4u);
}
