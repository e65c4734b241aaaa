// Shared by the combiner tests: a temporary folder, split-variable lists and a
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
#include <string>
#include <vector>

namespace combinertest {

using Texts = std::vector<std::string>;
using Element = const xercesc::DOMElement*;

inline std::string DataFile(const std::string& name)
{
    return std::string(ZRX_TEST_DATA_DIR) + "/combiner/" + name;
}

// A folder of its own, removed with the object: in memory where there is
// such a file system (the writes sync), else in /tmp. A folder that could not
// be made leaves the paths at the root, where writes fail.
class TempDir {
public:
    TempDir()
    {
        std::error_code error;
        std::string pattern =
            std::filesystem::is_directory("/dev/shm", error) ? "/dev/shm" : "/tmp";
        pattern += "/zrx-combiner-XXXXXX";
        const char* made = mkdtemp(&pattern[0]);
        dir = made != nullptr ? made : "";
    }
    ~TempDir()
    {
        if (!dir.empty())
            std::filesystem::remove_all(dir);
    }
    std::string Path(const std::string& name) const { return dir + "/" + name; }

private:
    std::string dir;
};

// The split variable "region" (text values north, south) and, with `two`,
// "year" (integer values 2021, 2022).
inline void AddSplitVars(ZRMTD_NAMESPACE::ZRVarList& list, bool two)
{
    list.AddCatVar("region", "Sales region", Texts{"north", "south"},
                   ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
    if (two) {
        const int year = list.AddCatVar("year", "", std::vector<double>{2021, 2022},
                                        ZRMTD_NAMESPACE::IZRVariable::eRoleInput);
        list.GetVarAt(year)->SetStorageType(1);
    }
}

inline Element Child(Element parent, const char* tag)
{
    return parent != nullptr ? ZRXPrsUtil::GetFirstChildElmt(*parent, tag) : nullptr;
}

// The direct children with tag `tag` (every child if null).
inline std::vector<Element> Children(Element parent, const char* tag)
{
    std::vector<Element> out;
    for (Element c = Child(parent, tag); c != nullptr; c = ZRXPrsUtil::GetNextSiblingElmt(*c, tag))
        out.push_back(c);
    return out;
}

inline std::string Att(Element element, const char* name)
{
    const XMLCh* value = element != nullptr ? ZRXPrsUtil::GetAttribute(*element, name) : nullptr;
    return value != nullptr ? ZRXPrsUtil::ToUTF8(value) : "<absent>";
}

// The `attribute` of each direct child with tag `tag` (every child if null),
// or the child's tag if `attribute` is null.
inline Texts ChildAtts(Element parent, const char* tag, const char* attribute)
{
    Texts out;
    for (Element c : Children(parent, tag))
        out.push_back(attribute != nullptr ? Att(c, attribute)
                                           : ZRXPrsUtil::ToUTF8(c->getTagName()));
    return out;
}

inline Texts ChildTags(Element parent)
{
    return ChildAtts(parent, nullptr, nullptr);
}

// The combined document read back.
class Combined {
public:
    explicit Combined(const std::string& path) { ok = reader.ParseToDOM(path).IsOK(); }
    bool ok = false;
    Element Root() const
    {
        return ok ? ZRXPrsUtil::GetFirstChildElmt(*reader.GetDocument(), "PMML") : nullptr;
    }
    Element Dictionary() const { return Child(Root(), "DataDictionary"); }
    Element MiningModel() const { return Child(Root(), "MiningModel"); }
    Element Schema() const { return Child(MiningModel(), "MiningSchema"); }
    std::vector<Element> Segments() const
    {
        return Children(Child(MiningModel(), "Segmentation"), "Segment");
    }
    Texts FieldNames() const { return ChildAtts(Dictionary(), "DataField", "name"); }
    Texts SchemaNames() const { return ChildAtts(Schema(), "MiningField", "name"); }
    // The merged field `name`, null if there is none.
    Element Field(const std::string& name) const
    {
        for (Element f : Children(Dictionary(), "DataField"))
            if (Att(f, "name") == name)
                return f;
        return nullptr;
    }
    // The Value texts of the merged field `name`.
    Texts Values(const std::string& name) const { return ChildAtts(Field(name), "Value", "value"); }

private:
    ZRXPrsUtil::ZRXMLReadWrite reader;
};

} // namespace combinertest

#endif
