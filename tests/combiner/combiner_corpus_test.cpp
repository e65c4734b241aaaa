// Combines real models of several kinds and checks the result against the
// PMML schema of the models' namespace with xmllint.
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include "combiner_support.h"

#include <xercesc/util/XMLString.hpp>

#include <cstdlib>
#include <fstream>
#include <set>

using namespace combinertest;
using ZRXPrsUtil::ZRXMLReadWrite;
using ZRXPrsUtil::ZRXSplitPMMLCombiner;
using ZRMTD_NAMESPACE::ZRVarList;

namespace {

const std::string kCorpus = ZRX_CORPUS_DIR;

// Skips the test, or fails it where the corpus is required.
#define ZRX_NEED(condition, what)                                                              \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            if (ZRX_REQUIRE_CORPUS)                                                            \
                FAIL() << "missing: " << (what);                                               \
            else                                                                               \
                GTEST_SKIP() << "missing: " << (what);                                         \
        }                                                                                      \
    } while (false)

std::string CorpusFile(const std::string& name)
{
    return kCorpus + "/pmml/" + name;
}

// xmllint's verdict on `path` against the schema, with its report on failure.
::testing::AssertionResult ValidatesAgainst(const std::string& path, const std::string& xsd)
{
    const std::string log = path + ".log";
    const std::string command =
        "xmllint --noout --schema '" + xsd + "' '" + path + "' > '" + log + "' 2>&1";
    if (std::system(command.c_str()) == 0)
        return ::testing::AssertionSuccess();
    std::ifstream in(log);
    std::string report, line;
    for (int n = 0; n < 15 && std::getline(in, line); ++n)
        report += line + "\n";
    return ::testing::AssertionFailure() << path << " is not valid:\n" << report;
}

xercesc::DOMDocument* NewDocument()
{
    const std::vector<XMLCh> core = ZRXPrsUtil::ToUTF16("Core");
    return xercesc::DOMImplementationRegistry::getDOMImplementation(core.data())
        ->createDocument(nullptr, nullptr, nullptr);
}

// One split model per model in the Segments of an ensemble file: its root,
// Header and DataDictionary with that model alone.
std::vector<std::string> SplitEnsemble(const std::string& source, const TempDir& dir,
                                       const std::set<std::string>& kinds)
{
    std::vector<std::string> files;
    ZRXMLReadWrite reader;
    if (!reader.ParseToDOM(source).IsOK())
        return files;
    const xercesc::DOMElement* pmml = reader.GetDocument()->getDocumentElement();
    const xercesc::DOMElement* segmentation =
        Child(Child(pmml, "MiningModel"), "Segmentation");
    for (const xercesc::DOMElement* segment = Child(segmentation, "Segment"); segment != nullptr;
         segment = ZRXPrsUtil::GetNextSiblingElmt(*segment, "Segment")) {
        for (const std::string& tag : ChildTags(segment)) {
            if (kinds.count(tag) == 0)
                continue;
            xercesc::DOMDocument* doc = NewDocument();
            xercesc::DOMNode* root = doc->appendChild(doc->importNode(pmml, false));
            root->appendChild(doc->importNode(Child(pmml, "Header"), true));
            root->appendChild(doc->importNode(Child(pmml, "DataDictionary"), true));
            root->appendChild(doc->importNode(Child(segment, tag.c_str()), true));
            files.push_back(dir.Path(tag + ".pmml"));
            EXPECT_TRUE(reader.WriteFromDOM(files.back(), doc).IsOK());
            doc->release();
        }
    }
    return files;
}

// A copy of `source` without its TransformationDictionary.
std::string WithoutTransDict(const std::string& source, const TempDir& dir,
                             const std::string& name)
{
    ZRXMLReadWrite reader;
    EXPECT_TRUE(reader.ParseToDOM(source).IsOK());
    xercesc::DOMElement* pmml = reader.GetDocument()->getDocumentElement();
    xercesc::DOMElement* dict = const_cast<xercesc::DOMElement*>(
        ZRXPrsUtil::GetFirstChildElmt(*pmml, "TransformationDictionary"));
    EXPECT_NE(dict, nullptr);
    if (dict != nullptr)
        pmml->removeChild(dict)->release();
    EXPECT_TRUE(reader.WriteFromDOM(dir.Path(name)).IsOK());
    return dir.Path(name);
}

// Combines `files` over one or two split variables, one value pair per file.
std::string Combine(const std::vector<std::string>& files, bool twoSplitVars, const TempDir& dir,
                    const std::string& name)
{
    ZRVarList list;
    AddSplitVars(list, twoSplitVars);
    ZRXSplitPMMLCombiner combiner(list);
    const char* const regions[] = {"north", "south"};
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::vector<std::string> values{regions[i % 2]};
        if (twoSplitVars)
            values.push_back(i < 2 ? "2021" : "2022");
        EXPECT_TRUE(combiner.AddModel(files[i], values).IsOK()) << files[i];
    }
    EXPECT_EQ(combiner.GetNModels(), static_cast<int>(files.size()));
    EXPECT_TRUE(combiner.ExportMiningModel(dir.Path(name)).IsOK());
    return dir.Path(name);
}

bool XmllintPresent()
{
    return std::system("xmllint --version > /dev/null 2>&1") == 0;
}

} // namespace

