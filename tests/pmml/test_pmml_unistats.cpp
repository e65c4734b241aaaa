// ZRPMMLParser::FillUniStats and its helpers.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRMV.h>

#include <fstream>

using pmmltest::Doc;
using pmmltest::Parser;
using ZRMetadata::ZRUniStats;
using Doubles = std::vector<double>;
const double M = ZRMV::gMissingValue;

namespace {

// The statuses of a whole walk over the model's UnivariateStats.
std::vector<long> Walk(const Parser& parser, std::vector<ZRUniStats>* results = nullptr) {
    std::vector<long> codes;
    ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    for (int guard = 0; guard < 100; ++guard) {
        const long code = parser.FillUniStats(stats, position).GetCode();
        if (!position)
            break;
        codes.push_back(code);
        if (results)
            results->push_back(stats);
    }
    return codes;
}

TEST(PMMLUniStats, WalkOfAModelFromAFile) {
    std::ifstream file(ZRX_TEST_DATA_DIR "/pmml/dictionary.pmml", std::ios::binary);
    Parser parser;
    ASSERT_TRUE(parser.ParseToDOM(file).IsOK());
    ASSERT_TRUE(parser.SetModelElmt(*parser.Find(u"TreeModel")));
    std::vector<ZRUniStats> results;
    EXPECT_EQ(Walk(parser, &results), (std::vector<long>{0, 0, 109, 109}));
    EXPECT_EQ(results[0].GetFieldName(), "age");
    EXPECT_FALSE(results[0].IsContinuous());
    EXPECT_EQ(results[0].GetTotalFreq(), 120.0);
    EXPECT_EQ(results[0].GetFrequencies(), (Doubles{40, 50, 28}));
    const ZRUniStats& income = results[1];
    EXPECT_TRUE(income.IsContinuous());
    EXPECT_EQ(income.GetCutPoints(), (Doubles{0, 10000, 50000, 100000, M}));
    EXPECT_EQ(income.GetFrequencies(), (Doubles{30, 60, 20, 10}));
    EXPECT_EQ(income.GetSummStats().minimum, 0.0);
    EXPECT_EQ(income.GetSummStats().maximum, 900000.0);
    EXPECT_EQ(income.GetSummStats().mean, 42000.5);
    EXPECT_EQ(income.GetSummStats().stdDev, 30500.25);
    EXPECT_EQ(results[3].GetFieldName(), "income");  // failures leave the object alone
}

// One UnivariateStats element in a model, read from a fresh or a filled object.
long ReadOne(const std::string& uniStats, ZRUniStats& stats) {
    Parser parser;
    EXPECT_EQ(parser.Parse(Doc("", "<TreeModel><Extension/><ModelStats>" + uniStats +
                                       "</ModelStats></TreeModel>")),
              0);
    EXPECT_TRUE(parser.SetModelElmt(*parser.Find(u"TreeModel")));
    const xercesc::DOMElement* position = nullptr;
    const long code = parser.FillUniStats(stats, position).GetCode();
    EXPECT_NE(position, nullptr);
    return code;
}

std::string Cont(const std::string& numericInfo, const std::string& contStats) {
    return "<UnivariateStats field=\"f\"><Counts totalFreq=\"10\"/><NumericInfo " + numericInfo +
           "/><DiscrStats><Array type=\"int\">1</Array></DiscrStats>" + contStats +
           "</UnivariateStats>";
}

TEST(PMMLUniStats, StatusOfEachFault) {
    const std::string array = "<DiscrStats><Array type=\"int\">1</Array></DiscrStats>";
    struct Case {
        std::string uniStats;
        long code;
    } cases[] = {
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"0\"/>" + array + "</UnivariateStats>", 0},
        {"<UnivariateStats><Counts totalFreq=\"1\"/>" + array + "</UnivariateStats>", 108},
        {"<UnivariateStats field=\"f\">" + array + "</UnivariateStats>", 113},
        {"<UnivariateStats field=\"f\"><Counts/>" + array + "</UnivariateStats>", 108},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"-1\"/>" + array + "</UnivariateStats>", 109},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"NaN\"/>" + array + "</UnivariateStats>", 109},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/></UnivariateStats>", 113},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/><DiscrStats/></UnivariateStats>", 113},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/><DiscrStats><Array>1</Array>"
         "</DiscrStats></UnivariateStats>", 108},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/><DiscrStats><Array type=\"string\">"
         "a</Array></DiscrStats></UnivariateStats>", 109},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/><DiscrStats><Array type=\"real\">"
         "1 x</Array></DiscrStats></UnivariateStats>", 114},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/><DiscrStats><Array type=\"real\">"
         "1 -2</Array></DiscrStats></UnivariateStats>", 114},
        {"<UnivariateStats field=\"f\"><Counts totalFreq=\"1\"/><DiscrStats><Array type=\"real\" "
         "n=\"9\"></Array></DiscrStats></UnivariateStats>", 0},
        {Cont("mean=\"x\"", ""), 109},
        {Cont("standardDeviation=\"-0.5\"", ""), 116},
        {Cont("standardDeviation=\"NaN\"", "<ContStats/>"), 0},
        {Cont("minimum=\"1\" maximum=\"2\"", ""), 116},  // no ContStats: nothing to judge
        {Cont("", "<ContStats><Interval closure=\"openOpen\" leftMargin=\"0\" rightMargin=\"1\"/>"
                  "</ContStats>"), 113},
        {Cont("", "<ContStats><Interval closure=\"openOpen\" leftMargin=\"0\" rightMargin=\"1\"/>"
                  "<Array type=\"int\">1 2</Array></ContStats>"), 115},
        {Cont("", "<ContStats><Interval closure=\"openOpen\" leftMargin=\"0\" rightMargin=\"1\"/>"
                  "<Array type=\"int\"></Array></ContStats>"), 115},
        {Cont("", "<ContStats><Array type=\"int\">x</Array></ContStats>"), 0},
    };
    for (const Case& c : cases) {
        ZRUniStats stats;
        EXPECT_EQ(ReadOne(c.uniStats, stats), c.code) << c.uniStats;
        EXPECT_EQ(stats.IsEmpty(), c.code != 0) << c.uniStats;
    }
    // Without ContStats an object still holding an earlier field passes.
    ZRUniStats earlier("e", 1.0, Doubles{1.0});
    EXPECT_EQ(ReadOne(Cont("minimum=\"1\"", ""), earlier), 0);
    EXPECT_EQ(earlier.GetFieldName(), "e");
}

