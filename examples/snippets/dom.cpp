// examples/snippets/dom.cpp
#include <zrparsexmlr/ZRXPrsUtil.h>

#include <xercesc/dom/DOMElement.hpp> // the DOM element type, not only its name

#include <iostream>

using namespace ZRXPrsUtil;

// `dictionary`: a DataDictionary element of a parsed PMML document.
void ListFields(const xercesc::DOMElement& dictionary)
{
    int count = 0;
    switch (GetIntAttribute(dictionary, "numberOfFields", /*sign rule: >= 0*/ 0, count)) {
    case -1: std::cout << "no numberOfFields\n"; break;
    case 1: std::cout << "numberOfFields is no count\n"; break;
    }
    for (const xercesc::DOMElement* f = GetFirstChildElmt(dictionary, "DataField"); f;
         f = GetNextSiblingElmt(*f, "DataField"))
        std::cout << ToUTF8(GetAttribute(*f, "name")) << '\n';
}
