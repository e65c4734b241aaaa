// Shared by the combiner tests: temporary files, split-variable lists and a
// reader of the combined document.
#ifndef ZRX_TESTS_COMBINER_SUPPORT_H
#define ZRX_TESTS_COMBINER_SUPPORT_H

#include <zrparsexmlr/ZRXMLReadWrite.h>
#include <zrparsexmlr/ZRXPrsUtil.h>
#include <zrcommonr/ZRVarList.h>

#include <xercesc/dom/DOM.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace combinertest {

inline std::string DataFile(const std::string& name)
{
    return std::string(ZRX_TEST_DATA_DIR) + "/combiner/" + name;
}

// A folder of its own, removed with the object.
class TempDir {
public:
    TempDir()
    {
        char pattern[] = "/tmp/zrx-combiner-XXXXXX";
        const char* made = mkdtemp(pattern);
        dir = made != nullptr ? made : "/tmp";
    }
    ~TempDir() { std::filesystem::remove_all(dir); }
    std::string Path(const std::string& name) const { return dir + "/" + name; }
    std::string Write(const std::string& name, const std::string& text) const
    {
        std::ofstream(Path(name), std::ios::binary) << text;
        return Path(name);
    }

private:
    std::string dir;
};

// The split variable "region" (text values north, south) and, with `two`,
// "year" (integer values 2021, 2022).
inline void AddSplitVars(ZRMTD_NAMESPACE::ZRVarList& list, bool two)
{
    list.AddCatVar("region", "Sales region", std::vector<std::string>{"north", "south"},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    if (two) {
        const int year = list.AddCatVar("year", "", std::vector<double>{2021, 2022},
                                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
        list.GetVarAt(year)->SetStorageType(1);
    }
}

inline const xercesc::DOMElement* Child(const xercesc::DOMElement* parent, const char* tag)
{
    return parent != nullptr ? ZRXPrsUtil::GetFirstChildElmt(*parent, tag) : nullptr;
}

inline std::string Att(const xercesc::DOMElement* element, const char* name)
{
    const XMLCh* value = element != nullptr ? ZRXPrsUtil::GetAttribute(*element, name) : nullptr;
    return value != nullptr ? ZRXPrsUtil::ToUTF8(value) : "<absent>";
}

// The `attribute` of each direct child with tag `tag` (every child if null).
inline std::vector<std::string> ChildAtts(const xercesc::DOMElement* parent, const char* tag,
                                          const char* attribute)
{
    std::vector<std::string> out;
    for (const xercesc::DOMElement* c = Child(parent, tag); c != nullptr;
         c = ZRXPrsUtil::GetNextSiblingElmt(*c, tag))
        out.push_back(Att(c, attribute));
    return out;
}

inline std::vector<std::string> ChildTags(const xercesc::DOMElement* parent)
{
    std::vector<std::string> out;
    for (const xercesc::DOMElement* c = Child(parent, nullptr); c != nullptr;
         c = ZRXPrsUtil::GetNextSiblingElmt(*c, nullptr))
        out.push_back(ZRXPrsUtil::ToUTF8(c->getTagName()));
    return out;
}

// The combined document read back.
class Combined {
public:
    explicit Combined(const std::string& path) { ok = reader.ParseToDOM(path).IsOK(); }
    bool ok = false;
    const xercesc::DOMElement* Root() const
    {
        return ok ? ZRXPrsUtil::GetFirstChildElmt(*reader.GetDocument(), "PMML") : nullptr;
    }
    const xercesc::DOMElement* Dictionary() const { return Child(Root(), "DataDictionary"); }
    const xercesc::DOMElement* MiningModel() const { return Child(Root(), "MiningModel"); }
    const xercesc::DOMElement* Schema() const { return Child(MiningModel(), "MiningSchema"); }
    const xercesc::DOMElement* Segmentation() const { return Child(MiningModel(), "Segmentation"); }
    std::vector<const xercesc::DOMElement*> Segments() const
    {
        std::vector<const xercesc::DOMElement*> out;
        for (const xercesc::DOMElement* s = Child(Segmentation(), "Segment"); s != nullptr;
             s = ZRXPrsUtil::GetNextSiblingElmt(*s, "Segment"))
            out.push_back(s);
        return out;
    }
    // The merged field `name`, null if there is none.
    const xercesc::DOMElement* Field(const std::string& name) const
    {
        for (const xercesc::DOMElement* f = Child(Dictionary(), "DataField"); f != nullptr;
             f = ZRXPrsUtil::GetNextSiblingElmt(*f, "DataField"))
            if (Att(f, "name") == name)
                return f;
        return nullptr;
    }
    // The Value texts of the merged field `name`.
    std::vector<std::string> Values(const std::string& name) const
    {
        return ChildAtts(Field(name), "Value", "value");
    }

private:
    ZRXPrsUtil::ZRXMLReadWrite reader;
};

} // namespace combinertest

#endif