TEST(PMMLUniStats, CutPointsFromIntervals) {
    struct Case {
        std::string intervals;
        long code;
        Doubles cuts;
        bool leftOpen;
    } cases[] = {
        {"", 0, {}, true},
        {"<I c='openClosed' l='0' r='1'/><I c='openOpen' l='1' r='2'/>", 0, {0, 1, 2}, true},
        {"<I c='closedOpen' l='0' r='1'/><I c='closedClosed' l='2' r='3'/>", 0, {0, 1, 2, 3}, false},
        {"<I c='odd' r='5'/>", 0, {M, 5}, false},
        {"<I c='closedOpen' l='5'/>", 0, {5, M}, false},
        {"<I c='closedOpen' l='NaN' r='NaN'/>", 108, {}, false},
        {"<I c='closedOpen' l='5'/><I c='closedOpen' l='6' r='7'/>", 115, {}, false},
        {"<I c='closedOpen' l='0' r='2'/><I c='closedOpen' l='1' r='3'/>", 115, {}, false},
        {"<I c='openClosed' l='0' r='1'/><I c='closedOpen' l='1' r='2'/>", 115, {}, false},
        {"<I c='closedOpen' l='0' r='1'/><I c='closedOpen' r='2'/>", 115, {}, false},
        {"<I c='closedOpen'/>", 108, {}, false},
        {"<I l='0' r='1'/>", 108, {}, false},
        {"<I c='closedOpen' l='1' r='1'/>", 109, {}, false},
        {"<I c='closedOpen' l='2' r='1'/>", 109, {}, false},
        {"<I c='closedOpen' l='x' r='1'/>", 109, {}, false},
        {"<I c='closedOpen' l='0' r='INF'/>", 109, {}, false},
    };
    for (const Case& c : cases) {
        std::string intervals = c.intervals;
        for (auto [from, to] : {std::pair<std::string, std::string>{"<I ", "<Interval "},
                                {" c=", " closure="}, {" l=", " leftMargin="}, {" r=", " rightMargin="}})
            for (std::size_t at; (at = intervals.find(from)) != std::string::npos;)
                intervals.replace(at, from.size(), to);
        const std::size_t bins = c.cuts.empty() ? 0 : c.cuts.size() - 1;
        std::string freqs = "<Array type='real'>";
        for (std::size_t i = 0; i < bins; ++i)
            freqs += "1 ";
        Parser parser;
        ASSERT_EQ(parser.Parse(Doc("", "<ContStats>" + intervals + freqs + "</Array></ContStats>")), 0);
        Doubles cuts{9.0};
        Doubles frequencies{9.0};
        bool leftOpen = false;
        EXPECT_EQ(parser.FillCutPointsFreqs(cuts, frequencies, leftOpen, *parser.Find(u"ContStats"))
                      .GetCode(),
                  c.code)
            << intervals;
        if (c.code == 0) {
            EXPECT_EQ(cuts, c.cuts) << intervals;
            EXPECT_EQ(frequencies.size(), bins);
            EXPECT_EQ(leftOpen, c.leftOpen) << intervals;
        }
    }
}

} // namespace
