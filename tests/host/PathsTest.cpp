// Local files only: a path is a file on this machine, never a URL, and no
// document makes the library open a network connection.
#include "ZRXTestDom.h"

#include <zrparsexmlr/ZRDataModelParser.h>
#include <zrparsexmlr/ZRPMMLParser.h>
#include <zrparsexmlr/ZRSettingsParser.h>
#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXSplitPMMLCombiner.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace {

using ZRMTD_NAMESPACE::ZRVarList;

// A listener on 127.0.0.1 at a port the system picks. The system completes
// a client's connection without an accept, so the connections made are
// counted at the end by accepting what is waiting; a client that waits for
// an answer instead is ended by the CTest timeout.
class Listener {
public:
    Listener() : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        if (m_socket >= 0 &&
            ::bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0 &&
            ::listen(m_socket, 16) == 0 &&
            ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &length) == 0)
            m_port = ntohs(address.sin_port);
    }
    ~Listener() { ::close(m_socket); }
    int Port() const { return m_port; }
    int Connections() const
    {
        int count = 0;
        for (int client; (client = ::accept(m_socket, nullptr, nullptr)) >= 0; ++count)
            ::close(client);
        return count;
    }
    std::string Url(const std::string& scheme, const std::string& file) const
    {
        return scheme + "://127.0.0.1:" + std::to_string(m_port) + "/" + file;
    }

private:
    int m_socket;
    int m_port = 0;
};

class Paths : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(0, listener.Port()); }
    Listener listener;
    zrxtest::TempDir dir{"paths"};
};

const char* const kModel =
    "<PMML version=\"4.4\"><DataDictionary numberOfFields=\"1\">"
    "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/></DataDictionary>"
    "<TreeModel functionName=\"regression\"><MiningSchema><MiningField name=\"x\"/>"
    "</MiningSchema><Node score=\"1\"><True/></Node></TreeModel></PMML>";

TEST_F(Paths, URLsAreNoFilesForTheCombinerNorTheDocumentReader)
{
    const std::string local = dir.Write("m.pmml", kModel);
    const std::vector<std::string> urls = {listener.Url("http", "m.pmml"),
                                           listener.Url("ftp", "m.pmml"), "file://" + local,
                                           "file:" + local};
    ZRVarList splitVars;
    splitVars.AddCatVar("r", "r", std::vector<std::string>{"a"},
                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    for (const std::string& url : urls) {
        ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
        EXPECT_EQ(104, combiner.AddModel(url, {"a"}).GetCode()) << url;
        ZRXPrsUtil::ZRXMLReadWrite io;
        EXPECT_EQ(104, io.ParseToDOM(url).GetCode()) << url;
        EXPECT_EQ(nullptr, io.GetDocument());
    }
    // The same file by its path is read.
    ZRXPrsUtil::ZRXSplitPMMLCombiner combiner(splitVars);
    EXPECT_EQ(0, combiner.AddModel(local, {"a"}).GetCode());
    ZRXPrsUtil::ZRXMLReadWrite io;
    EXPECT_EQ(0, io.ParseToDOM(local).GetCode());
    EXPECT_EQ(0, listener.Connections());
}

// Every way a document may name something remote: an external DTD (skipped),
// an external entity (refused), schema locations (ignored).
TEST_F(Paths, NoDocumentReachesTheNetworkThroughAnyReader)
{
    const std::string dtd = "<!DOCTYPE PMML SYSTEM \"" + listener.Url("http", "d.dtd") + "\">";
    const std::string entity =
        "<!DOCTYPE PMML [<!ENTITY e SYSTEM \"" + listener.Url("http", "e.xml") + "\">]>";
    const std::string schema =
        "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:schemaLocation=\"urn:x " +
        listener.Url("http", "s.xsd") + "\" xsi:noNamespaceSchemaLocation=\"" +
        listener.Url("http", "n.xsd") + "\"";
    const std::string body = "<DataDictionary numberOfFields=\"1\"><DataField name=\"x\" "
                             "optype=\"continuous\" dataType=\"double\"/></DataDictionary>";
    const std::vector<std::tuple<std::string, std::string, long>> cases = {
        {dtd + "<PMML version=\"4.4\">" + body + "</PMML>",
         "<!DOCTYPE DataModel SYSTEM \"" + listener.Url("http", "d.dtd") +
             "\"><DataModel><Fields/></DataModel>",
         0},
        {entity + "<PMML version=\"4.4\">&e;" + body + "</PMML>",
         "<!DOCTYPE DataModel [<!ENTITY e SYSTEM \"" + listener.Url("http", "e.xml") +
             "\">]><DataModel>&e;<Fields/></DataModel>",
         104},
        {"<PMML version=\"4.4\" " + schema + ">" + body + "</PMML>",
         "<DataModel " + schema + "><Fields/></DataModel>", 0},
    };
    for (const auto& [pmml, dataModel, code] : cases) {
        std::istringstream pmmlIn(pmml), settingsIn(pmml);
        ZRXPrsUtil::ZRPMMLParser reader;
        EXPECT_EQ(code, reader.ParseToDOM(pmmlIn).GetCode()) << pmml;
        ZRXPrsUtil::ZRSettingsParser settings;
        EXPECT_EQ(code == 0 ? 119 : code, settings.ParseToDOM(settingsIn).GetCode()) << pmml;
        ZRXPrsUtil::ZRDataModelParser dataModelReader;
        EXPECT_EQ(code, dataModelReader.ParseToDOM(dataModel).GetCode()) << dataModel;
        ZRXPrsUtil::ZRXMLReadWrite io;
        EXPECT_EQ(code, io.ParseToDOM(dir.Write("doc.xml", pmml)).GetCode()) << pmml;
    }
    EXPECT_EQ(0, listener.Connections());
}

} // namespace
