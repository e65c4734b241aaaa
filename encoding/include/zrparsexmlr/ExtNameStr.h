// ExtNameStr: one name held in every encoding a caller may ask for.
#ifndef ZRPARSEXMLR_EXTNAMESTR_H
#define ZRPARSEXMLR_EXTNAMESTR_H

#include <zrparsexmlr/ZRMem.h>

#include <string>

namespace ZRMEM_NAMESPACE {

// Holds one name as UTF-8 (the master), as text in the default converter's
// code page, as UTF-16 and as text in the system encoding (SystemEncoding).
//
// Every setter replaces the master from the encoding it is given and brings
// the other forms up to date at once. The code page forms are also remade,
// lazily, when the default converter has been (re)created since they were
// made: GetCP(), GetCPZ() and, out of UTF-8 mode, GetGeneric() and
// GetGenericZ() check that first. The UTF-8 mode is read at each call; the
// object remembers no mode.
//
// ErrorCode() gives an encoding result code (0 to 3) of the last conversion
// step of this object: after SetU8, SetCP, SetGeneric, SetU16 and Clear it is
// the code of making the UTF-16 form (so 0 after a clean run); after SetSystem
// the code of making the code page form; after a lazy refresh the code of the
// code page form, or if that was 0, of the system form; after GetCP(converter)
// the code of that conversion.
//
// SetSystem leaves the UTF-16 form as it was.
//
// Memory: a setter, Clear or an assignment that can't have the memory for
// every form changes nothing and ErrorCode() gives 2; so does a lazy refresh,
// which then keeps the forms it had. An object whose construction or copy
// found no memory holds the empty name and answers ErrorCode() 2 until a
// setter succeeds. No operation throws.
//
// Const getters may refresh the object, so an object is for one thread at a
// time. Copies are deep and independent.
class ZRXPRS_API ExtNameStr {
public:
    ExtNameStr();
    ExtNameStr(const ExtNameStr& other);
    ExtNameStr& operator=(const ExtNameStr& other);
    ~ExtNameStr();

    void SetU8(const std::string& text);
    // Code page text of converter (null: the default converter).
    void SetCP(const std::string& text, void* converter = nullptr);
    void SetGeneric(const std::string& text);
    void SetU16(const U16String& text);
    void SetSystem(const std::string& text);
    void Clear();

    const std::string& GetU8() const;
    const char* GetU8Z() const;
    const std::string& GetCP() const;
    const char* GetCPZ() const;
    // The master converted with converter (null: a clone of the default one),
    // leaving the held code page form untouched.
    std::string GetCP(void* converter) const;
    const std::string& GetGeneric() const;
    const char* GetGenericZ() const;
    const U16String& GetU16() const;
    const unsigned short* GetU16Z() const;
    const std::string& GetSystem() const;
    const char* GetSystemZ() const;
    bool Empty() const;
    int ErrorCode() const;

private:
    struct Record;
    // The held record, or an empty one when there is none.
    const Record& Rec() const;
    // Makes every form from the master `u8` (moved in) and takes them, with
    // `code` the code of making the master; nothing changes when memory runs
    // out for any of them.
    void Install(std::string& u8, int code);
    void Refresh() const;
    void RefreshIfStale() const;

    Record* m_rec; // null when memory ran out for it
};

} // namespace ZRMEM_NAMESPACE

#endif