TEST(CombinerCorpus, ModelsOfFiveKindsGiveValidPMML)
{
    ZRX_NEED(std::filesystem::exists(CorpusFile("jpmml-evaluator-knime/ModelEnsembleIris.pmml")),
             kCorpus);
    ZRX_NEED(XmllintPresent(), "xmllint");
    TempDir dir;
    std::vector<std::string> files = SplitEnsemble(
        CorpusFile("jpmml-evaluator-knime/ModelEnsembleIris.pmml"), dir,
        {"TreeModel", "NeuralNetwork"});
    ASSERT_EQ(files.size(), 2u);
    files.push_back(CorpusFile("jpmml-evaluator-knime/GeneralRegressionAudit.pmml"));
    files.push_back(CorpusFile("jpmml-evaluator-knime/SupportVectorMachineIris.pmml"));
    files.push_back(CorpusFile("jpmml-evaluator-knime/RuleSetIris.pmml"));
    const std::string xsd = kCorpus + "/xsd/pmml-4-2.xsd";

    for (const bool two : {false, true}) {
        SCOPED_TRACE(two ? "two split variables" : "one split variable");
        const std::string out = Combine(files, two, dir, two ? "two.pmml" : "one.pmml");
        EXPECT_TRUE(ValidatesAgainst(out, xsd));
        Combined combined(out);
        std::vector<std::string> kinds;
        for (const xercesc::DOMElement* segment : combined.Segments())
            kinds.push_back(ChildTags(segment).back());
        EXPECT_EQ(kinds, (std::vector<std::string>{"TreeModel", "NeuralNetwork",
                                                   "GeneralRegressionModel",
                                                   "SupportVectorMachineModel", "RuleSetModel"}));
    }
}

TEST(CombinerCorpus, TransformationDictionaryBecomesValidLocalTransformations)
{
    const std::string digits = CorpusFile("sklearn-pmml-model/tree-digits.pmml");
    ZRX_NEED(std::filesystem::exists(digits), kCorpus);
    ZRX_NEED(XmllintPresent(), "xmllint");
    TempDir dir;
    const std::string xsd = kCorpus + "/xsd/pmml-4-3.xsd";
    const std::vector<std::string> others = {
        CorpusFile("jpmml-evaluator-bigml/ModelIris.pmml"),
        CorpusFile("jpmml-evaluator-bigml/LogisticregressionIris.pmml")};

    // Without the dictionary the combined document is valid as it stands.
    std::vector<std::string> files = others;
    files.insert(files.begin() + 1, WithoutTransDict(digits, dir, "digits.pmml"));
    for (const bool two : {false, true}) {
        SCOPED_TRACE(two ? "two split variables" : "one split variable");
        EXPECT_TRUE(ValidatesAgainst(Combine(files, two, dir, "plain.pmml"), xsd));
    }

    // With it, the derived fields stand last in their model, which the schema
    // does not allow there: moved to their place, they validate too.
    files[1] = digits;
    const std::string out = Combine(files, true, dir, "local.pmml");
    EXPECT_FALSE(ValidatesAgainst(out, xsd));
    ZRXMLReadWrite reader;
    ASSERT_TRUE(reader.ParseToDOM(out).IsOK());
    ZRXMLReadWrite source;
    ASSERT_TRUE(source.ParseToDOM(digits).IsOK());
    const xercesc::DOMElement* transDict = Child(
        source.GetDocument()->getDocumentElement(), "TransformationDictionary");
    const std::vector<std::string> derived = ChildAtts(transDict, "DerivedField", "name");
    ASSERT_FALSE(derived.empty());

    const xercesc::DOMElement* segmentation = Child(
        Child(reader.GetDocument()->getDocumentElement(), "MiningModel"), "Segmentation");
    int withLocal = 0;
    const std::set<std::string> before = {"Extension", "MiningSchema", "Output", "ModelStats",
                                          "ModelExplanation", "Targets"};
    for (const xercesc::DOMElement* segment = Child(segmentation, "Segment"); segment != nullptr;
         segment = ZRXPrsUtil::GetNextSiblingElmt(*segment, "Segment")) {
        auto* model = const_cast<xercesc::DOMElement*>(
            ZRXPrsUtil::GetNextSiblingElmt(*Child(segment, nullptr), nullptr));
        const std::vector<std::string> tags = ChildTags(model);
        if (tags.back() != "LocalTransformations")
            continue;
        ++withLocal;
        xercesc::DOMElement* local =
            const_cast<xercesc::DOMElement*>(Child(model, "LocalTransformations"));
        EXPECT_EQ(ChildAtts(local, "DerivedField", "name"), derived);
        EXPECT_TRUE(local->getFirstElementChild()->isEqualNode(
            Child(transDict, "DerivedField")));
        const xercesc::DOMElement* place = Child(model, nullptr);
        while (place != nullptr &&
               before.count(ZRXPrsUtil::ToUTF8(place->getTagName())) != 0)
            place = ZRXPrsUtil::GetNextSiblingElmt(*place, nullptr);
        model->insertBefore(model->removeChild(local), const_cast<xercesc::DOMElement*>(place));
    }
    EXPECT_EQ(withLocal, 1);
    ASSERT_TRUE(reader.WriteFromDOM(dir.Path("moved.pmml")).IsOK());
    EXPECT_TRUE(ValidatesAgainst(dir.Path("moved.pmml"), xsd));
}

TEST(CombinerCorpus, ExampleJobSplitModelsGiveValidPMML)
{
    const std::string xsd = kCorpus + "/xsd/pmml-4-4.xsd";
    ZRX_NEED(std::filesystem::exists(xsd), xsd);
    ZRX_NEED(XmllintPresent(), "xmllint");
    TempDir dir;
    std::vector<std::string> files;
    for (const char* region : {"N", "S", "E", "W"})
        files.push_back(std::string(ZRX_EXAMPLES_DIR) + "/data/split/churn_" + region + ".pmml");
    const std::string out = Combine(files, false, dir, "churn.pmml");
    EXPECT_TRUE(ValidatesAgainst(out, xsd));
    EXPECT_EQ(Combined(out).Segments().size(), 4u);
}
