// ZRPMMLParser::FillUniStats and its helpers.
#include "PMMLTestSupport.h"

#include <gtest/gtest.h>

#include <zrcommonr/ZRMV.h>

using pmmltest::Doc;
using pmmltest::Parser;
using ZRMetadata::ZRUniStats;
using Doubles = std::vector<double>;

namespace {

const double M = ZRMV::gMissingValue;

TEST(PMMLUniStats, WalkOfAModelFromAFile) {
    Parser parser;
    ASSERT_EQ(parser.ParseFile(pmmltest::kDictionary), 0);
    ASSERT_TRUE(parser.SetModelElmt(*parser.Find(u"TreeModel")));
    std::vector<long> codes;
    std::vector<ZRUniStats> results;
    ZRUniStats stats;
    const xercesc::DOMElement* position = nullptr;
    for (long code = parser.FillUniStats(stats, position).GetCode(); position;
         code = parser.FillUniStats(stats, position).GetCode()) {
        codes.push_back(code);
        results.push_back(stats);
    }
    ASSERT_EQ(codes, (std::vector<long>{0, 0, 109, 109}));
    EXPECT_EQ(results[0].GetFieldName(), "cat_num");
    EXPECT_FALSE(results[0].IsContinuous());
    EXPECT_EQ(results[0].GetTotalFreq(), 120.0);
    EXPECT_EQ(results[0].GetFrequencies(), (Doubles{40, 50, 28}));
    const ZRUniStats& cont = results[1];
    EXPECT_TRUE(cont.IsContinuous());
    EXPECT_EQ(cont.GetCutPoints(), (Doubles{0, 10000, 50000, 100000, M}));  // a gap, an open end
    EXPECT_EQ(cont.GetFrequencies(), (Doubles{30, 60, 20, 10}));
    const ZRUniStats::SummStats& summary = cont.GetSummStats();
    EXPECT_EQ(Doubles({summary.minimum, summary.maximum, summary.mean, summary.stdDev}),
              (Doubles{0, 900000, 42000.5, 30500.25}));
    EXPECT_EQ(results[3].GetFieldName(), "cont");  // failures leave the object alone
}

// The status of one UnivariateStats with a Counts of totalFreq 10 and `body`,
// read into a fresh object (or `earlier`), which a failure must leave alone.
long ReadOne(const std::string& body, ZRUniStats earlier = ZRUniStats(),
             const std::string& counts = "<Counts totalFreq=\"10\"/>") {
    Parser parser;
    EXPECT_EQ(parser.Parse(Doc("", "<TreeModel><Extension/><ModelStats><UnivariateStats field=\"f\">" +
                                       counts + body + "</UnivariateStats></ModelStats></TreeModel>")),
              0);
    EXPECT_TRUE(parser.SetModelElmt(*parser.Find(u"TreeModel")));
    const xercesc::DOMElement* position = nullptr;
    ZRUniStats stats = earlier;
    const long code = parser.FillUniStats(stats, position).GetCode();
    EXPECT_NE(position, nullptr);
    if (code != 0) {
        EXPECT_EQ(stats.GetFieldName(), earlier.GetFieldName()) << body;
    }
    return code;
}

TEST(PMMLUniStats, StatusOfEachFault) {
    const std::string discr = "<DiscrStats><Array type=\"int\">1 0</Array></DiscrStats>";
    const std::string interval = "<Interval closure=\"openOpen\" leftMargin=\"0\" rightMargin=\"1\"/>";
    EXPECT_EQ(ReadOne(discr, ZRUniStats(), "<Counts totalFreq=\"0\"/>"), 0);
    EXPECT_EQ(ReadOne(discr, ZRUniStats(), "<Counts/>"), 108);
    EXPECT_EQ(ReadOne(discr, ZRUniStats(), "<Counts totalFreq=\"-1\"/>"), 109);
    EXPECT_EQ(ReadOne(discr, ZRUniStats(), "<Counts totalFreq=\"NaN\"/>"), 109);
    EXPECT_EQ(ReadOne(discr, ZRUniStats(), ""), 113);
    EXPECT_EQ(ReadOne(""), 113);
    EXPECT_EQ(ReadOne("<DiscrStats/>"), 113);
    EXPECT_EQ(ReadOne("<DiscrStats><Array>1</Array></DiscrStats>"), 108);
    EXPECT_EQ(ReadOne("<DiscrStats><Array type=\"string\">a</Array></DiscrStats>"), 109);
    EXPECT_EQ(ReadOne("<DiscrStats><Array type=\"real\">1 x</Array></DiscrStats>"), 114);
    EXPECT_EQ(ReadOne("<DiscrStats><Array type=\"real\">1 -2</Array></DiscrStats>"), 114);
    EXPECT_EQ(ReadOne("<DiscrStats><Array type=\"real\" n=\"3\"></Array></DiscrStats>"), 0);
    // Continuous: NumericInfo decides, even next to DiscrStats.
    EXPECT_EQ(ReadOne("<NumericInfo mean=\"x\"/><ContStats/>" + discr), 109);
    EXPECT_EQ(ReadOne("<NumericInfo standardDeviation=\"-0.5\"/><ContStats/>"), 116);
    EXPECT_EQ(ReadOne("<NumericInfo standardDeviation=\"NaN\"/><ContStats/>"), 0);
    EXPECT_EQ(ReadOne("<NumericInfo minimum=\"1\"/>" + discr), 116);  // nothing to judge
    EXPECT_EQ(ReadOne("<NumericInfo minimum=\"1\"/>", ZRUniStats("e", 1.0, Doubles{1.0})), 0);
    EXPECT_EQ(ReadOne("<NumericInfo/><ContStats>" + interval + "</ContStats>"), 113);
    EXPECT_EQ(ReadOne("<NumericInfo/><ContStats>" + interval + "<Array type=\"int\"/></ContStats>"), 115);
    EXPECT_EQ(ReadOne("<NumericInfo/><ContStats><Array type=\"int\">x</Array></ContStats>"), 0);
}

TEST(PMMLUniStats, CutPointsFromIntervals) {
    const struct {
        const char* intervals;  // closure, leftMargin, rightMargin ("-" absent)
        long code;
        Doubles cuts;
        bool leftOpen;
    } cases[] = {
        {"", 0, {}, true},
        {"openClosed 0 1, openOpen 1 2", 0, {0, 1, 2}, true},
        {"closedOpen 0 1, closedClosed 2 3", 0, {0, 1, 2, 3}, false},
        {"odd - 5", 0, {M, 5}, false},
        {"closedOpen 5 -", 0, {5, M}, false},
        {"closedOpen NaN NaN", 108, {}, false},
        {"closedOpen 5 -, closedOpen 6 7", 115, {}, false},
        {"closedOpen 0 2, closedOpen 1 3", 115, {}, false},
        {"openClosed 0 1, closedOpen 1 2", 115, {}, false},
        {"closedOpen 0 1, closedOpen - 2", 115, {}, false},
        {"closedOpen - -", 108, {}, false},
        {"- 0 1", 108, {}, false},
        {"closedOpen 1 1", 109, {}, false},
        {"closedOpen 2 1", 109, {}, false},
        {"closedOpen x 1", 109, {}, false},
        {"closedOpen 0 INF", 109, {}, false},
    };
    for (const auto& c : cases) {
        std::string xml = "<ContStats>";
        std::istringstream words(c.intervals);
        for (std::string closure, left, right; words >> closure >> left >> right;) {
            if (right.back() == ',')
                right.pop_back();
            auto attribute = [](const char* name, const std::string& value) {
                return value == "-" ? std::string() : " " + std::string(name) + "=\"" + value + "\"";
            };
            xml += "<Interval" + attribute("closure", closure) + attribute("leftMargin", left) +
                   attribute("rightMargin", right) + "/>";
        }
        xml += "<Array type=\"real\">";
        for (std::size_t i = 1; i < c.cuts.size(); ++i)
            xml += "1 ";
        Parser parser;
        ASSERT_EQ(parser.Parse(Doc("", xml + "</Array></ContStats>")), 0);
        Doubles cuts{9.0}, frequencies{9.0};
        bool leftOpen = false;
        EXPECT_EQ(parser.FillCutPointsFreqs(cuts, frequencies, leftOpen, *parser.Find(u"ContStats"))
                      .GetCode(), c.code) << xml;
        if (c.code == 0) {
            EXPECT_EQ(cuts, c.cuts) << xml;
            EXPECT_EQ(frequencies.size(), c.cuts.empty() ? 0 : c.cuts.size() - 1);
            EXPECT_EQ(leftOpen, c.leftOpen) << xml;
        }
    }
}

} // namespace
