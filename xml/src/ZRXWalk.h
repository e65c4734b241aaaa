// ZRXNodeWalk: the nodes below a root, in document order (a node before its
// children, children before the next sibling), without recursion, so that a
// deep document costs no stack. Internal, not exported; header only, since
// the walk is a few pointer steps per node.
//
//     for (ZRXNodeWalk walk(root); walk.Node() != nullptr; walk.Next())
//         Visit(walk.Node());
//
// The root itself is not visited. Next(false) passes over the children of
// the current node. Next tells how the depth changed, so that a walk that
// builds a copy can keep its own parent in step: 1 when it went down to the
// first child, 0 to the next sibling (or at the end), -n when it went up n
// levels to an ancestor's next sibling. The tree must not change during the
// walk.
#ifndef ZRPARSEXMLR_ZRXWALK_H
#define ZRPARSEXMLR_ZRXWALK_H

#include <xercesc/dom/DOMNode.hpp>

namespace ZRXPrsUtil {

class ZRXNodeWalk {
public:
    explicit ZRXNodeWalk(const xercesc::DOMNode* root)
        : m_root(root), m_node(root != nullptr ? root->getFirstChild() : nullptr)
    {}

    // The current node; null once the walk is over.
    const xercesc::DOMNode* Node() const { return m_node; }

    int Next(bool intoChildren = true)
    {
        if (m_node == nullptr)
            return 0;
        if (intoChildren && m_node->getFirstChild() != nullptr) {
            m_node = m_node->getFirstChild();
            return 1;
        }
        int levels = 0;
        while (m_node != m_root && m_node->getNextSibling() == nullptr) {
            m_node = m_node->getParentNode();
            --levels;
            if (m_node == nullptr)
                return 0;
        }
        if (m_node == m_root) {
            m_node = nullptr;
            return 0;
        }
        m_node = m_node->getNextSibling();
        return levels;
    }

private:
    const xercesc::DOMNode* m_root;
    const xercesc::DOMNode* m_node;
};

} // namespace ZRXPrsUtil

#endif
