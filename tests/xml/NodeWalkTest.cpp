// ZRXNodeWalk: the nodes below a root in document order, passing over the
// children of a node on request, never leaving the root's subtree, and the
// depth steps that a copying walk follows to keep its own parent.
#include "ZRXTestDom.h"
#include "ZRXWalk.h"

#include <xercesc/dom/DOMNodeList.hpp>

#include <string>

using ZRXPrsUtil::ZRXNodeWalk;

namespace {

using NodeWalk = zrxtest::XercesTest;

const char* const kDoc = "<r><a><b/><c><d/></c></a><e>t</e></r>";

// The walk below `root` as "name step" entries, where step is what Next gave
// after the node; the children of the element named `pass` are passed over.
std::string Trace(const xercesc::DOMNode* root, const std::string& pass = "")
{
    std::string trace;
    for (ZRXNodeWalk walk(root); walk.Node() != nullptr;) {
        const std::string name = ZRXPrsUtil::ToUTF8(walk.Node()->getNodeName());
        trace += (trace.empty() ? "" : ", ") + name + " " + std::to_string(walk.Next(name != pass));
    }
    return trace;
}

const xercesc::DOMNode* Element(const zrxtest::ParsedDoc& doc, const char16_t* tag)
{
    return doc.parser->getDocument()->getElementsByTagName(tag)->item(0);
}

} // namespace

// Below its root only, never into the rest of the document.
TEST_F(NodeWalk, DocumentOrderWithTheDepthStepsBelowItsRoot)
{
    const zrxtest::ParsedDoc doc(kDoc);
    ASSERT_EQ(doc.status.GetCode(), 0);
    EXPECT_EQ(Trace(&doc.Root()), "a 1, b 0, c 1, d -2, e 1, #text 0");
    EXPECT_EQ(Trace(&doc.Root(), "c"), "a 1, b 0, c -1, e 1, #text 0");
    EXPECT_EQ(Trace(&doc.Root(), "a"), "a 0, e 1, #text 0");
    // a has a following sibling, e, that the walk below a must not reach.
    EXPECT_EQ(Trace(Element(doc, u"a")), "b 0, c 1, d 0");
    EXPECT_EQ(Trace(Element(doc, u"d")), "");
    EXPECT_EQ(Trace(nullptr), "");
    ZRXNodeWalk over(Element(doc, u"b"));
    EXPECT_EQ(over.Next(), 0); // a walk that is over stays over
    EXPECT_EQ(over.Node(), nullptr);
}
